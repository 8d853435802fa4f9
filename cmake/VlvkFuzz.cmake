# Fuzzers. With VLVK_BUILD_FUZZERS (clang only; scripts/fuzz.sh) vlvk_fuzz_NAME, with the tests vlvk_replay_NAME, which runs
# the inputs in fuzz/corpus once.

if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
  return()
endif()

# The frames of the fuzzers, and the naive model that they are compared with.
add_library(vlvk_fuzz_frames OBJECT
  fuzz/frame_steps.cpp
  fuzz/frame_steps.h
  fuzz/input.h
  tests/engine/makeup_model.cpp
  tests/engine/makeup_model.h
  tests/engine/makeup_rig.cpp
  tests/engine/makeup_rig.h
  tests/frames/frame_model.cpp
  tests/frames/frame_model.h
  tests/frames/frame_rig.cpp
  tests/frames/frame_rig.h
  tests/naive/naive.cpp
  tests/naive/naive.h
  tests/support/guarded_buffer.cpp
  tests/support/guarded_buffer.h
  tests/support/random_content.h
)
target_link_libraries(vlvk_fuzz_frames PUBLIC vlvk_objects)
vlvk_set_flags(vlvk_fuzz_frames)

# Comparisons in the loops over pixels tell the fuzzing engine nothing and would take half of its time.
if(VLVK_BUILD_FUZZERS)
  target_compile_options(vlvk_objects PRIVATE -fno-sanitize-coverage=trace-cmp)
  target_compile_options(vlvk_fuzz_frames PRIVATE -fno-sanitize-coverage=trace-cmp)
endif()

add_library(vlvk_replay OBJECT fuzz/replay.cpp tests/support/sanitizer_options.cpp)
vlvk_set_flags(vlvk_replay)

# vlvk_add_fuzzer(name LIBRARIES ...) makes the executables of fuzz/NAME_fuzzer.cpp.
function(vlvk_add_fuzzer name)
  cmake_parse_arguments(FUZZER "" "" "LIBRARIES" ${ARGN})
  if(VLVK_BUILD_FUZZERS)
    add_executable(vlvk_fuzz_${name} fuzz/${name}_fuzzer.cpp tests/support/sanitizer_options.cpp)
    target_compile_definitions(vlvk_fuzz_${name} PRIVATE VLVK_FUZZING_ENGINE)
    target_link_libraries(vlvk_fuzz_${name} PRIVATE ${FUZZER_LIBRARIES})
    target_link_options(vlvk_fuzz_${name} PRIVATE -fsanitize=fuzzer)
    vlvk_set_flags(vlvk_fuzz_${name})
  endif()
  if(VLVK_BUILD_TESTS)
    add_executable(vlvk_replay_${name} fuzz/${name}_fuzzer.cpp)
    target_link_libraries(vlvk_replay_${name} PRIVATE vlvk_replay ${FUZZER_LIBRARIES})
    vlvk_set_flags(vlvk_replay_${name})
    add_test(NAME fuzz.${name} COMMAND vlvk_replay_${name} ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/${name})
    set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT 300)
  endif()
endfunction()

vlvk_add_fuzzer(frame LIBRARIES vlvk_fuzz_frames vlvk_objects)
vlvk_add_fuzzer(makeup LIBRARIES vlvk_fuzz_frames vlvk_objects)
vlvk_add_fuzzer(target LIBRARIES vlvk_fuzz_frames vlvk_objects)
if(TARGET vlvk_tool)
  vlvk_add_fuzzer(resource_file LIBRARIES vlvk_tool)
  vlvk_add_fuzzer(cube LIBRARIES vlvk_tool)
  vlvk_add_fuzzer(picture LIBRARIES vlvk_tool)
  vlvk_add_fuzzer(y4m LIBRARIES vlvk_tool)
  if(VLVK_BUILD_FUZZERS)
    find_package(ZLIB REQUIRED)
    target_link_libraries(vlvk_fuzz_picture PRIVATE ZLIB::ZLIB)
  endif()
endif()
