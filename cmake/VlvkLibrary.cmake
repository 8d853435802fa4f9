# The shared library, and its objects with all internals for tests and benchmarks.

set(VLVK_LIBRARY_SOURCES
  base/arm_math.h
  base/checked_size.h
  base/export.h
  base/shared_field.h
  bindings/IBeautyResourceLoader.h
  convert/bt601.h
  convert/pixel_orders.h
  convert/rgb_to_yuv.cpp
  convert/rgb_to_yuv.h
  convert/rgb_to_yuv_rows.h
  convert/yuv_to_rgb.cpp
  convert/yuv_to_rgb.h
  convert/yuv_to_rgb_rows.h
  filter/CFastEdgePreserved.cpp
  filter/CFastEdgePreserved.h
  filter/band_worker.cpp
  filter/band_worker.h
  filter/color_adjust.cpp
  filter/color_table.cpp
  filter/color_table.h
  filter/frame_buffers.cpp
  filter/frame_buffers.h
  filter/frame_pipeline.cpp
  filter/frame_plan.h
  filter/timeb.h
  filter/tone_curves.cpp
  filter/tone_curves.h
  kernels/band_smoothing.cpp
  kernels/band_smoothing.h
  kernels/blend_rows.h
  kernels/box_rows.h
  kernels/box_slider.cpp
  kernels/box_slider.h
  kernels/pixel_formula.cpp
  kernels/pixel_formula.h
  kernels/skin_blend.cpp
  kernels/skin_blend.h
  kernels/skin_table_layout.h
  kernels/skin_tables.cpp
  kernels/skin_tables.h
  kernels/smooth_rows.h
  simd/inline.h
  simd/reciprocal_estimate.h
  simd/scalar.h
  targets/all_rows.h
  targets/row_loops.cpp
  targets/row_loops.h
  targets/row_loops_scalar.cpp
  targets/target_sets.h
)

# The processor that the compiler makes code for, which need not be the one that CMake names: a cross-compiler may come
# without a toolchain file.
include(CheckCXXSourceCompiles)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
check_cxx_source_compiles("#ifndef __x86_64__\n#error\n#endif" VLVK_PROCESSOR_X86_64)
check_cxx_source_compiles("#ifndef __aarch64__\n#error\n#endif" VLVK_PROCESSOR_AARCH64)
check_cxx_source_compiles("#ifndef __arm__\n#error\n#endif" VLVK_PROCESSOR_ARM)
unset(CMAKE_TRY_COMPILE_TARGET_TYPE)

if(VLVK_PROCESSOR_X86_64)
  list(APPEND VLVK_LIBRARY_SOURCES
    simd/avx2.h
    simd/sse2.h
    simd/x86_128.h
    targets/row_loops_avx2.cpp
    targets/row_loops_sse2.cpp)
  # Chosen at run time. Only this file may contain such instructions.
  set_source_files_properties(targets/row_loops_avx2.cpp PROPERTIES COMPILE_OPTIONS -mavx2)
elseif(VLVK_PROCESSOR_AARCH64 OR VLVK_PROCESSOR_ARM)
  list(APPEND VLVK_LIBRARY_SOURCES
    simd/neon.h
    targets/row_loops_neon.cpp)
  if(VLVK_PROCESSOR_ARM)
    set_source_files_properties(targets/row_loops.cpp targets/row_loops_neon.cpp PROPERTIES COMPILE_OPTIONS -mfpu=neon)
  endif()
endif()

add_library(vlvk_objects OBJECT ${VLVK_LIBRARY_SOURCES})
target_include_directories(vlvk_objects PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>)
set_target_properties(vlvk_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
vlvk_set_warnings(vlvk_objects)
target_link_libraries(vlvk_objects PUBLIC Threads::Threads)

add_library(VLVKMakeupEngine SHARED)
target_link_libraries(VLVKMakeupEngine PRIVATE vlvk_objects PUBLIC Threads::Threads)
target_include_directories(VLVKMakeupEngine PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>)
set_target_properties(VLVKMakeupEngine PROPERTIES LINKER_LANGUAGE CXX)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  # Android devices may have pages of 16 KiB.
  target_link_options(VLVKMakeupEngine PRIVATE -Wl,-z,max-page-size=16384)
endif()
