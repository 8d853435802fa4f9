# Compares what gst-inspect-1.0 says of the element with inspect.txt, but for version and folder. Variables: INSPECT, FOLDER
# (of the plugin), REGISTRY (a file), LIST. As GStreamer 1.22 words it; others are skipped.

include(${CMAKE_CURRENT_LIST_DIR}/../../install/run.cmake)
run(${INSPECT} --version)
if(NOT output MATCHES "version 1\\.22\\.")
  message("Skipped: ${output}")
  return()
endif()

set(ENV{G_DEBUG} fatal-criticals)
set(ENV{GST_PLUGIN_PATH} ${FOLDER})
set(ENV{GST_PLUGIN_SYSTEM_PATH_1_0} "")
set(ENV{GST_REGISTRY} ${REGISTRY})
run(${INSPECT} --no-colors vlvkmakeup)
string(REGEX REPLACE "  (Filename|Version) [^\n]*\n" "" output "${output}")
file(READ ${LIST} expected)
if(NOT output STREQUAL expected)
  file(WRITE ${REGISTRY}.txt "${output}")
  execute_process(COMMAND diff -u ${LIST} ${REGISTRY}.txt)
  message(FATAL_ERROR "The element is not the one of ${LIST}")
endif()
