# Benchmarks: one executable, one file for each unit.

find_package(benchmark CONFIG QUIET)
if(NOT benchmark_FOUND)
  message(STATUS "vlvk_bench is not built, missing: Google Benchmark")
  return()
endif()

add_executable(vlvk_bench
  bench/frame_bench.cpp
  bench/integral_mean_bench.cpp
  bench/line_mean_bench.cpp
  bench/luma_plane.h
  bench/reference_filter_bench.cpp
)
target_link_libraries(vlvk_bench PRIVATE vlvk_objects benchmark::benchmark_main)
vlvk_set_warnings(vlvk_bench)

# OpenCV's way to the same box sums, for comparison in the same run.
find_package(OpenCV QUIET COMPONENTS core imgproc)
if(OpenCV_FOUND)
  target_sources(vlvk_bench PRIVATE bench/opencv_sums_bench.cpp)
  target_link_libraries(vlvk_bench PRIVATE opencv_core opencv_imgproc)
else()
  message(STATUS "vlvk_bench compares nothing with OpenCV, missing: OpenCV")
endif()
