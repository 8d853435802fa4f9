# The desktop program vlvk-makeup. Everything but its main function is a library, so that tests reach it. The engine is
# linked in, as the choice of the target is no exported name.

find_package(CLI11 CONFIG QUIET)
find_package(PNG QUIET)
find_package(JPEG QUIET)
find_path(VLVK_GD_INCLUDE_DIR gd.h)
find_library(VLVK_GD_LIBRARY NAMES gd libgd)
mark_as_advanced(VLVK_GD_INCLUDE_DIR VLVK_GD_LIBRARY)
find_package(ZLIB QUIET)
find_package(exiv2 CONFIG QUIET)
find_path(VLVK_WEBP_INCLUDE_DIR webp/mux.h)
set(VLVK_WEBP_LIBRARIES "")
foreach(name webp webpdemux webpmux)
  find_library(VLVK_${name}_LIBRARY NAMES ${name} lib${name})
  mark_as_advanced(VLVK_${name}_LIBRARY)
  list(APPEND VLVK_WEBP_LIBRARIES ${VLVK_${name}_LIBRARY})
endforeach()
find_path(VLVK_HEIF_INCLUDE_DIR libheif/heif.h)
find_library(VLVK_HEIF_LIBRARY NAMES heif libheif)
mark_as_advanced(VLVK_WEBP_INCLUDE_DIR VLVK_HEIF_INCLUDE_DIR VLVK_HEIF_LIBRARY)

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
if(NOT TARGET exiv2lib)
  list(APPEND VLVK_TOOLS_MISSING "Exiv2")
endif()
if(NOT VLVK_WEBP_INCLUDE_DIR OR VLVK_WEBP_LIBRARIES MATCHES "NOTFOUND")
  list(APPEND VLVK_TOOLS_MISSING "libwebp")
endif()
if(VLVK_TOOLS_MISSING)
  vlvk_report_missing(VLVK_BUILD_TOOLS vlvk-makeup ${VLVK_TOOLS_MISSING})
  return()
endif()

add_library(vlvk_tool STATIC
  tools/commands/bench.cpp
  tools/commands/canvas.cpp
  tools/commands/canvas.h
  tools/commands/commands.h
  tools/commands/files.cpp
  tools/commands/files.h
  tools/commands/memory_budget.cpp
  tools/commands/memory_budget.h
  tools/commands/photo.cpp
  tools/commands/several_files.cpp
  tools/commands/several_files.h
  tools/commands/several_videos.cpp
  tools/commands/sheet.cpp
  tools/commands/table.cpp
  tools/commands/video.cpp
  tools/commands/video_steps.h
  tools/engine/beautify.cpp
  tools/engine/beautify.h
  tools/engine/engine.cpp
  tools/engine/engine.h
  tools/engine/frame_times.h
  tools/engine/mask.cpp
  tools/engine/mask.h
  tools/engine/skin_frame.h
  tools/engine/weight_map.cpp
  tools/io/input_file.cpp
  tools/io/input_file.h
  tools/io/input_stream.cpp
  tools/io/input_stream.h
  tools/io/interrupt.cpp
  tools/io/interrupt.h
  tools/io/messages.cpp
  tools/io/messages.h
  tools/io/output_file.cpp
  tools/io/output_file.h
  tools/media/encoder_wishes.h
  tools/options/bench_options.cpp
  tools/options/command.cpp
  tools/options/command.h
  tools/options/command_line.cpp
  tools/options/command_options.h
  tools/options/look_options.cpp
  tools/options/look_settings.cpp
  tools/options/look_settings.h
  tools/options/options.h
  tools/options/photo_options.cpp
  tools/options/sheet_options.cpp
  tools/options/table_options.cpp
  tools/options/values.cpp
  tools/options/values.h
  tools/options/video_options.cpp
  tools/picture/frame_size.cpp
  tools/picture/frame_size.h
  tools/picture/jpeg.cpp
  tools/picture/jpeg.h
  tools/picture/metadata.cpp
  tools/picture/metadata.h
  tools/picture/picture.cpp
  tools/picture/picture.h
  tools/picture/picture_file.cpp
  tools/picture/picture_file.h
  tools/picture/picture_origin.h
  tools/picture/png.cpp
  tools/picture/png.h
  tools/picture/stated_size.cpp
  tools/picture/stated_size.h
  tools/picture/webp.cpp
  tools/picture/webp.h
  tools/table/color_cube.cpp
  tools/table/color_cube.h
  tools/table/cube_file.cpp
  tools/table/cube_file.h
  tools/table/cube_parser.cpp
  tools/table/lut_picture.cpp
  tools/table/lut_picture.h
  tools/table/table_io.cpp
  tools/table/table_io.h
  tools/table/vlk_file.cpp
  tools/table/vlk_file.h
  tools/video/frame_pipe.h
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
target_link_libraries(vlvk_tool PUBLIC vlvk_objects PNG::PNG JPEG::JPEG ZLIB::ZLIB
  PRIVATE CLI11::CLI11 exiv2lib ${VLVK_WEBP_LIBRARIES} ${VLVK_GD_LIBRARY})
target_include_directories(vlvk_tool SYSTEM PRIVATE ${VLVK_GD_INCLUDE_DIR} ${VLVK_WEBP_INCLUDE_DIR})
vlvk_set_flags(vlvk_tool)

# Reading HEIC and AVIF.
if(NOT VLVK_HEIF STREQUAL "OFF")
  if(VLVK_HEIF_INCLUDE_DIR AND VLVK_HEIF_LIBRARY)
    target_sources(vlvk_tool PRIVATE tools/picture/heif.cpp tools/picture/heif.h)
    target_compile_definitions(vlvk_tool PUBLIC VLVK_WITH_HEIF)
    target_include_directories(vlvk_tool SYSTEM PUBLIC ${VLVK_HEIF_INCLUDE_DIR})
    target_link_libraries(vlvk_tool PUBLIC ${VLVK_HEIF_LIBRARY})
  else()
    vlvk_report_missing(VLVK_HEIF "reading of HEIC and AVIF" libheif)
  endif()
endif()
# Videos of all kinds, with FFmpeg; without it the program has Y4M and frames without headers.
set(VLVK_FFMPEG_MODULES libavformat libavcodec libavfilter libavdevice libavutil)
set(VLVK_FFMPEG_FOUND FALSE)
if(VLVK_VIDEO_FILES)
  find_package(PkgConfig QUIET)
  if(PKG_CONFIG_FOUND)
    pkg_check_modules(VLVK_FFMPEG QUIET IMPORTED_TARGET ${VLVK_FFMPEG_MODULES})
  endif()
  if(NOT VLVK_FFMPEG_FOUND)
    vlvk_report_missing(VLVK_VIDEO_FILES "video files in vlvk-makeup" pkg-config ${VLVK_FFMPEG_MODULES})
  endif()
endif()
if(VLVK_FFMPEG_FOUND)
  target_sources(vlvk_tool PRIVATE
    tools/commands/media.cpp
    tools/commands/media_choice.cpp
    tools/media/color_tags.cpp
    tools/media/color_tags.h
    tools/media/decoder.cpp
    tools/media/decoder.h
    tools/media/encoder.cpp
    tools/media/encoder.h
    tools/media/encoder_choice.cpp
    tools/media/encoder_choice.h
    tools/media/ffmpeg.h
    tools/media/frame_converter.cpp
    tools/media/frame_converter.h
    tools/media/hardware_frames.cpp
    tools/media/hardware_frames.h
    tools/media/media_frame.cpp
    tools/media/media_frame.h
    tools/media/media_input.cpp
    tools/media/media_input.h
    tools/media/media_log.cpp
    tools/media/media_log.h
    tools/media/media_output.cpp
    tools/media/media_output.h
    tools/media/media_reader.cpp
    tools/media/media_reader.h
    tools/media/media_writer.cpp
    tools/media/media_writer.h
    tools/media/stream_copy.cpp
    tools/media/stream_copy.h
    tools/media/video_plan.cpp
    tools/media/video_plan.h
  )
  target_link_libraries(vlvk_tool PUBLIC PkgConfig::VLVK_FFMPEG)
else()
  target_sources(vlvk_tool PRIVATE tools/commands/no_media.cpp)
endif()

add_executable(vlvk-makeup tools/main.cpp)
target_link_libraries(vlvk-makeup PRIVATE vlvk_tool)
vlvk_set_flags(vlvk-makeup)
