# The library, shared or static, and its objects with all internals for the program, tests and benchmarks.

# What hosts include, all in include/vlvk: installed, and compiled alone by the tests. Headers of C functions serve both
# languages. timeb.h has the argument of CFastEdgePreserved::diffTime.
set(VLVK_PUBLIC_C_HEADERS
  band_smoothing.h
  export.h
  integral_mean.h
  line_mean.h
  makeup.h
  mean_var_blend.h
  reference_filter.h
  rgb_to_yuv.h
  skin_blend.h
  skin_tables.h
  version.h
  yuv_to_rgb.h
)
set(VLVK_PUBLIC_CXX_HEADERS
  CFastEdgePreserved.h
  IBeautyResourceLoader.h
  timeb.h
)
# These need jni.h, and are installed where the library has Java's entry points.
set(VLVK_JNI_C_HEADERS jni_library.h makeup_entry_points.h)
set(VLVK_JNI_CXX_HEADERS CMakeupEngine3.h)

set(VLVK_LIBRARY_SOURCES
  base/arm_math.h
  base/checked_size.h
  base/mutex_lock.h
  base/scratch_memory.h
  base/shared_field.h
  base/version.cpp
  convert/odd_edge.cpp
  convert/odd_edge.h
  convert/rgb_to_yuv.cpp
  convert/yuv_to_rgb.cpp
  engine/band_team.cpp
  engine/band_team.h
  engine/color_step.cpp
  engine/color_step.h
  engine/describe.cpp
  engine/frame_format.cpp
  engine/frame_format.h
  engine/frame_job.cpp
  engine/frame_job.h
  engine/frame_memory.cpp
  engine/frame_memory.h
  engine/frame_rows.cpp
  engine/frame_rows.h
  engine/frame_view.cpp
  engine/frame_view.h
  engine/job_plan.cpp
  engine/job_plan.h
  engine/makeup.cpp
  engine/mask_rows.cpp
  engine/mask_rows.h
  engine/pair_blend.cpp
  engine/pair_blend.h
  engine/pixel_pair.cpp
  engine/pixel_pair.h
  engine/plane_extent.h
  engine/processors.cpp
  engine/processors.h
  engine/row_pair.cpp
  engine/row_pair.h
  engine/settings.cpp
  engine/settings.h
  engine/skin_weights.cpp
  engine/skin_weights.h
  engine/tone_step.cpp
  engine/tone_step.h
  engine/yuv_pair.cpp
  engine/yuv_pair.h
  engine/versioned.h
  filter/CFastEdgePreserved.cpp
  filter/band_rows.cpp
  filter/band_rows.h
  filter/band_threads.cpp
  filter/band_threads.h
  filter/band_worker.cpp
  filter/band_worker.h
  filter/color_adjust.cpp
  filter/color_adjust.h
  filter/color_table.cpp
  filter/color_table.h
  filter/frame_buffers.cpp
  filter/frame_buffers.h
  filter/frame_phases.cpp
  filter/frame_phases.h
  filter/frame_pipeline.cpp
  filter/frame_pipeline.h
  filter/frame_plan.h
  filter/tone_curves.cpp
  filter/tone_curves.h
  kernels/alt/integral_mean.cpp
  kernels/alt/line_mean.cpp
  kernels/alt/mean_var_blend.cpp
  kernels/alt/reference_filter.cpp
  kernels/band_smoothing.cpp
  kernels/box_rows.h
  kernels/skin_blend.cpp
  kernels/skin_model.h
  kernels/skin_tables.cpp
  kernels/sliding_box.h
  kernels/smooth_plane.cpp
  kernels/smooth_plane.h
  resource/color_picture.cpp
  resource/color_picture.h
  resource/resource_file.cpp
  resource/resource_file.h
  rows/all_rows.h
  rows/blend_rows.h
  rows/box_scan_rows.h
  rows/chroma_rows.h
  rows/color_rows.h
  rows/colorimetry.h
  rows/pixel_formula.cpp
  rows/pixel_formula.h
  rows/pixel_orders.h
  rows/pixel_rows.h
  rows/rgb_to_yuv_rows.h
  rows/row_loops.cpp
  rows/row_loops.h
  rows/row_loops_scalar.cpp
  rows/smooth_rows.h
  rows/statistics_rows.h
  rows/target_sets.h
  rows/tone_formula.h
  rows/tone_rows.h
  rows/yuv_matrix.cpp
  rows/yuv_matrix.h
  rows/yuv_to_rgb_rows.h
  simd/blend_by_16.h
  simd/channel_curves.cpp
  simd/channel_curves.h
  simd/channel_weights.h
  simd/curve_loads.h
  simd/half_up.h
  simd/inline.h
  simd/inside_columns.h
  simd/reciprocal_estimate.h
  simd/scalar.h
  simd/scalar/curves.h
)

# The processor that the compiler makes code for, which need not be the one that CMake names: a cross-compiler may come
# without a toolchain file.
include(CheckCXXSourceCompiles)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
check_cxx_source_compiles("#ifndef __x86_64__\n#error\n#endif" VLVK_PROCESSOR_X86_64)
check_cxx_source_compiles("#ifndef __aarch64__\n#error\n#endif" VLVK_PROCESSOR_AARCH64)
check_cxx_source_compiles("#ifndef __arm__\n#error\n#endif" VLVK_PROCESSOR_ARM)
check_cxx_source_compiles("#ifndef __wasm_simd128__\n#error\n#endif" VLVK_PROCESSOR_WASM128)
unset(CMAKE_TRY_COMPILE_TARGET_TYPE)

if(VLVK_PROCESSOR_X86_64)
  list(APPEND VLVK_LIBRARY_SOURCES
    simd/avx2.h
    simd/avx2/blend.h
    simd/avx2/columns.h
    simd/avx2/curves.h
    simd/avx2/quotients.h
    simd/bytes128.h
    simd/pixels128.h
    simd/sse2.h
    simd/sums128.h
    simd/x86_128.h
    rows/row_loops_avx2.cpp
    rows/row_loops_sse2.cpp)
  # Chosen at run time. Only this file may contain such instructions.
  set_source_files_properties(rows/row_loops_avx2.cpp PROPERTIES COMPILE_OPTIONS -mavx2)
elseif(VLVK_PROCESSOR_AARCH64 OR VLVK_PROCESSOR_ARM)
  list(APPEND VLVK_LIBRARY_SOURCES
    simd/neon.h
    simd/neon/columns.h
    simd/neon/curves.h
    simd/neon/pairs.h
    simd/neon/quotients.h
    rows/row_loops_neon.cpp)
elseif(VLVK_PROCESSOR_WASM128)
  list(APPEND VLVK_LIBRARY_SOURCES
    simd/bytes128.h
    simd/pixels128.h
    simd/sums128.h
    simd/wasm128.h
    rows/row_loops_wasm128.cpp)
endif()

# jni.h: on Android the toolchain's own, elsewhere a JDK's, whose headers also serve cross-compilers.
if(VLVK_JNI_BINDINGS AND NOT ANDROID)
  find_package(Java QUIET COMPONENTS Development)
  set(VLVK_JDK "$ENV{JAVA_HOME}")
  if(NOT VLVK_JDK AND Java_JAVAC_EXECUTABLE)
    get_filename_component(VLVK_JDK "${Java_JAVAC_EXECUTABLE}" REALPATH)
    get_filename_component(VLVK_JDK "${VLVK_JDK}/../.." ABSOLUTE)
  endif()
  find_path(VLVK_JNI_INCLUDE jni.h HINTS ${VLVK_JDK}/include NO_CMAKE_FIND_ROOT_PATH)
  find_path(VLVK_JNI_MD_INCLUDE jni_md.h HINTS ${VLVK_JNI_INCLUDE} ${VLVK_JNI_INCLUDE}/linux NO_CMAKE_FIND_ROOT_PATH)
  mark_as_advanced(VLVK_JNI_INCLUDE VLVK_JNI_MD_INCLUDE)
  if(NOT VLVK_JNI_INCLUDE OR NOT VLVK_JNI_MD_INCLUDE)
    message(FATAL_ERROR "The library cannot be built with Java's entry points, missing: jni.h. Install a JDK (JAVA_HOME "
      "says where it is, if it is not found by itself), or configure with -DVLVK_JNI_BINDINGS=OFF for a library without.")
  endif()
endif()
if(VLVK_JNI_BINDINGS)
  list(APPEND VLVK_PUBLIC_C_HEADERS ${VLVK_JNI_C_HEADERS})
  list(APPEND VLVK_PUBLIC_CXX_HEADERS ${VLVK_JNI_CXX_HEADERS})
  list(APPEND VLVK_LIBRARY_SOURCES
    bindings/CMakeupEngine3.cpp
    bindings/android_bitmap.h
    bindings/engine_handle.h
    bindings/java_frame.cpp
    bindings/java_frame.h
    bindings/java_resource.cpp
    bindings/java_resource.h
    bindings/jni_library.cpp
    bindings/low_memory.cpp
    bindings/low_memory.h
    bindings/makeup_bitmap.cpp
    bindings/makeup_entry_points.cpp
    bindings/makeup_natives.cpp)
endif()

add_library(vlvk_objects OBJECT ${VLVK_LIBRARY_SOURCES})
target_include_directories(vlvk_objects PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/include)
if(VLVK_JNI_BINDINGS AND NOT ANDROID)
  target_include_directories(vlvk_objects SYSTEM PUBLIC ${VLVK_JNI_INCLUDE} ${VLVK_JNI_MD_INCLUDE})
endif()
set_target_properties(vlvk_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
vlvk_set_flags(vlvk_objects)
if(VLVK_PROCESSOR_ARM)
  # Callers hand over vectors in NEON registers.
  target_compile_options(vlvk_objects PUBLIC -mfpu=neon)
endif()
target_link_libraries(vlvk_objects PUBLIC Threads::Threads)

# Makes a shared library of the engine, as hosts load it.
function(vlvk_add_shared_engine target)
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/cmake/exports.map)
  add_library(${target} SHARED $<TARGET_OBJECTS:vlvk_objects>)
  target_link_libraries(${target} PUBLIC Threads::Threads)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>)
  target_link_options(${target} PRIVATE -Wl,--version-script=${exports})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX LINK_DEPENDS ${exports})
  vlvk_set_flags(${target})
  if(ANDROID)
    # The bitmap functions are weak references, which alone do not keep the library that has them.
    target_link_libraries(${target} PRIVATE -Wl,--no-as-needed jnigraphics -Wl,--as-needed)
  endif()
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    # Android devices may have pages of 16 KiB.
    target_link_options(${target} PRIVATE -Wl,-z,max-page-size=16384)
  endif()
endfunction()

# Makes a static library of the engine. What links it, from C too, needs the C++ runtime and the libraries beside it.
function(vlvk_add_static_engine target)
  add_library(${target} STATIC $<TARGET_OBJECTS:vlvk_objects>)
  target_compile_definitions(${target} INTERFACE VLVK_STATIC)
  target_link_libraries(${target} PUBLIC ${VLVK_CXX_RUNTIME} Threads::Threads)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  if(ANDROID AND VLVK_JNI_BINDINGS)
    target_link_libraries(${target} INTERFACE -Wl,--no-as-needed jnigraphics -Wl,--as-needed)
  endif()
endfunction()

if(BUILD_SHARED_LIBS)
  # The SONAME carries the major number, which goes up when a program that runs with the library would no longer: an
  # exported name is gone or takes other arguments, fields or virtual slots have moved. Android's file has neither number.
  vlvk_add_shared_engine(VLVKMakeupEngine)
  set_target_properties(VLVKMakeupEngine PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
else()
  target_compile_definitions(vlvk_objects PUBLIC VLVK_STATIC)
  set(VLVK_CXX_RUNTIME ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  list(FILTER VLVK_CXX_RUNTIME INCLUDE REGEX "^(stdc\\+\\+|c\\+\\+|m)$")
  list(REMOVE_DUPLICATES VLVK_CXX_RUNTIME)
  vlvk_add_static_engine(VLVKMakeupEngine)
endif()
add_library(VLVKMakeupEngine::VLVKMakeupEngine ALIAS VLVKMakeupEngine)
