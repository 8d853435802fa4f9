# Makes the Debian package of a build, unpacks it and runs the program from there. Variables: SOURCE, BUILD, WORK (folders),
# VERSION, SOVERSION, CPACK, DPKG_DEB.

include(${CMAKE_CURRENT_LIST_DIR}/run.cmake)
file(REMOVE_RECURSE ${WORK})
run(${CPACK} -G DEB -B ${WORK} --config ${BUILD}/CPackConfig.cmake)
file(GLOB package ${WORK}/vlvk-makeup_${VERSION}_*.deb)

run(${DPKG_DEB} -f ${package} Depends)
if(NOT output MATCHES "libc6 .*libstdc\\+\\+6")
  message(FATAL_ERROR "depends on: ${output}")
endif()

run(${DPKG_DEB} -c ${package})
foreach(file
    "-rwxr-xr-x root/root [^\n]*/usr/bin/vlvk-makeup"
    "-rw-r--r-- root/root [^\n]*/usr/lib[^\n]*/libVLVKMakeupEngine.so.${VERSION}"
    "lrwxrwxrwx root/root [^\n]*/libVLVKMakeupEngine.so.${SOVERSION} -> libVLVKMakeupEngine.so.${VERSION}"
    "lrwxrwxrwx root/root [^\n]*/libVLVKMakeupEngine.so -> libVLVKMakeupEngine.so.${SOVERSION}"
    "-rw-r--r-- root/root [^\n]*/usr/include/vlvk/CFastEdgePreserved.h"
    "-rw-r--r-- root/root [^\n]*/pkgconfig/VLVKMakeupEngine.pc"
    "-rw-r--r-- root/root [^\n]*/cmake/VLVKMakeupEngine/VLVKMakeupEngineConfig.cmake"
    "-rw-r--r-- root/root [^\n]*/usr/share/man/man1/vlvk-makeup.1(.gz)?"
    "drwxr-xr-x root/root [^\n]*/usr/share/doc/vlvk-makeup/")
  if(NOT output MATCHES "${file}\n")
    message(FATAL_ERROR "'${file}' is not in the package:\n${output}")
  endif()
endforeach()

run(${DPKG_DEB} -x ${package} ${WORK}/unpacked)
run(${WORK}/unpacked/usr/bin/vlvk-makeup photo ${SOURCE}/samples/portrait.png ${WORK}/portrait.png)
