# vlvk_api_docs: pages of the public headers and of docs/, as HTML in api_docs/ of the build folder. Fails on a public name
# or parameter without a description.

find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "The pages of the public headers cannot be made, missing: Doxygen")
  return()
endif()

# The headers that declare what the library exports.
if(NOT DEFINED VLVK_PUBLIC_C_HEADERS)
  set(VLVK_PUBLIC_C_HEADERS
    base/export.h
    convert/rgb_to_yuv.h
    convert/yuv_to_rgb.h
    kernels/alt/integral_mean.h
    kernels/alt/line_mean.h
    kernels/alt/mean_var_blend.h
    kernels/band_smoothing.h
    kernels/reference_filter.h
    kernels/skin_blend.h
    kernels/skin_tables.h)
endif()
if(NOT DEFINED VLVK_PUBLIC_CXX_HEADERS)
  set(VLVK_PUBLIC_CXX_HEADERS
    bindings/CMakeupEngine3.h
    bindings/IBeautyResourceLoader.h
    bindings/jni_library.h
    bindings/makeup_entry_points.h
    filter/CFastEdgePreserved.h)
endif()

set(VLVK_DOXYGEN_INPUT ${VLVK_PUBLIC_C_HEADERS} ${VLVK_PUBLIC_CXX_HEADERS} docs README.md CONTRIBUTING.md
  samples/README.md)
list(JOIN VLVK_DOXYGEN_INPUT " " VLVK_DOXYGEN_INPUT)
configure_file(docs/Doxyfile.in ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(vlvk_api_docs
  COMMAND ${DOXYGEN_EXECUTABLE} ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile
  WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
  COMMENT "Making ${CMAKE_CURRENT_BINARY_DIR}/api_docs/index.html"
  VERBATIM)
