# Compares what the library exports with a list, and looks for weak references to Android's bitmap functions.
#
#   cmake -DNM=nm -DLIBRARY=libVLVKMakeupEngine.so -DLIST=exported_symbols.txt -P check_symbols.cmake

execute_process(COMMAND ${NM} -D ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[0-9a-f]+ [A-Z] [^\n@]+" defined "${symbols}")
list(TRANSFORM defined REPLACE "^[0-9a-f]+ [A-Z] " "")
list(REMOVE_DUPLICATES defined)

file(STRINGS ${LIST} expected)
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
