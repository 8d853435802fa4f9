# Clang for an ABI of Android, with what Debian has in place of an NDK: the jni.h and android/bitmap.h of Android 10,
# libc++ 14, and the headers of glibc where Android has a C library of its own. Compiles and links what an NDK would, but
# there is no C library and no C++ runtime of Android to link with, so that the result loads nowhere.
#
#   cmake -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/android_headers.cmake -DANDROID_ABI=arm64-v8a ...
set(CMAKE_SYSTEM_NAME Android)
set(CMAKE_SYSTEM_VERSION 1)  # or CMake looks for an NDK
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ANDROID_ABI)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

if(ANDROID_ABI STREQUAL "arm64-v8a")
  set(CMAKE_SYSTEM_PROCESSOR aarch64)
  set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-android21)
  set(VLVK_C_HEADERS /usr/aarch64-linux-gnu/include)
elseif(ANDROID_ABI STREQUAL "armeabi-v7a")
  set(CMAKE_SYSTEM_PROCESSOR armv7-a)
  set(CMAKE_CXX_COMPILER_TARGET armv7a-linux-androideabi21)
  set(VLVK_C_HEADERS /usr/arm-linux-gnueabihf/include)
elseif(ANDROID_ABI STREQUAL "x86_64")
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
  set(CMAKE_CXX_COMPILER_TARGET x86_64-linux-android21)
  set(VLVK_C_HEADERS /usr/include/x86_64-linux-gnu /usr/include)
else()
  message(FATAL_ERROR "ANDROID_ABI is '${ANDROID_ABI}', but must be arm64-v8a, armeabi-v7a or x86_64")
endif()
# glibc's list of missing functions differs with the calling convention, and Debian has none for ARM's soft one.
set(VLVK_STAND_INS ${CMAKE_BINARY_DIR}/stand_ins)
file(WRITE ${VLVK_STAND_INS}/gnu/stubs.h "")
file(WRITE ${VLVK_STAND_INS}/libjnigraphics.so "")  # an empty linker script

set(VLVK_HEADERS /usr/lib/llvm-14/include/c++/v1 ${VLVK_STAND_INS} /usr/include/android
  /usr/include/android/nativehelper ${VLVK_C_HEADERS})
foreach(header IN ITEMS cstddef pthread.h jni.h android/bitmap.h)
  find_file(VLVK_FOUND ${header} PATHS ${VLVK_HEADERS} NO_CACHE NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  if(NOT VLVK_FOUND)
    message(FATAL_ERROR "missing for ${ANDROID_ABI}: ${header}; 'bash scripts/setup.sh android' installs it")
  endif()
  unset(VLVK_FOUND)
endforeach()
list(TRANSFORM VLVK_HEADERS PREPEND "-isystem")
set(CMAKE_CXX_COMPILER clang++ -nostdinc++ -nostdlibinc ${VLVK_HEADERS})  # flags that no setting of a build replaces
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-nostdlib -fuse-ld=lld -L${VLVK_STAND_INS} -Wno-unused-command-line-argument")
set(CMAKE_CXX_STANDARD_LIBRARIES "")
if(ANDROID_ABI STREQUAL "x86_64")
  # Asking for the processor's features takes data of the compiler's own library, which must be linked in.
  execute_process(COMMAND clang++ --target=x86_64-linux-gnu --rtlib=compiler-rt --print-libgcc-file-name
    OUTPUT_VARIABLE CMAKE_CXX_STANDARD_LIBRARIES OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
