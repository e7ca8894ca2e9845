# What the toolchain files of Debian's cross compilers for Linux share. Before it is included, TRIPLET names
# the compiler and QEMU the program of qemu-user that runs what it builds, with the compiler's C library.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR ${QEMU} -L /usr/${TRIPLET})
set(CMAKE_FIND_ROOT_PATH /usr/${TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
