# Builds for Linux on 32-bit Arm (hard-float ABI) with Debian's g++-arm-linux-gnueabihf.
set(CMAKE_SYSTEM_PROCESSOR armv7)
set(TRIPLET arm-linux-gnueabihf)
set(QEMU qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/KelDebianCross.cmake)
