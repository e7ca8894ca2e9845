# Windows x64 with UCRT, the C library of today's Windows, from g++-mingw-w64-ucrt64 of Debian 13.
include(${CMAKE_CURRENT_LIST_DIR}/toolchain-windows.cmake)
set(CMAKE_C_COMPILER x86_64-w64-mingw32ucrt-gcc)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32ucrt-g++)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32ucrt-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32ucrt)
