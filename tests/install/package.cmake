# Makes the Debian packages of a build, unpacks them together and runs the program from there. Variables: SOURCE, BUILD, WORK
# (folders), VERSION, SOVERSION, CPACK, DPKG_DEB, JAVA, GSTREAMER, FREI0R (whether the Java classes and the plugins are
# built).

include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)
file(REMOVE_RECURSE ${WORK})
run(${CPACK} -G DEB -B ${WORK} --config ${BUILD}/CPackConfig.cmake)
if(error MATCHES "Warning")
  message(FATAL_ERROR "cpack warns: ${error}")
endif()

# check_package(name DEPENDS pattern FILES pattern ...): a package with these files, which depends on what is named.
function(check_package name)
  cmake_parse_arguments(PACKAGE "" "DEPENDS" "FILES" ${ARGN})
  file(GLOB package ${WORK}/${name}_${VERSION}_*.deb)
  run(${DPKG_DEB} -f ${package} Depends)
  if(NOT output MATCHES "^${PACKAGE_DEPENDS}\n$")
    message(FATAL_ERROR "${name} depends on: ${output}")
  endif()
  run(${DPKG_DEB} -c ${package})
  foreach(file IN LISTS PACKAGE_FILES)
    if(NOT output MATCHES "${file}\n")
      message(FATAL_ERROR "'${file}' is not in ${name}:\n${output}")
    endif()
  endforeach()
  run(${DPKG_DEB} -x ${package} ${WORK}/unpacked)
endfunction()

set(library libvlvkmakeupengine${SOVERSION})
check_package(${library} DEPENDS "libc6 .*libstdc\\+\\+6[^\n]*" FILES
  "-rw-r--r-- root/root [^\n]*/usr/lib[^\n]*/libVLVKMakeupEngine.so.${VERSION}"
  "lrwxrwxrwx root/root [^\n]*/libVLVKMakeupEngine.so.${SOVERSION} -> libVLVKMakeupEngine.so.${VERSION}")
file(GLOB package ${WORK}/${library}_*.deb)
run(${DPKG_DEB} -I ${package} shlibs)
if(NOT output STREQUAL "libVLVKMakeupEngine ${SOVERSION} ${library} (>= ${VERSION})\n")
  message(FATAL_ERROR "other packages would depend on: ${output}")
endif()
check_package(libvlvkmakeupengine-dev DEPENDS "${library} \\(= ${VERSION}\\)" FILES
  "lrwxrwxrwx root/root [^\n]*/libVLVKMakeupEngine.so -> libVLVKMakeupEngine.so.${SOVERSION}"
  "-rw-r--r-- root/root [^\n]*/usr/include/vlvk/CFastEdgePreserved.h"
  "-rw-r--r-- root/root [^\n]*/pkgconfig/VLVKMakeupEngine.pc"
  "-rw-r--r-- root/root [^\n]*/cmake/VLVKMakeupEngine/VLVKMakeupEngineConfig.cmake"
  "drwxr-xr-x root/root [^\n]*/usr/share/doc/VLVKMakeupEngine/")
check_package(vlvk-makeup DEPENDS "[^\n]*libc6 .*libstdc\\+\\+6[^\n]*" FILES
  "-rwxr-xr-x root/root [^\n]*/usr/bin/vlvk-makeup"
  "-rw-r--r-- root/root [^\n]*/usr/share/man/man1/vlvk-makeup.1(.gz)?")
if(JAVA)
  check_package(libvlvkmakeupengine-java DEPENDS "${library} \\(>= ${VERSION}\\)" FILES
    "-rw-r--r-- root/root [^\n]*/usr/share/java/VLVKMakeupEngine.jar")
endif()
if(GSTREAMER)
  check_package(gstreamer1.0-vlvkmakeup
    DEPENDS "${library} \\(>= ${VERSION}\\), [^\n]*libgstreamer-plugins-base1.0-0 [^\n]*" FILES
    "-rw-r--r-- root/root [^\n]*/usr/lib[^\n]*/gstreamer-1.0/libgstvlvkmakeup.so")
endif()
if(FREI0R)
  check_package(frei0r-vlvkmakeup DEPENDS "[^\n]*${library} \\(>= ${VERSION}\\)[^\n]*libc6 [^\n]*" FILES
    "-rw-r--r-- root/root [^\n]*/usr/lib/frei0r-1/vlvkmakeup.so")
endif()

run(${WORK}/unpacked/usr/bin/vlvk-makeup photo ${SOURCE}/samples/portrait.png ${WORK}/portrait.png)
