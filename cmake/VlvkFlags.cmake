# vlvk_set_flags(target): how all C++ of this project is compiled. Set for each target, so that nothing reaches those of a
# project that takes these sources in.
#
# Pixel formulas round every operation by itself, in the library, the oracles and the tests alike: no contraction. Warnings
# are errors only where VLVK_WARNINGS_AS_ERRORS says so, so that a newer compiler does not stop who just wants the library.
function(vlvk_set_flags target)
  set_target_properties(${target} PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -ffp-contract=off -fno-fast-math -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
  if(VLVK_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(VLVK_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${VLVK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${VLVK_SANITIZE})
  endif()
  if(VLVK_BUILD_FUZZERS)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)  # counts branches taken, for the fuzzing engine
  endif()
endfunction()
