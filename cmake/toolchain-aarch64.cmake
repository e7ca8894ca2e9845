# Builds for Linux on 64-bit Arm with Debian's g++-aarch64-linux-gnu.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(TRIPLET aarch64-linux-gnu)
set(QEMU qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/KelDebianCross.cmake)
