# The Debian package: `cpack -G DEB` in the build folder.

set(VLVK_PACKAGE_MAINTAINER "VLVKMakeupEngine maintainers <maintainers@example.org>" CACHE STRING
  "Who answers for a package that is given away")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vlvk-makeup)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR VLVKMakeupEngine)
set(CPACK_PACKAGE_CONTACT "${VLVK_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "skin beautification for pictures and camera video")
set(CPACK_PACKAGE_DESCRIPTION
  "VLVKMakeupEngine smooths skin in frames of camera video, leaves edges, eyes and
hair alone, whitens and adjusts colours, in real time.
.
This package has the shared library, what programs need to be built with it
(headers, CMake and pkg-config files), the program vlvk-makeup, which does the
same to picture files, and, where they were built, the Java classes.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
if(TARGET vlvk-makeup)
  set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/debian/compress_man_pages.cmake)  # from CMake 3.19 on
endif()
include(CPack)
