# ARMv7 with NEON, from Debian's g++-arm-linux-gnueabihf; programs run under qemu-arm.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(VLVK_CROSS_TRIPLE arm-linux-gnueabihf)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L ${CMAKE_FIND_ROOT_PATH})
