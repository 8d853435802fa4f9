# What `cmake --install` installs, in components: library (the shared library, which programs run with), development
# (headers, static library, CMake and pkg-config files), program, java, gstreamer and frei0r, each where it is built. All of
# it can be moved as a whole.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Included as <vlvk/...>, installed as in the sources. Those of Java's entry points only where the library has these.
if(NOT VLVK_JNI_BINDINGS)
  foreach(header IN LISTS VLVK_JNI_C_HEADERS VLVK_JNI_CXX_HEADERS)
    list(APPEND VLVK_HEADERS_LEFT_OUT PATTERN ${header} EXCLUDE)
  endforeach()
endif()
install(DIRECTORY include/vlvk DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development ${VLVK_HEADERS_LEFT_OUT})

install(TARGETS VLVKMakeupEngine EXPORT VLVKMakeupEngine
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(VLVK_INSTALL_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/VLVKMakeupEngine)
set(VLVK_PACKAGE_FILES ${CMAKE_CURRENT_BINARY_DIR}/package)
configure_package_config_file(cmake/VLVKMakeupEngineConfig.cmake.in
  ${VLVK_PACKAGE_FILES}/VLVKMakeupEngineConfig.cmake
  INSTALL_DESTINATION ${VLVK_INSTALL_PACKAGE}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${VLVK_PACKAGE_FILES}/VLVKMakeupEngineConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(EXPORT VLVKMakeupEngine
  FILE VLVKMakeupEngineTargets.cmake
  NAMESPACE VLVKMakeupEngine::
  DESTINATION ${VLVK_INSTALL_PACKAGE}
  COMPONENT development)
install(FILES
  ${VLVK_PACKAGE_FILES}/VLVKMakeupEngineConfig.cmake
  ${VLVK_PACKAGE_FILES}/VLVKMakeupEngineConfigVersion.cmake
  DESTINATION ${VLVK_INSTALL_PACKAGE}
  COMPONENT development)

# The way from the .pc file to the prefix, if it has the libraries below it.
set(VLVK_INSTALL_PC ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH VLVK_PC_TO_PREFIX ${VLVK_INSTALL_PC} ${CMAKE_INSTALL_PREFIX})
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(VLVK_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
  set(VLVK_PC_LIBDIR ${CMAKE_INSTALL_FULL_LIBDIR})
  set(VLVK_PC_INCLUDEDIR ${CMAKE_INSTALL_FULL_INCLUDEDIR})
else()
  set(VLVK_PC_PREFIX "\${pcfiledir}/${VLVK_PC_TO_PREFIX}")
  string(REGEX REPLACE "/$" "" VLVK_PC_PREFIX "${VLVK_PC_PREFIX}")
  set(VLVK_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  set(VLVK_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
# What a static library leaves to be linked: `pkg-config --static`.
set(VLVK_PC_CFLAGS "")
set(VLVK_PC_LIBS_PRIVATE "")
if(NOT BUILD_SHARED_LIBS)
  set(VLVK_PC_CFLAGS " -DVLVK_STATIC")
  list(TRANSFORM VLVK_CXX_RUNTIME PREPEND "-l" OUTPUT_VARIABLE VLVK_PC_LIBS_PRIVATE)
  list(JOIN VLVK_PC_LIBS_PRIVATE " " VLVK_PC_LIBS_PRIVATE)
  set(VLVK_PC_LIBS_PRIVATE "Libs.private: ${VLVK_PC_LIBS_PRIVATE} -pthread\n")
endif()
configure_file(cmake/VLVKMakeupEngine.pc.in ${VLVK_PACKAGE_FILES}/VLVKMakeupEngine.pc @ONLY)
install(FILES ${VLVK_PACKAGE_FILES}/VLVKMakeupEngine.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# The pages keep their folder too, for the links between them.
set(VLVK_INSTALL_DOC ${CMAKE_INSTALL_DATAROOTDIR}/doc/VLVKMakeupEngine)
install(FILES README.md DESTINATION ${VLVK_INSTALL_DOC} COMPONENT development)
install(DIRECTORY docs DESTINATION ${VLVK_INSTALL_DOC} COMPONENT development
  FILES_MATCHING PATTERN *.md PATTERN *.jpg PATTERN *.png PATTERN *.svg)

if(TARGET vlvk-makeup)
  install(TARGETS vlvk-makeup RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
  install(FILES man/vlvk-makeup.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
endif()

if(TARGET vlvk_java)
  get_target_property(VLVK_JAVA_FILE vlvk_java VLVK_JAR)
  install(FILES ${VLVK_JAVA_FILE} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/java COMPONENT java)
endif()

if(TARGET gstvlvkmakeup)
  install(TARGETS gstvlvkmakeup LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/gstreamer-1.0 COMPONENT gstreamer)
endif()

# Hosts search lib/frei0r-1 of /usr and /usr/local, on Debian too, where other libraries lie in a folder for the
# processor. Anywhere else FREI0R_PATH leads to it, and the plugin finds the library by itself.
if(TARGET vlvk_frei0r)
  set(VLVK_FREI0R_FOLDER lib/frei0r-1 CACHE STRING "Where the frei0r plugin is installed")
  get_filename_component(VLVK_FREI0R_INSTALLED ${VLVK_FREI0R_FOLDER} ABSOLUTE BASE_DIR ${CMAKE_INSTALL_PREFIX})
  file(RELATIVE_PATH VLVK_FREI0R_TO_LIBRARY ${VLVK_FREI0R_INSTALLED} ${CMAKE_INSTALL_FULL_LIBDIR})
  if(BUILD_SHARED_LIBS)
    set_target_properties(vlvk_frei0r PROPERTIES INSTALL_RPATH "$ORIGIN/${VLVK_FREI0R_TO_LIBRARY}")
  endif()
  install(TARGETS vlvk_frei0r LIBRARY DESTINATION ${VLVK_FREI0R_FOLDER} COMPONENT frei0r)
endif()
