# Builds for Windows with Debian's g++-mingw-w64-x86-64-posix (the variant with std::thread), or with another MinGW-w64
# compiler, which KELUTIL_MINGW names. Programs of the build run under Wine.
set(KELUTIL_MINGW x86_64-w64-mingw32 CACHE STRING "The first part of the names of MinGW-w64's compiler and tools")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KELUTIL_MINGW)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR ${KELUTIL_MINGW})
if(NOT KELUTIL_MINGW MATCHES "ucrt$") # the compiler for UCRT has no variants
  set(variant -posix)
endif()
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${KELUTIL_MINGW}-gcc${variant})
set(CMAKE_CXX_COMPILER ${KELUTIL_MINGW}-g++${variant})
set(CMAKE_RC_COMPILER ${KELUTIL_MINGW}-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
set(CMAKE_FIND_ROOT_PATH /usr/${KELUTIL_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(KELUTIL_RUNTIME_LICENCES
  /usr/share/doc/gcc-mingw-w64-base/copyright /usr/share/doc/mingw-w64-common/copyright)
