# Checks a built library: that it exports what a list says, that Android's bitmap functions are weak references, that
# 64-bit devices with pages of 16 KiB can load it, and that a C++ runtime said to be linked in is.
#
#   cmake -DNM=nm -DREADELF=readelf -DLIBRARY=libVLVKMakeupEngine.so -DLIST=exported_symbols.txt -DPOINTER_BYTES=8
#     -DSTATIC_RUNTIME=0 -DANDROID_JNI=0 -P check_library_file.cmake

execute_process(COMMAND ${NM} -D ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[0-9a-f]+ [A-Z] [^\n@]+" defined "${symbols}")
list(TRANSFORM defined REPLACE "^[0-9a-f]+ [A-Z] " "")
list(REMOVE_DUPLICATES defined)

file(STRINGS ${LIST} expected)
if(POINTER_BYTES EQUAL 4)
  # size_t is unsigned int (j), not unsigned long (m), in operator new and delete.
  list(TRANSFORM expected REPLACE "(nwE|dlEPv)m$" "\\1j")
endif()
if(ANDROID_JNI)
  # The same class has another name in Android's jni.h.
  list(TRANSFORM expected REPLACE "7JNIEnv_" "7_JNIEnv")
endif()
set(missing ${expected})
set(unexpected ${defined})
if(defined)
  list(REMOVE_ITEM missing ${defined})
endif()
list(REMOVE_ITEM unexpected ${expected})
if(missing OR unexpected)
  message(FATAL_ERROR "not exported: ${missing}\nexported beyond the list: ${unexpected}")
endif()

foreach(function getInfo lockPixels unlockPixels)
  if(NOT symbols MATCHES " w AndroidBitmap_${function}")
    message(FATAL_ERROR "AndroidBitmap_${function} is not a weak reference")
  endif()
endforeach()

if(STATIC_RUNTIME AND symbols MATCHES "CXXABI|GCC_[0-9]")
  message(FATAL_ERROR "the C++ runtime is not linked in")
endif()

if(POINTER_BYTES EQUAL 8)
  execute_process(COMMAND ${READELF} -lW ${LIBRARY} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "LOAD +0x[^\n]+" segments "${headers}")
  if(NOT segments)
    message(FATAL_ERROR "no segments in:\n${headers}")
  endif()
  foreach(segment IN LISTS segments)
    string(REGEX MATCH "0x[0-9a-f]+$" alignment "${segment}")
    math(EXPR rest "${alignment} % 0x4000")
    if(alignment STREQUAL "" OR rest)
      message(FATAL_ERROR "a segment is not aligned to 16 KiB: ${segment}")
    endif()
  endforeach()
endif()
