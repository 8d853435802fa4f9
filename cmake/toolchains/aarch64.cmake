# AArch64, from Debian's g++-aarch64-linux-gnu; programs run under qemu-aarch64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(VLVK_CROSS_TRIPLE aarch64-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${CMAKE_FIND_ROOT_PATH})
