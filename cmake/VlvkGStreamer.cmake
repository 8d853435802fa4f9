# The GStreamer element vlvkmakeup. It uses the library as hosts do: makeup.h, and what is exported.

# Looked for file by file: GStreamer's pkg-config files ask for those of libunwind and libdw, which the headers
# do not include, and of which Debian removes the first where libc++ is installed.
find_path(VLVK_GST_INCLUDE_DIR gst/video/gstvideofilter.h PATH_SUFFIXES gstreamer-1.0)
find_path(VLVK_GLIB_INCLUDE_DIR glib-object.h PATH_SUFFIXES glib-2.0)
find_library(VLVK_glib_LIBRARY glib-2.0)
get_filename_component(VLVK_GLIB_FOLDER "${VLVK_glib_LIBRARY}" DIRECTORY)
find_path(VLVK_GLIB_CONFIG_DIR glibconfig.h HINTS ${VLVK_GLIB_FOLDER}/glib-2.0/include)
set(VLVK_GST_LIBRARIES "")
foreach(name gstvideo gstbase gstreamer gobject glib)
  find_library(VLVK_${name}_LIBRARY NAMES ${name}-1.0 ${name}-2.0)
  mark_as_advanced(VLVK_${name}_LIBRARY)
  list(APPEND VLVK_GST_LIBRARIES ${VLVK_${name}_LIBRARY})
endforeach()
mark_as_advanced(VLVK_GST_INCLUDE_DIR VLVK_GLIB_INCLUDE_DIR VLVK_GLIB_CONFIG_DIR)
set(VLVK_GST_NEEDS ${VLVK_GST_INCLUDE_DIR} ${VLVK_GLIB_INCLUDE_DIR} ${VLVK_GLIB_CONFIG_DIR} ${VLVK_GST_LIBRARIES})
if(VLVK_GST_NEEDS MATCHES "NOTFOUND")
  vlvk_report_missing(VLVK_GSTREAMER "the GStreamer element" "GStreamer's video library")
  return()
endif()
file(STRINGS ${VLVK_GST_INCLUDE_DIR}/gst/gstversion.h VLVK_GST_VERSION REGEX "define GST_VERSION_M(AJ|IN)OR ")
string(REGEX REPLACE "[^0-9]*([0-9]+)[^0-9]*;[^0-9]*([0-9]+).*" "\\1.\\2" VLVK_GST_VERSION "${VLVK_GST_VERSION}")
if(VLVK_GST_VERSION VERSION_LESS 1.18)
  vlvk_report_missing(VLVK_GSTREAMER "the GStreamer element" "GStreamer 1.18 or later (found: ${VLVK_GST_VERSION})")
  return()
endif()
add_library(vlvk_gst INTERFACE)
target_include_directories(vlvk_gst SYSTEM INTERFACE
  ${VLVK_GST_INCLUDE_DIR} ${VLVK_GLIB_INCLUDE_DIR} ${VLVK_GLIB_CONFIG_DIR})
target_link_libraries(vlvk_gst INTERFACE ${VLVK_GST_LIBRARIES})

# GStreamer wants the file to be called after the plugin. The folder holds nothing else, for GST_PLUGIN_PATH.
set(VLVK_GSTREAMER_FOLDER ${CMAKE_CURRENT_BINARY_DIR}/gstreamer-1.0)
add_library(gstvlvkmakeup MODULE
  plugins/about.h
  plugins/gstreamer/failure.cpp
  plugins/gstreamer/failure.h
  plugins/gstreamer/makeup_element.cpp
  plugins/gstreamer/makeup_element.h
  plugins/gstreamer/makeup_stream.cpp
  plugins/gstreamer/makeup_stream.h
  plugins/gstreamer/plugin.cpp
  plugins/gstreamer/properties.cpp
  plugins/gstreamer/properties.h
  plugins/gstreamer/video_frame.cpp
  plugins/gstreamer/video_frame.h
  plugins/table_file.cpp
  plugins/table_file.h
)
target_include_directories(gstvlvkmakeup PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(gstvlvkmakeup PRIVATE VLVKMakeupEngine::VLVKMakeupEngine vlvk_gst)
set_target_properties(gstvlvkmakeup PROPERTIES
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON
  LIBRARY_OUTPUT_DIRECTORY ${VLVK_GSTREAMER_FOLDER}
  INSTALL_RPATH "$ORIGIN/..")  # where the library is installed
vlvk_set_flags(gstvlvkmakeup)
