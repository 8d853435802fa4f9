# The desktop program vlvk-makeup. Everything but its main function is a library, so that tests reach it. The engine is
# linked in, as the choice of the target is no exported name.

find_package(CLI11 CONFIG QUIET)
find_package(PNG QUIET)
find_package(JPEG QUIET)
find_path(VLVK_GD_INCLUDE_DIR gd.h)
find_library(VLVK_GD_LIBRARY NAMES gd libgd)
mark_as_advanced(VLVK_GD_INCLUDE_DIR VLVK_GD_LIBRARY)
find_package(ZLIB QUIET)

set(VLVK_TOOLS_MISSING "")
if(NOT CLI11_FOUND)
  list(APPEND VLVK_TOOLS_MISSING "CLI11")
endif()
if(NOT PNG_FOUND)
  list(APPEND VLVK_TOOLS_MISSING "libpng")
endif()
if(NOT JPEG_FOUND)
  list(APPEND VLVK_TOOLS_MISSING "libjpeg-turbo")
endif()
if(NOT VLVK_GD_INCLUDE_DIR OR NOT VLVK_GD_LIBRARY)
  list(APPEND VLVK_TOOLS_MISSING "libgd")
endif()
if(NOT ZLIB_FOUND)
  list(APPEND VLVK_TOOLS_MISSING "zlib")
endif()
if(VLVK_TOOLS_MISSING)
  list(JOIN VLVK_TOOLS_MISSING ", " VLVK_TOOLS_MISSING)
  message(STATUS "vlvk-makeup is not built, missing: ${VLVK_TOOLS_MISSING}")
  return()
endif()

add_library(vlvk_tool STATIC
  tools/beautify.cpp
  tools/beautify.h
  tools/bench.cpp
  tools/bench.h
  tools/color_cube.cpp
  tools/color_cube.h
  tools/cube_file.cpp
  tools/cube_file.h
  tools/error.h
  tools/error_line.cpp
  tools/error_line.h
  tools/exif_orientation.cpp
  tools/exif_orientation.h
  tools/frame_pipe.cpp
  tools/frame_pipe.h
  tools/frame_queue.h
  tools/frame_records.cpp
  tools/frame_records.h
  tools/frame_stream.cpp
  tools/frame_stream.h
  tools/input_file.cpp
  tools/input_file.h
  tools/input_stream.cpp
  tools/input_stream.h
  tools/interrupt.cpp
  tools/interrupt.h
  tools/jpeg_file.cpp
  tools/jpeg_file.h
  tools/look.cpp
  tools/look.h
  tools/look_options.cpp
  tools/look_options.h
  tools/number_option.cpp
  tools/number_option.h
  tools/nv21_frame.cpp
  tools/nv21_frame.h
  tools/output_file.cpp
  tools/output_file.h
  tools/photo.cpp
  tools/photo.h
  tools/picture.cpp
  tools/picture.h
  tools/picture_file.cpp
  tools/picture_file.h
  tools/png_file.cpp
  tools/png_file.h
  tools/progress.cpp
  tools/progress.h
  tools/sheet.cpp
  tools/sheet.h
  tools/sheet_canvas.cpp
  tools/sheet_canvas.h
  tools/sheet_options.cpp
  tools/sheet_options.h
  tools/size_option.cpp
  tools/size_option.h
  tools/standard_output.cpp
  tools/standard_output.h
  tools/table.cpp
  tools/table.h
  tools/table_file.cpp
  tools/table_file.h
  tools/table_formats.cpp
  tools/table_formats.h
  tools/table_picture.cpp
  tools/table_picture.h
  tools/target.cpp
  tools/target.h
  tools/video.cpp
  tools/video.h
  tools/video_frame.cpp
  tools/video_frame.h
  tools/weight_map.cpp
  tools/weight_map.h
  tools/y4m.cpp
  tools/y4m.h
)
target_link_libraries(vlvk_tool PUBLIC vlvk_objects CLI11::CLI11 PNG::PNG JPEG::JPEG ZLIB::ZLIB ${VLVK_GD_LIBRARY})
target_include_directories(vlvk_tool SYSTEM PRIVATE ${VLVK_GD_INCLUDE_DIR})
vlvk_set_warnings(vlvk_tool)

add_executable(vlvk-makeup tools/main.cpp)
target_link_libraries(vlvk-makeup PRIVATE vlvk_tool)
vlvk_set_warnings(vlvk-makeup)
