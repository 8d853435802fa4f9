# Benchmarks: one executable, one file for each unit.

find_package(benchmark CONFIG QUIET)
if(NOT benchmark_FOUND)
  message(STATUS "vlvk_bench is not built, missing: Google Benchmark")
  return()
endif()

add_executable(vlvk_bench
  bench/frame_bench.cpp
)
target_link_libraries(vlvk_bench PRIVATE vlvk_objects benchmark::benchmark_main)
vlvk_set_warnings(vlvk_bench)
