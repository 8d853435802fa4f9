# The frei0r plugin, build/frei0r-1/vlvkmakeup.so: a folder of its own, for FREI0R_PATH.

find_path(VLVK_FREI0R_INCLUDE_DIR frei0r.h)
mark_as_advanced(VLVK_FREI0R_INCLUDE_DIR)
if(NOT VLVK_FREI0R_INCLUDE_DIR)
  vlvk_report_missing(VLVK_FREI0R "the frei0r plugin" "frei0r.h")
  return()
endif()

add_library(vlvk_frei0r MODULE
  plugins/about.h
  plugins/frei0r/frei0r_api.h
  plugins/frei0r/instance.cpp
  plugins/frei0r/instance.h
  plugins/frei0r/parameters.cpp
  plugins/frei0r/parameters.h
  plugins/frei0r/plugin.cpp
  plugins/table_file.cpp
  plugins/table_file.h
)
set(VLVK_FREI0R_EXPORTS ${CMAKE_CURRENT_SOURCE_DIR}/plugins/frei0r/exports.map)
set_target_properties(vlvk_frei0r PROPERTIES
  PREFIX ""
  OUTPUT_NAME vlvkmakeup
  LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/frei0r-1
  LINK_DEPENDS ${VLVK_FREI0R_EXPORTS})
target_include_directories(vlvk_frei0r SYSTEM PRIVATE ${VLVK_FREI0R_INCLUDE_DIR})
target_include_directories(vlvk_frei0r PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(vlvk_frei0r PRIVATE VLVKMakeupEngine::VLVKMakeupEngine)
target_link_options(vlvk_frei0r PRIVATE -Wl,--version-script=${VLVK_FREI0R_EXPORTS})
vlvk_set_flags(vlvk_frei0r)

# The tests, in a host of their own.
if(NOT VLVK_BUILD_TESTS OR NOT TARGET vlvk_tests)
  return()
endif()
add_executable(vlvk_frei0r_tests
  tests/plugins/engine_input.h
  tests/plugins/frei0r/frei0r_host.h
  tests/plugins/frei0r/frei0r_test.cpp
)
target_link_libraries(vlvk_frei0r_tests PRIVATE GTest::gtest GTest::gtest_main)
set(VLVK_FREI0R_HOSTS vlvk_frei0r_tests)
if(TARGET vlvk_failure_tests)
  target_sources(vlvk_failure_tests PRIVATE tests/plugins/frei0r/frei0r_host.h tests/plugins/frei0r/frei0r_failure_test.cpp)
  list(APPEND VLVK_FREI0R_HOSTS vlvk_failure_tests)
endif()
foreach(host IN LISTS VLVK_FREI0R_HOSTS)
  target_compile_definitions(${host} PRIVATE VLVK_FREI0R_PLUGIN="$<TARGET_FILE:vlvk_frei0r>")
  target_include_directories(${host} SYSTEM PRIVATE ${VLVK_FREI0R_INCLUDE_DIR})
  target_include_directories(${host} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${host} PRIVATE VLVKMakeupEngine ${CMAKE_DL_LIBS})
  add_dependencies(${host} vlvk_frei0r)
endforeach()
vlvk_set_test_flags(vlvk_frei0r_tests)
vlvk_discover_tests(vlvk_frei0r_tests 1)
