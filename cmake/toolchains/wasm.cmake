# WebAssembly, from Debian's clang-19, lld-19, wasi-libc and libc++-19-dev-wasm32; programs run in node. VLVK_WASM_SIMD
# says whether modules may use vectors: a module cannot choose at run time.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(VLVK_WASM ON)
option(VLVK_WASM_SIMD "Compile for WebAssembly with 128-bit vectors" ON)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VLVK_WASM_SIMD)

set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_C_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_EXECUTABLE_SUFFIX .wasm)

# Without -nostdlibinc the host's own headers are found where these have none. Exceptions cannot be thrown in a module:
# what would throw ends it.
set(VLVK_WASM_INCLUDES
  "-nostdlibinc -isystem ${CMAKE_CURRENT_LIST_DIR}/../../web/module/system -isystem /usr/include/wasm32-wasi")
set(VLVK_WASM_FLAGS "")
if(VLVK_WASM_SIMD)
  set(VLVK_WASM_FLAGS -msimd128)
endif()
set(CMAKE_C_FLAGS_INIT "${VLVK_WASM_FLAGS} ${VLVK_WASM_INCLUDES}")
set(CMAKE_CXX_FLAGS_INIT
  "${VLVK_WASM_FLAGS} -fignore-exceptions -nostdlibinc -isystem /usr/include/wasm32-wasi/c++/v1 ${VLVK_WASM_INCLUDES}")

set(CMAKE_FIND_ROOT_PATH /usr/wasm32-wasi)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_THREAD_LIBS_INIT "")
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)
set(CMAKE_CROSSCOMPILING_EMULATOR
  node --no-warnings ${CMAKE_CURRENT_LIST_DIR}/../../tests/web/run_wasi.mjs)
