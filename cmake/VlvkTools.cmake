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
  vlvk_report_missing(VLVK_BUILD_TOOLS vlvk-makeup ${VLVK_TOOLS_MISSING})
  return()
endif()

add_library(vlvk_tool STATIC
  tools/commands/bench.cpp
  tools/commands/bench.h
  tools/commands/photo.cpp
  tools/commands/photo.h
  tools/commands/sheet.cpp
  tools/commands/sheet.h
  tools/commands/sheet_canvas.cpp
  tools/commands/sheet_canvas.h
  tools/commands/sheet_options.cpp
  tools/commands/sheet_options.h
  tools/commands/table.cpp
  tools/commands/table.h
  tools/commands/video.cpp
  tools/commands/video.h
  tools/engine/beautify.cpp
  tools/engine/beautify.h
  tools/engine/nv21_frame.cpp
  tools/engine/nv21_frame.h
  tools/engine/weight_map.cpp
  tools/engine/weight_map.h
  tools/io/error.h
  tools/io/error_line.cpp
  tools/io/error_line.h
  tools/io/input_file.cpp
  tools/io/input_file.h
  tools/io/input_stream.cpp
  tools/io/input_stream.h
  tools/io/interrupt.cpp
  tools/io/interrupt.h
  tools/io/output_file.cpp
  tools/io/output_file.h
  tools/io/standard_output.cpp
  tools/io/standard_output.h
  tools/options/look.cpp
  tools/options/look.h
  tools/options/look_options.cpp
  tools/options/look_options.h
  tools/options/number_option.cpp
  tools/options/number_option.h
  tools/options/size_option.cpp
  tools/options/size_option.h
  tools/options/target.cpp
  tools/options/target.h
  tools/picture/exif_orientation.cpp
  tools/picture/exif_orientation.h
  tools/picture/jpeg_file.cpp
  tools/picture/jpeg_file.h
  tools/picture/picture.cpp
  tools/picture/picture.h
  tools/picture/picture_file.cpp
  tools/picture/picture_file.h
  tools/picture/png_file.cpp
  tools/picture/png_file.h
  tools/table/color_cube.cpp
  tools/table/color_cube.h
  tools/table/cube_file.cpp
  tools/table/cube_file.h
  tools/table/table_file.cpp
  tools/table/table_file.h
  tools/table/table_formats.cpp
  tools/table/table_formats.h
  tools/table/table_picture.cpp
  tools/table/table_picture.h
  tools/video/frame_pipe.cpp
  tools/video/frame_pipe.h
  tools/video/frame_queue.h
  tools/video/frame_records.cpp
  tools/video/frame_records.h
  tools/video/frame_stream.cpp
  tools/video/frame_stream.h
  tools/video/progress.cpp
  tools/video/progress.h
  tools/video/video_frame.cpp
  tools/video/video_frame.h
  tools/video/y4m.cpp
  tools/video/y4m.h
)
target_link_libraries(vlvk_tool PUBLIC vlvk_objects CLI11::CLI11 PNG::PNG JPEG::JPEG ZLIB::ZLIB ${VLVK_GD_LIBRARY})
target_include_directories(vlvk_tool SYSTEM PRIVATE ${VLVK_GD_INCLUDE_DIR})
vlvk_set_flags(vlvk_tool)

add_executable(vlvk-makeup tools/main.cpp)
target_link_libraries(vlvk-makeup PRIVATE vlvk_tool)
vlvk_set_flags(vlvk-makeup)
