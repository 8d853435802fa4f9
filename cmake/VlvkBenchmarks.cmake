# Benchmarks: one executable, one file for each unit.

# On ARM, which is emulated for the most part, instructions are counted: scripts/arm_instructions.sh.
if(VLVK_PROCESSOR_ARM OR VLVK_PROCESSOR_AARCH64)
  add_executable(vlvk_count_rows bench/arm/count_rows.cpp)
  target_link_libraries(vlvk_count_rows PRIVATE vlvk_objects)
  vlvk_set_flags(vlvk_count_rows)
endif()

# For bench/allocation_counter.cpp.
set(VLVK_COUNT_ALLOCATIONS
  -Wl,--wrap=malloc,--wrap=calloc,--wrap=realloc,--wrap=aligned_alloc,--wrap=posix_memalign)

# Frames with pauses, through builds of the shared library that are named when it runs.
add_executable(vlvk_paced_bench
  bench/allocation_counter.cpp
  bench/allocation_counter.h
  bench/options.cpp
  bench/options.h
  bench/paced_frames.cpp
  tools/engine/frame_times.h
  tools/engine/skin_frame.h
)
target_include_directories(vlvk_paced_bench PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/include)
target_link_libraries(vlvk_paced_bench PRIVATE ${CMAKE_DL_LIBS} Threads::Threads)
target_link_options(vlvk_paced_bench PRIVATE ${VLVK_COUNT_ALLOCATIONS})
vlvk_set_flags(vlvk_paced_bench)

find_package(benchmark CONFIG QUIET)
if(NOT benchmark_FOUND)
  vlvk_report_missing(VLVK_BUILD_BENCHMARKS vlvk_bench "Google Benchmark")
  return()
endif()

add_executable(vlvk_bench
  bench/allocation_counter.cpp
  bench/allocation_counter.h
  bench/band_smoothing_bench.cpp
  bench/compare.cpp
  bench/compare.h
  bench/conversions_bench.cpp
  bench/frame_bench.cpp
  bench/handle_bench.cpp
  bench/integral_mean_bench.cpp
  bench/line_mean_bench.cpp
  bench/main.cpp
  bench/measure.h
  bench/options.cpp
  bench/options.h
  bench/picture.cpp
  bench/picture.h
  bench/planes.h
  bench/reference_filter_bench.cpp
  bench/row_loops_bench.cpp
  bench/scene.cpp
  bench/scene.h
  bench/skin_blend_bench.cpp
  bench/smoothers_bench.h
  resource/neutral_colors.h
  tools/engine/skin_frame.h
)
target_link_libraries(vlvk_bench PRIVATE vlvk_objects benchmark::benchmark)
target_link_options(vlvk_bench PRIVATE ${VLVK_COUNT_ALLOCATIONS})
vlvk_set_flags(vlvk_bench)

# The sample picture as a scene, where the program's picture files can be read.
if(TARGET vlvk_tool)
  target_link_libraries(vlvk_bench PRIVATE vlvk_tool)
  target_compile_definitions(vlvk_bench PRIVATE VLVK_BENCH_PORTRAIT="${CMAKE_CURRENT_SOURCE_DIR}/samples/portrait.png")
endif()

# The GStreamer element against the handle.
find_library(VLVK_gstcheck_LIBRARY gstcheck-1.0)
if(TARGET gstvlvkmakeup AND VLVK_gstcheck_LIBRARY)
  target_sources(vlvk_bench PRIVATE bench/gstreamer_bench.cpp)
  target_compile_definitions(vlvk_bench PRIVATE VLVK_BENCH_GSTREAMER_PLUGIN="$<TARGET_FILE:gstvlvkmakeup>")
  target_link_libraries(vlvk_bench PRIVATE ${VLVK_gstcheck_LIBRARY} vlvk_gst)
  add_dependencies(vlvk_bench gstvlvkmakeup)
endif()

# Other libraries' ways to the same results, for comparison in the same run.
find_package(OpenCV QUIET COMPONENTS core imgproc)
find_path(VLVK_LIBYUV_INCLUDE libyuv.h)
find_library(VLVK_LIBYUV yuv)
if(OpenCV_FOUND)
  add_library(vlvk_bench_opencv INTERFACE)
  target_include_directories(vlvk_bench_opencv SYSTEM INTERFACE ${OpenCV_INCLUDE_DIRS})
  target_link_libraries(vlvk_bench_opencv INTERFACE opencv_core opencv_imgproc)
  target_compile_definitions(vlvk_bench PRIVATE VLVK_BENCH_OPENCV)
  target_sources(vlvk_bench PRIVATE bench/opencv_bench.cpp)
  target_link_libraries(vlvk_bench PRIVATE vlvk_bench_opencv)
else()
  message(STATUS "vlvk_bench compares nothing with OpenCV, missing: OpenCV")
endif()
if(VLVK_LIBYUV_INCLUDE AND VLVK_LIBYUV)
  target_compile_definitions(vlvk_bench PRIVATE VLVK_BENCH_LIBYUV)
  target_sources(vlvk_bench PRIVATE bench/libyuv_bench.cpp)
  target_include_directories(vlvk_bench SYSTEM PRIVATE ${VLVK_LIBYUV_INCLUDE})
  target_link_libraries(vlvk_bench PRIVATE ${VLVK_LIBYUV})
else()
  message(STATUS "vlvk_bench compares nothing with libyuv, missing: libyuv")
endif()
if(OpenCV_FOUND AND VLVK_LIBYUV_INCLUDE AND VLVK_LIBYUV)
  target_sources(vlvk_bench PRIVATE
    bench/composition_bench.cpp
    bench/peers/composition.cpp
    bench/peers/composition.h)
  set_source_files_properties(bench/peers/composition.cpp PROPERTIES COMPILE_OPTIONS "-O3;-ffast-math")
endif()

# Java's classes against the handle, in a virtual machine that the benchmark starts.
find_library(VLVK_JVM jvm HINTS ${VLVK_JDK}/lib/server ${VLVK_JDK}/jre/lib/server)
mark_as_advanced(VLVK_JVM)
if(TARGET vlvk_java AND VLVK_JVM)
  vlvk_add_jar(vlvk_java_bench_classes
    NAME vlvk_java_bench.jar
    SOURCES bench/java/FrameBench.java
    LIBRARIES vlvk_java)
  get_target_property(VLVK_JAVA_JAR vlvk_java VLVK_JAR)
  get_target_property(VLVK_JAVA_BENCH_JAR vlvk_java_bench_classes VLVK_JAR)
  add_executable(vlvk_java_bench
    bench/compare.cpp
    bench/compare.h
    bench/java/java_bench.cpp
    bench/options.cpp
    bench/options.h
    resource/color_picture.cpp
    resource/color_picture.h
    resource/resource_file.cpp
    resource/resource_file.h
    tools/engine/skin_frame.h)
  add_dependencies(vlvk_java_bench vlvk_java_bench_classes)
  target_include_directories(vlvk_java_bench PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_include_directories(vlvk_java_bench SYSTEM PRIVATE
    $<TARGET_PROPERTY:vlvk_objects,INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
  target_compile_definitions(vlvk_java_bench PRIVATE
    VLVK_BENCH_LIBRARY="$<TARGET_FILE:VLVKMakeupEngine>"
    VLVK_BENCH_CLASS_PATH="${VLVK_JAVA_JAR}:${VLVK_JAVA_BENCH_JAR}")
  target_link_libraries(vlvk_java_bench PRIVATE VLVKMakeupEngine benchmark::benchmark ${VLVK_JVM})
  vlvk_set_flags(vlvk_java_bench)
else()
  message(STATUS "Not built: vlvk_java_bench, missing: the Java classes or a JDK's libjvm")
endif()
