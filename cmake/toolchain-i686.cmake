# Linux on 32-bit x86, from Debian's g++-i686-linux-gnu. Where the kernel runs such programs, they run natively,
# through the loader of the cross compiler and with its C library.
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
