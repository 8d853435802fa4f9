# The tests: one executable, one test of ctest's for each test in it. They see the library's internals.

# vlvk_discover_tests(executable SHARDS [FILTER]): its tests for ctest. Under an emulator, which takes time to start, in
# SHARDS groups, and those alone that FILTER lets through.
include(GoogleTest)
function(vlvk_discover_tests executable shards)
  if(NOT CMAKE_CROSSCOMPILING)
    gtest_discover_tests(${executable} DISCOVERY_TIMEOUT 120)
    return()
  endif()
  set(options --gtest_brief=1)
  foreach(filter IN LISTS ARGN)
    list(APPEND options --gtest_filter=${filter})
  endforeach()
  math(EXPR last "${shards} - 1")
  foreach(shard RANGE ${last})
    add_test(NAME ${executable}.${shard} COMMAND ${executable} ${options})
    set_tests_properties(${executable}.${shard} PROPERTIES
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${shard}" TIMEOUT 900)
  endforeach()
endfunction()

# GoogleTest as installed for the target, or its sources where there is no such package (cross-compilation).
set(VLVK_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources, used where it is not installed")
find_package(GTest QUIET)
if(NOT TARGET GTest::gtest_main)
  if(NOT EXISTS ${VLVK_GTEST_SOURCE}/CMakeLists.txt)
    vlvk_report_missing(VLVK_BUILD_TESTS "the tests" GoogleTest)
    return()
  endif()
  set(INSTALL_GTEST OFF CACHE INTERNAL "")
  set(BUILD_GMOCK OFF CACHE INTERNAL "")
  set(gtest_disable_pthreads ${VLVK_WASM} CACHE INTERNAL "")
  add_subdirectory(${VLVK_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  target_compile_options(gtest PRIVATE -w)
  if(VLVK_WASM)
    target_compile_definitions(gtest PUBLIC
      GTEST_HAS_DEATH_TEST=0 GTEST_HAS_EXCEPTIONS=0 GTEST_HAS_STREAM_REDIRECTION=0)
  endif()
  if(NOT TARGET GTest::gtest_main)
    add_library(GTest::gtest ALIAS gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
  endif()
endif()

# vlvk_set_test_flags(executable): those of all code, but a release build optimises less here: what is tested is compiled
# as released, and the tests would take longer to compile than they save when they run.
function(vlvk_set_test_flags executable)
  vlvk_set_flags(${executable})
  target_compile_options(${executable} PRIVATE $<$<CONFIG:Release>:-O1>)
endfunction()

# The vocabulary's operations, compiled for each target like the row loops (VlvkLibrary.cmake knows the processor).
set(VLVK_VOCABULARIES scalar)
if(VLVK_PROCESSOR_X86_64)
  list(APPEND VLVK_VOCABULARIES sse2 avx2)
elseif(VLVK_PROCESSOR_AARCH64 OR VLVK_PROCESSOR_ARM)
  list(APPEND VLVK_VOCABULARIES neon)
elseif(VLVK_PROCESSOR_WASM128)
  list(APPEND VLVK_VOCABULARIES wasm128)
endif()
foreach(vocabulary IN LISTS VLVK_VOCABULARIES)
  add_library(vlvk_ops_${vocabulary} OBJECT
    tests/simd/vocabulary_ops.cpp tests/simd/vocabulary_ops.h)
  target_include_directories(vlvk_ops_${vocabulary} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_definitions(vlvk_ops_${vocabulary} PRIVATE
    VLVK_TARGET=ops_${vocabulary}
    VLVK_TARGET_NAME="${vocabulary}"
    VLVK_VOCABULARY="simd/${vocabulary}.h")
  vlvk_set_flags(vlvk_ops_${vocabulary})
  list(APPEND VLVK_VOCABULARY_OBJECTS vlvk_ops_${vocabulary})
endforeach()
if(VLVK_PROCESSOR_X86_64)
  target_compile_options(vlvk_ops_avx2 PRIVATE -mavx2)
elseif(VLVK_PROCESSOR_ARM)
  target_compile_options(vlvk_ops_neon PRIVATE -mfpu=neon)
endif()

# Modules have neither pages that cannot be read nor threads.
set(VLVK_GUARDED_BUFFER tests/support/guarded_buffer.cpp)
set(VLVK_THREAD_TESTS
  tests/engine/makeup_threads_test.cpp
  tests/filter/band_threads_test.cpp
  tests/filter/frame_pipeline_test.cpp
)
if(VLVK_WASM)
  set(VLVK_GUARDED_BUFFER tests/support/canary_buffer.cpp ${VLVK_WASM_RUNTIME})
  set(VLVK_THREAD_TESTS "")
endif()

add_executable(vlvk_tests
  tests/naive/naive.cpp
  tests/naive/naive.h
  tests/support/box_planes.h
  ${VLVK_GUARDED_BUFFER}
  tests/support/guarded_buffer.h
  tests/support/plane.h
  tests/support/random_content.h
  tests/support/sanitizer_options.cpp
  tests/support/target_test.h

  # Kernels and conversions.
  tests/kernels/band_smoothing_test.cpp
  tests/convert/conversions_test.cpp
  tests/kernels/alt/box_statistics_test.cpp
  tests/kernels/alt/integral_mean_test.cpp
  tests/kernels/skin_test.cpp
  tests/rows/row_loops_test.cpp
  tests/simd/vocabulary_test.cpp

  # Small things.
  tests/base/checked_size_test.cpp

  # Resource.
  tests/resource/resource_file_test.cpp

  # Filter.
  tests/filter/CFastEdgePreserved_test.cpp
  tests/filter/band_worker_test.cpp

  ${VLVK_THREAD_TESTS}

  # The handle.
  tests/engine/makeup_contract_test.cpp
  tests/engine/makeup_model.cpp
  tests/engine/makeup_model.h
  tests/engine/makeup_rig.cpp
  tests/engine/makeup_rig.h
  tests/engine/makeup_test.cpp

  # Whole frames.
  tests/frames/frame_model.cpp
  tests/frames/frame_model.h
  tests/frames/frame_rig.cpp
  tests/frames/frame_rig.h
  tests/frames/frame_test.cpp
)
target_link_libraries(vlvk_tests PRIVATE vlvk_objects ${VLVK_VOCABULARY_OBJECTS} GTest::gtest GTest::gtest_main)
vlvk_set_test_flags(vlvk_tests)

# Children of an emulator that forked may have no threads of their own.
vlvk_discover_tests(vlvk_tests 8 -MakeupThreads.AreTheirOwnInAProcessThatForked)

# The Java bindings, with a virtual machine and bitmaps that the executable provides.
if(VLVK_JNI_BINDINGS)
  add_executable(vlvk_bindings_tests
    tests/bindings/CMakeupEngine3_test.cpp
    tests/bindings/engine.h
    tests/bindings/fake_jni.h
    tests/bindings/java_resource_test.cpp
    tests/bindings/makeup_bitmap_test.cpp
    tests/bindings/makeup_entry_points_test.cpp
    tests/support/guarded_buffer.cpp
    tests/support/sanitizer_options.cpp
  )
  target_include_directories(vlvk_bindings_tests SYSTEM PRIVATE
    $<TARGET_PROPERTY:vlvk_objects,INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
  target_include_directories(vlvk_bindings_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(vlvk_bindings_tests PRIVATE VLVKMakeupEngine GTest::gtest GTest::gtest_main)
  vlvk_set_test_flags(vlvk_bindings_tests)
  vlvk_discover_tests(vlvk_bindings_tests 1 -Handle.TheOnlyFreePageIsFound)  # the emulator needs free pages there
endif()

# The desktop program, run as a process, where it is built.
if(TARGET vlvk-makeup)
  add_executable(vlvk_tool_tests
    resource/neutral_colors.h
    tests/engine/look_test.cpp
    tests/tools/commands/photo_test.cpp
    tests/tools/commands/several_files_test.cpp
    tests/tools/commands/table_test.cpp
    tests/tools/commands/video_test.cpp
    tests/tools/io/output_file_test.cpp
    tests/tools/options/command_line_test.cpp
    tests/tools/picture/metadata_test.cpp
    tests/tools/picture/picture_file_test.cpp
    tests/tools/table/table_formats_test.cpp
    tests/tools/video/video_text_test.cpp
    tests/tools/tool_support.cpp
    tests/tools/tool_support.h
  )
  target_compile_definitions(vlvk_tool_tests PRIVATE
    VLVK_TOOL_PROGRAM="$<TARGET_FILE:vlvk-makeup>"
    VLVK_SAMPLES="${CMAKE_CURRENT_SOURCE_DIR}/samples"
    VLVK_CORPUS="${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus")
  if(VLVK_FFMPEG_FOUND)
    target_sources(vlvk_tool_tests PRIVATE tests/tools/media/media_choice_test.cpp)
  endif()
  target_link_libraries(vlvk_tool_tests PRIVATE vlvk_tool exiv2lib GTest::gtest GTest::gtest_main)
  add_dependencies(vlvk_tool_tests vlvk-makeup)
  vlvk_set_test_flags(vlvk_tool_tests)
  vlvk_discover_tests(vlvk_tool_tests 2)
endif()

# Failing memory and threads: an executable with a malloc family and a pthread_create of its own, which the shared library
# must go through. Sanitizers bring theirs.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT VLVK_SANITIZE)
  add_executable(vlvk_failure_tests
    tests/engine/makeup_failure_test.cpp
    tests/engine/makeup_model.cpp
    tests/engine/makeup_rig.cpp
    tests/frames/frame_failure_test.cpp
    tests/frames/frame_model.cpp
    tests/frames/frame_rig.cpp
    tests/kernels/kernel_failure_test.cpp
    tests/naive/naive.cpp
    tests/support/failing_system.cpp
    tests/support/failing_system.h
    tests/support/guarded_buffer.cpp
  )
  if(VLVK_JNI_BINDINGS)
    target_sources(vlvk_failure_tests PRIVATE tests/bindings/makeup_entry_points_failure_test.cpp)
    target_include_directories(vlvk_failure_tests SYSTEM PRIVATE
      $<TARGET_PROPERTY:vlvk_objects,INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
  endif()
  target_include_directories(vlvk_failure_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(vlvk_failure_tests PRIVATE VLVKMakeupEngine GTest::gtest GTest::gtest_main ${CMAKE_DL_LIBS})
  vlvk_set_test_flags(vlvk_failure_tests)
  vlvk_discover_tests(vlvk_failure_tests 2)
endif()

# The GStreamer element, between pads of the tests' own.
if(TARGET gstvlvkmakeup)
  include(cmake/VlvkGStreamerTests.cmake)
endif()

# The public headers, each alone in a file: as the oldest C++ that they promise, those of C functions also as C99.
# vlvk_compile_headers(target LANGUAGE extension header ...)
function(vlvk_compile_headers target language extension)
  add_library(${target} OBJECT)
  foreach(header IN LISTS ARGN)
    string(MAKE_C_IDENTIFIER ${header} unit)
    set(file ${CMAKE_CURRENT_BINARY_DIR}/${target}.dir/${unit}.${extension})
    file(CONFIGURE OUTPUT ${file} CONTENT "#include <vlvk/${header}>\n\nint ${unit};\n")
    target_sources(${target} PRIVATE ${file})
  endforeach()
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/include)
  target_include_directories(${target} SYSTEM PRIVATE
    $<TARGET_PROPERTY:vlvk_objects,INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
  set_target_properties(${target} PROPERTIES ${language}_EXTENSIONS OFF)
endfunction()

vlvk_compile_headers(vlvk_cxx_headers CXX cpp ${VLVK_PUBLIC_C_HEADERS} ${VLVK_PUBLIC_CXX_HEADERS})
set_target_properties(vlvk_cxx_headers PROPERTIES CXX_STANDARD 11)
include(CheckLanguage)
check_language(C)
if(CMAKE_C_COMPILER)
  enable_language(C)
  vlvk_compile_headers(vlvk_c_headers C c ${VLVK_PUBLIC_C_HEADERS})
  set_target_properties(vlvk_c_headers PROPERTIES C_STANDARD 99)
  target_compile_options(vlvk_c_headers PRIVATE -Wstrict-prototypes)
endif()

# The built file, and one with the C++ runtime linked in, as Android hosts choose it: exported names (the list is that of
# Java bindings with a JDK's jni.h) and page alignment. Sanitizers add names.
if(BUILD_SHARED_LIBS AND CMAKE_NM AND CMAKE_READELF AND VLVK_JNI_BINDINGS AND NOT ANDROID AND NOT VLVK_SANITIZE)
  vlvk_add_shared_engine(vlvk_static_runtime)
  target_link_options(vlvk_static_runtime PRIVATE -static-libstdc++ -static-libgcc)
  foreach(engine VLVKMakeupEngine vlvk_static_runtime)
    add_test(NAME library_file.${engine} COMMAND ${CMAKE_COMMAND}
      -DNM=${CMAKE_NM} -DREADELF=${CMAKE_READELF} -DLIBRARY=$<TARGET_FILE:${engine}>
      -DLIST=${CMAKE_CURRENT_SOURCE_DIR}/tests/install/exported_symbols.txt -DPOINTER_BYTES=${CMAKE_SIZEOF_VOID_P}
      -DSTATIC_RUNTIME=$<STREQUAL:${engine},vlvk_static_runtime>
      -P ${CMAKE_CURRENT_SOURCE_DIR}/tests/install/check_library_file.cmake)
  endforeach()
endif()
