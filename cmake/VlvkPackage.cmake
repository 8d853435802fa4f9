# Debian packages, one for each component: `cpack -G DEB` in the build folder.

set(VLVK_PACKAGE_MAINTAINER "VLVKMakeupEngine maintainers <maintainers@example.org>" CACHE STRING
  "Who answers for packages that are given away")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vlvk-makeup)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR VLVKMakeupEngine)
set(CPACK_PACKAGE_CONTACT "${VLVK_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # or it comes before that of each package
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# vlvk_add_package(component name section "summary" "description"): the package of a component.
function(vlvk_add_package component name section summary description)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} PARENT_SCOPE)
  string(TOUPPER ${component} component)
  set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${component}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_COMPONENT_${component}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
endfunction()

set(VLVK_LIBRARY_PACKAGE libvlvkmakeupengine${PROJECT_VERSION_MAJOR})
set(VLVK_ABOUT
  "VLVKMakeupEngine smooths skin in frames of camera video and keeps edges and eyes,
then whitens and adjusts colours, in real time.
.")

set(CPACK_COMPONENTS_ALL "")
if(BUILD_SHARED_LIBS)
  vlvk_add_package(library ${VLVK_LIBRARY_PACKAGE} libs "skin beautification for camera video, shared library"
    "${VLVK_ABOUT}\nThis package has the shared library.")
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
  # Left to CPack this file would be looked for in plugins too, with a warning for each as none has a SONAME.
  set(VLVK_SHLIBS ${CMAKE_CURRENT_BINARY_DIR}/package/shlibs)
  file(WRITE ${VLVK_SHLIBS}
    "libVLVKMakeupEngine ${PROJECT_VERSION_MAJOR} ${VLVK_LIBRARY_PACKAGE} (>= ${PROJECT_VERSION})\n")
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/triggers ${VLVK_SHLIBS})
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${VLVK_LIBRARY_PACKAGE} (= ${PROJECT_VERSION})")
endif()
vlvk_add_package(development libvlvkmakeupengine-dev libdevel "skin beautification for camera video, development files"
  "${VLVK_ABOUT}\nThis package has what programs are built with: headers, the library to link,\nCMake and pkg-config files, and pages about them.")
if(TARGET vlvk-makeup)
  # The engine is linked into the program, which therefore does not depend on the library's package.
  vlvk_add_package(program vlvk-makeup graphics "skin beautification for pictures and videos"
    "${VLVK_ABOUT}\nThis package has the program vlvk-makeup, which does the same to picture files\nand videos.")
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
  set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/compress_man_pages.cmake)  # from CMake 3.19 on
endif()
if(TARGET vlvk_java)
  vlvk_add_package(java libvlvkmakeupengine-java java "skin beautification for camera video, Java classes"
    "${VLVK_ABOUT}\nThis package has the Java classes.")
  set(CPACK_DEBIAN_JAVA_PACKAGE_ARCHITECTURE all)
  set(CPACK_DEBIAN_JAVA_PACKAGE_DEPENDS "${VLVK_LIBRARY_PACKAGE} (>= ${PROJECT_VERSION})")
endif()
# dpkg-shlibdeps finds out what plugins need. The library that it finds here belongs to no package yet, which only CMake
# 3.20 and later tells it: with others packages of plugins name the library's package alone.
set(VLVK_PLUGIN_SHLIBDEPS OFF)
if(CMAKE_VERSION VERSION_GREATER_EQUAL 3.20 OR NOT BUILD_SHARED_LIBS)
  set(VLVK_PLUGIN_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})
endif()
if(TARGET gstvlvkmakeup)
  vlvk_add_package(gstreamer gstreamer1.0-vlvkmakeup video "skin beautification for camera video, GStreamer element"
    "${VLVK_ABOUT}\nThis package has the GStreamer element vlvkmakeup.")
  set(CPACK_DEBIAN_GSTREAMER_PACKAGE_SHLIBDEPS ${VLVK_PLUGIN_SHLIBDEPS})
  if(BUILD_SHARED_LIBS)
    set(CPACK_DEBIAN_GSTREAMER_PACKAGE_DEPENDS "${VLVK_LIBRARY_PACKAGE} (>= ${PROJECT_VERSION})")
  endif()
endif()
if(TARGET vlvk_frei0r)
  # CPack takes what lies one folder below /usr/lib for a library, so that this package runs ldconfig, which does no harm.
  vlvk_add_package(frei0r frei0r-vlvkmakeup video "skin beautification for FFmpeg, Kdenlive, Shotcut (frei0r)"
    "${VLVK_ABOUT}\nThis package has the plugin vlvkmakeup for programs that load frei0r plugins.")
  set(CPACK_DEBIAN_FREI0R_PACKAGE_SHLIBDEPS ${VLVK_PLUGIN_SHLIBDEPS})
  if(BUILD_SHARED_LIBS)
    set(CPACK_DEBIAN_FREI0R_PACKAGE_DEPENDS "${VLVK_LIBRARY_PACKAGE} (>= ${PROJECT_VERSION})")
  endif()
endif()
include(CPack)
