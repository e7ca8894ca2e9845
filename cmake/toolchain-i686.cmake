# Builds for Linux on 32-bit x86 with Debian's g++-i686-linux-gnu. If the kernel can run such programs, they run
# natively, started by the cross compiler's loader, which finds its C library.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(TRIPLET i686-linux-gnu)
set(QEMU qemu-i386)
include(${CMAKE_CURRENT_LIST_DIR}/KelDebianCross.cmake)
set(loader /usr/${TRIPLET}/lib/ld-linux.so.2)
execute_process(COMMAND ${loader} --version RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
set(run ${loader} --library-path /usr/${TRIPLET}/lib)
if(result EQUAL 0)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${run})
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR ${QEMU} ${run})
endif()
