# Warnings of our own builds. Errors only where VLVK_WARNINGS_AS_ERRORS says so, so that a newer compiler does not stop
# somebody who just wants the library.
function(vlvk_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
  if(VLVK_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
