# What Debian's cross compilers have in common. Their libraries lie in a folder of the triple's name, which the emulator
# takes for the root, so that the shared library itself is what runs.
set(CMAKE_C_COMPILER ${VLVK_CROSS_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${VLVK_CROSS_TRIPLE}-g++)
set(CMAKE_FIND_ROOT_PATH /usr/${VLVK_CROSS_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
