# Tests of the GStreamer element, with the library that it is linked with.

find_library(VLVK_gstcheck_LIBRARY gstcheck-1.0)
find_library(VLVK_gstcontroller_LIBRARY gstcontroller-1.0)
mark_as_advanced(VLVK_gstcheck_LIBRARY VLVK_gstcontroller_LIBRARY)
if(NOT VLVK_gstcheck_LIBRARY OR NOT VLVK_gstcontroller_LIBRARY)
  vlvk_report_missing(VLVK_GSTREAMER "the tests of the GStreamer element" "GStreamer's check and controller libraries")
  return()
endif()

# vlvk_add_gstreamer_tests(executable source ...)
function(vlvk_add_gstreamer_tests executable)
  add_executable(${executable}
    tests/plugins/engine_input.h
    tests/plugins/gstreamer/element_rig.cpp
    tests/plugins/gstreamer/element_rig.h
    ${ARGN})
  target_include_directories(${executable} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_definitions(${executable} PRIVATE VLVK_GSTREAMER_PLUGIN="$<TARGET_FILE:gstvlvkmakeup>")
  target_link_libraries(${executable} PRIVATE VLVKMakeupEngine GTest::gtest GTest::gtest_main
    ${VLVK_gstcheck_LIBRARY} ${VLVK_gstcontroller_LIBRARY} vlvk_gst)
  add_dependencies(${executable} gstvlvkmakeup)
  vlvk_set_test_flags(${executable})
  vlvk_discover_tests(${executable} 1)
endfunction()

vlvk_add_gstreamer_tests(vlvk_gstreamer_tests tests/plugins/gstreamer/element_test.cpp)
if(NOT VLVK_SANITIZE)
  vlvk_add_gstreamer_tests(vlvk_gstreamer_failure_tests
    tests/plugins/gstreamer/element_failure_test.cpp
    tests/support/failing_system.cpp
    tests/support/failing_system.h)
  target_link_libraries(vlvk_gstreamer_failure_tests PRIVATE ${CMAKE_DL_LIBS})
endif()

find_program(VLVK_GST_INSPECT gst-inspect-1.0)
mark_as_advanced(VLVK_GST_INSPECT)
if(NOT VLVK_GST_INSPECT)
  message(STATUS "Not tested: what gst-inspect-1.0 says of the element, missing: gst-inspect-1.0")
elseif(NOT VLVK_SANITIZE)
  add_test(NAME gstreamer.inspect COMMAND ${CMAKE_COMMAND}
    -DINSPECT=${VLVK_GST_INSPECT} -DFOLDER=${VLVK_GSTREAMER_FOLDER}
    -DREGISTRY=${CMAKE_CURRENT_BINARY_DIR}/gstreamer-registry.bin
    -DLIST=${CMAKE_CURRENT_SOURCE_DIR}/tests/plugins/gstreamer/inspect.txt
    -P ${CMAKE_CURRENT_SOURCE_DIR}/tests/plugins/gstreamer/check_inspect.cmake)
  set_tests_properties(gstreamer.inspect PROPERTIES TIMEOUT 60 SKIP_REGULAR_EXPRESSION "Skipped")
endif()
