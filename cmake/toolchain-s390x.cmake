# Builds for Linux on s390x, which is big-endian, with Debian's g++-s390x-linux-gnu.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(TRIPLET s390x-linux-gnu)
set(QEMU qemu-s390x)
include(${CMAKE_CURRENT_LIST_DIR}/KelDebianCross.cmake)
