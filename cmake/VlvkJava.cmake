# The Java classes: vlvk_java makes VLVKMakeupEngine.jar, vlvk_java_example the examples, vlvk_javadoc the pages.

set(VLVK_JAVA_RELEASE 8 CACHE STRING "Java version that the classes are made for")
set(VLVK_JAVA_MISSING "")
if(NOT VLVK_JNI_BINDINGS)
  list(APPEND VLVK_JAVA_MISSING VLVK_JNI_BINDINGS=ON)
endif()
if(NOT BUILD_SHARED_LIBS)
  list(APPEND VLVK_JAVA_MISSING BUILD_SHARED_LIBS=ON)
endif()
find_package(Java QUIET COMPONENTS Development)
if(NOT Java_FOUND)
  list(APPEND VLVK_JAVA_MISSING "JDK")
endif()
if(VLVK_JAVA_MISSING)
  vlvk_report_missing(VLVK_BUILD_JAVA "the Java classes" ${VLVK_JAVA_MISSING})
  return()
endif()
include(UseJava)  # for find_jar

set(VLVK_JAVAC_FLAGS -encoding UTF-8 -g --release ${VLVK_JAVA_RELEASE} -Xlint:all,-options)
if(VLVK_WARNINGS_AS_ERRORS)
  list(APPEND VLVK_JAVAC_FLAGS -Werror)
endif()

# vlvk_add_jar(target NAME file.jar SOURCES ... [LIBRARIES target or file ...] [FLAGS ...] [KEEP_RULES file])
function(vlvk_add_jar target)
  cmake_parse_arguments(JAR "" "NAME;KEEP_RULES" "SOURCES;LIBRARIES;FLAGS" ${ARGN})
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}.dir)
  set(jar ${CMAKE_CURRENT_BINARY_DIR}/${JAR_NAME})
  list(TRANSFORM JAR_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)

  set(class_path ${folder})
  set(needed "")
  foreach(library IN LISTS JAR_LIBRARIES)
    if(TARGET ${library})
      list(APPEND needed ${library})
      get_target_property(library ${library} VLVK_JAR)
    endif()
    list(APPEND class_path ${library})
    list(APPEND needed ${library})
  endforeach()
  list(JOIN class_path ":" class_path)

  set(copy_rules "")
  if(JAR_KEEP_RULES)
    set(copy_rules COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}/META-INF/proguard
      COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${JAR_KEEP_RULES}
        ${folder}/META-INF/proguard/VLVKMakeupEngine.pro)
    list(APPEND needed ${CMAKE_CURRENT_SOURCE_DIR}/${JAR_KEEP_RULES})
  endif()
  add_custom_command(OUTPUT ${jar}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${folder}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND ${Java_JAVAC_EXECUTABLE} ${VLVK_JAVAC_FLAGS} ${JAR_FLAGS} -cp ${class_path} -d ${folder} ${JAR_SOURCES}
    ${copy_rules}
    COMMAND ${Java_JAR_EXECUTABLE} cf ${jar} -C ${folder} .
    DEPENDS ${JAR_SOURCES} ${needed}
    COMMENT "Building ${JAR_NAME}"
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${jar})
  set_target_properties(${target} PROPERTIES VLVK_JAR ${jar})
endfunction()

set(VLVK_JAVA_SOURCES
  java/src/com/velmira/VKMakeup/ArrayPath.java
  java/src/com/velmira/VKMakeup/BitmapClass.java
  java/src/com/velmira/VKMakeup/Colorimetry.java
  java/src/com/velmira/VKMakeup/Contrast.java
  java/src/com/velmira/VKMakeup/Engine.java
  java/src/com/velmira/VKMakeup/EngineState.java
  java/src/com/velmira/VKMakeup/Frame.java
  java/src/com/velmira/VKMakeup/LeakGuard.java
  java/src/com/velmira/VKMakeup/MakeupEngine.java
  java/src/com/velmira/VKMakeup/MakeupException.java
  java/src/com/velmira/VKMakeup/Mask.java
  java/src/com/velmira/VKMakeup/NativeEngine.java
  java/src/com/velmira/VKMakeup/NativeMakeup.java
  java/src/com/velmira/VKMakeup/Nv21.java
  java/src/com/velmira/VKMakeup/Nv21Rows.java
  java/src/com/velmira/VKMakeup/PixelFormat.java
  java/src/com/velmira/VKMakeup/Planes.java
  java/src/com/velmira/VKMakeup/ResourceLoader.java
  java/src/com/velmira/VKMakeup/ResourceReader.java
  java/src/com/velmira/VKMakeup/WhitenArea.java
  java/src/com/velmira/VKMakeup/package-info.java
)
vlvk_add_jar(vlvk_java
  NAME VLVKMakeupEngine.jar
  SOURCES ${VLVK_JAVA_SOURCES}
  FLAGS -Xdoclint:all/protected
  KEEP_RULES java/keep-rules.pro)
vlvk_add_jar(vlvk_java_example
  NAME examples.jar
  SOURCES
    java/example/BeautifyFrame.java
    java/example/BeautifyPicture.java
  LIBRARIES vlvk_java)

if(Java_JAVADOC_EXECUTABLE)
  list(TRANSFORM VLVK_JAVA_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE VLVK_JAVADOC_SOURCES)
  set(VLVK_JAVADOC_FLAGS -quiet -encoding UTF-8 --release ${VLVK_JAVA_RELEASE} -Xdoclint:all)
  if(VLVK_WARNINGS_AS_ERRORS)
    list(APPEND VLVK_JAVADOC_FLAGS -Werror)
  endif()
  add_custom_target(vlvk_javadoc
    COMMAND ${Java_JAVADOC_EXECUTABLE} ${VLVK_JAVADOC_FLAGS}
      -d ${CMAKE_CURRENT_BINARY_DIR}/javadoc ${VLVK_JAVADOC_SOURCES}
    VERBATIM)
endif()

# The tests run in a virtual machine that checks how the library uses it; a remark of its is a failure.
if(NOT VLVK_BUILD_TESTS OR CMAKE_CROSSCOMPILING)
  return()
endif()
if(VLVK_SANITIZE)
  message(STATUS "Not built: the Java tests, a virtual machine does not run a library with sanitizers")
  return()
endif()
find_jar(VLVK_JUNIT_JAR junit4)
find_jar(VLVK_HAMCREST_JAR hamcrest hamcrest-core)
find_package(Java QUIET COMPONENTS Runtime)
if(NOT VLVK_JUNIT_JAR OR NOT VLVK_HAMCREST_JAR OR NOT Java_JAVA_EXECUTABLE)
  if(VLVK_BUILD_JAVA STREQUAL "ON")
    vlvk_report_missing(VLVK_BUILD_TESTS "the Java tests" "JUnit 4 or a Java runtime")
  else()
    message(STATUS "Not built: the Java tests, missing: JUnit 4 or a Java runtime")
  endif()
  return()
endif()

vlvk_add_jar(vlvk_java_tests
  NAME vlvk_java_tests.jar
  SOURCES
    java/test/com/velmira/VKMakeup/Arena.java
    java/test/com/velmira/VKMakeup/Fixtures.java
    java/test/com/velmira/VKMakeup/FrameTest.java
    java/test/com/velmira/VKMakeup/MakeupEngineTest.java
    java/test/com/velmira/VKMakeup/NativeMemoryTest.java
    java/test/com/velmira/VKMakeup/Nv21Test.java
  LIBRARIES vlvk_java ${VLVK_JUNIT_JAR} ${VLVK_HAMCREST_JAR})
add_dependencies(vlvk_java_tests VLVKMakeupEngine)

# Bitmaps: a class and functions that stand in for Android's, whose functions the library finds where they were loaded
# before it.
vlvk_add_jar(vlvk_java_bitmap_tests
  NAME vlvk_java_bitmap_tests.jar
  SOURCES
    java/test/android/graphics/Bitmap.java
    java/test/com/velmira/VKMakeup/BitmapTest.java
  LIBRARIES vlvk_java vlvk_java_tests ${VLVK_JUNIT_JAR} ${VLVK_HAMCREST_JAR})
add_library(vlvk_java_android_bitmap SHARED java/test/android_bitmap.cpp)
target_include_directories(vlvk_java_android_bitmap PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_include_directories(vlvk_java_android_bitmap SYSTEM PRIVATE
  $<TARGET_PROPERTY:vlvk_objects,INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
vlvk_set_flags(vlvk_java_android_bitmap)

# vlvk_add_java_test(class [library that is loaded first])
get_target_property(VLVK_JAVA_JAR vlvk_java VLVK_JAR)
get_target_property(VLVK_JAVA_TESTS_JAR vlvk_java_tests VLVK_JAR)
get_target_property(VLVK_JAVA_BITMAP_TESTS_JAR vlvk_java_bitmap_tests VLVK_JAR)
function(vlvk_add_java_test class)
  set(class_path ${VLVK_JAVA_JAR} ${VLVK_JAVA_TESTS_JAR} ${VLVK_JUNIT_JAR} ${VLVK_HAMCREST_JAR})
  if(ARGN)
    list(APPEND class_path ${VLVK_JAVA_BITMAP_TESTS_JAR})
  endif()
  list(JOIN class_path ":" class_path)
  add_test(NAME java.${class} COMMAND ${CMAKE_COMMAND}
    -DJAVA=${Java_JAVA_EXECUTABLE}
    -DCLASS_PATH=${class_path}
    -DLIBRARY=$<TARGET_FILE:VLVKMakeupEngine>
    -DLOADED_FIRST=${ARGN}
    -DCLASS=com.velmira.VKMakeup.${class}
    -P ${CMAKE_CURRENT_SOURCE_DIR}/java/test/run_checked.cmake)
  set_tests_properties(java.${class} PROPERTIES TIMEOUT 120)
endfunction()
foreach(class FrameTest MakeupEngineTest NativeMemoryTest Nv21Test)
  vlvk_add_java_test(${class})
endforeach()
vlvk_add_java_test(BitmapTest $<TARGET_FILE:vlvk_java_android_bitmap>)
