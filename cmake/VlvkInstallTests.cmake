# Tests of what is installed, packaged and written about the program, and of the library inside another project.

if(CMAKE_CROSSCOMPILING OR VLVK_SANITIZE)
  return()
endif()

if(TARGET vlvk-makeup)
  add_test(NAME man_page.options COMMAND ${CMAKE_COMMAND}
    -DPROGRAM=$<TARGET_FILE:vlvk-makeup> -DPAGE=${CMAKE_CURRENT_SOURCE_DIR}/man/vlvk-makeup.1
    -P ${CMAKE_CURRENT_SOURCE_DIR}/tests/install/check_man_page.cmake)
  find_program(VLVK_MANDOC mandoc)
  if(VLVK_MANDOC)
    add_test(NAME man_page.lint COMMAND ${VLVK_MANDOC} -Tlint -Wstyle ${CMAKE_CURRENT_SOURCE_DIR}/man/vlvk-makeup.1)
  else()
    message(STATUS "Not checked: the layout of the manual page, missing: mandoc")
  endif()
endif()

if(NOT VLVK_INSTALL OR NOT VLVK_TOP_LEVEL)
  return()
endif()

# Both install, which leaves its list of files in the build folder.
function(vlvk_add_install_test name)
  add_test(NAME install.${name} COMMAND ${CMAKE_COMMAND}
    -DSOURCE=${CMAKE_CURRENT_SOURCE_DIR}
    -DBUILD=${CMAKE_CURRENT_BINARY_DIR}
    -DWORK=${CMAKE_CURRENT_BINARY_DIR}/install_test/${name}
    -DVERSION=${PROJECT_VERSION}
    ${ARGN}
    -P ${CMAKE_CURRENT_SOURCE_DIR}/tests/install/${name}.cmake)
  set_tests_properties(install.${name} PROPERTIES RESOURCE_LOCK install TIMEOUT 300 COST 100)  # long: first
endfunction()

# Both look for what a shared library alone has.
if(NOT BUILD_SHARED_LIBS)
  return()
endif()

if(CMAKE_C_COMPILER AND CMAKE_READELF)
  find_program(VLVK_PKG_CONFIG pkg-config)
  if(NOT VLVK_PKG_CONFIG)
    message(STATUS "Not tested: the pkg-config file, missing: pkg-config")
    set(VLVK_PKG_CONFIG "")
  endif()
  vlvk_add_install_test(consumers
    -DLIBDIR=${CMAKE_INSTALL_LIBDIR}
    -DGENERATOR=${CMAKE_GENERATOR}
    -DC_COMPILER=${CMAKE_C_COMPILER}
    -DCXX_COMPILER=${CMAKE_CXX_COMPILER}
    -DREADELF=${CMAKE_READELF}
    -DPKG_CONFIG=${VLVK_PKG_CONFIG})
endif()

find_program(VLVK_DPKG_DEB dpkg-deb)
find_program(VLVK_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(TARGET vlvk-makeup AND VLVK_DPKG_DEB AND VLVK_DPKG_SHLIBDEPS)
  vlvk_add_install_test(package
    -DSOVERSION=${PROJECT_VERSION_MAJOR} -DCPACK=${CMAKE_CPACK_COMMAND} -DDPKG_DEB=${VLVK_DPKG_DEB}
    -DJAVA=$<TARGET_EXISTS:vlvk_java>
    -DGSTREAMER=$<TARGET_EXISTS:gstvlvkmakeup> -DFREI0R=$<TARGET_EXISTS:vlvk_frei0r>)
else()
  message(STATUS "Not tested: the Debian packages, missing: vlvk-makeup or dpkg-dev")
endif()
