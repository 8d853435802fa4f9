# Runs a JUnit test class with checks of the native interface, and fails on any remark of theirs but one: the library
# asks for no exceptions, so every call after one that could have thrown is remarked upon.
get_filename_component(folder ${LIBRARY} DIRECTORY)
# Freed memory goes back to the system at once, so that resident memory tells what is held.
set(ENV{MALLOC_MMAP_THRESHOLD_} 65536)
set(ENV{MALLOC_TRIM_THRESHOLD_} 65536)
if(LOADED_FIRST)
  set(ENV{LD_PRELOAD} ${LOADED_FIRST})
endif()
execute_process(
  COMMAND ${JAVA} -Xcheck:jni -Xms128m -Xmx128m -XX:+AlwaysPreTouch -XX:+UseSerialGC -Djava.library.path=${folder}
    -cp ${CLASS_PATH} org.junit.runner.JUnitCore ${CLASS}
  RESULT_VARIABLE result
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)

# The remark that is allowed, and the stack trace that follows it.
set(allowed "WARNING in native method: JNI call made without checking exceptions when required to (call )?from Call[A-Za-z]+Method[VA]?")
string(REGEX REPLACE "${allowed}\n(\tat [^\n]*\n)*" "" rest "${output}")
string(REGEX MATCHALL "${allowed}" remarks "${output}")
list(LENGTH remarks count)
message("${rest}Allowed remarks: ${count}")

if(NOT result EQUAL 0 OR NOT rest MATCHES "\nOK \\([1-9][0-9]* test")
  message(FATAL_ERROR "The tests failed: ${result}")
endif()
if(rest MATCHES "WARNING|Warning|warning|FATAL|JNI")
  message(FATAL_ERROR "The virtual machine remarks upon the library")
endif()
