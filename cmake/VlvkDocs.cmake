# vlvk_api_docs: pages of the public headers and of docs/, as HTML in api_docs/ of the build folder. Fails on a public name
# or parameter without a description.

find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "Not built: the pages of the public headers, missing: Doxygen")
  return()
endif()

set(VLVK_DOXYGEN_INPUT include/vlvk docs README.md CONTRIBUTING.md samples/README.md)
list(JOIN VLVK_DOXYGEN_INPUT " " VLVK_DOXYGEN_INPUT)
configure_file(docs/Doxyfile.in ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(vlvk_api_docs
  COMMAND ${DOXYGEN_EXECUTABLE} ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile
  WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
  COMMENT "Making ${CMAKE_CURRENT_BINARY_DIR}/api_docs/index.html"
  VERBATIM)
