# Refuses a compiler that is too old for C++20 and its library. The versions of GCC and Clang are the oldest that are
# tested; MSVC itself is not tested.
set(KELUTIL_OLDEST_GNU 11)
set(KELUTIL_OLDEST_Clang 14)
set(KELUTIL_OLDEST_MSVC 19.29)
set(oldest "${KELUTIL_OLDEST_${CMAKE_CXX_COMPILER_ID}}")
if(oldest AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS oldest)
  message(FATAL_ERROR "${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION} is too old for C++20; "
    "version ${oldest} or newer is needed. (It is ${CMAKE_CXX_COMPILER}.)")
endif()

# Strings cross the boundary of the DLL, so the DLL and its clients must share one heap.
if(MSVC AND (CMAKE_CXX_FLAGS MATCHES "[-/]MTd?( |$)"
    OR (CMAKE_MSVC_RUNTIME_LIBRARY AND NOT CMAKE_MSVC_RUNTIME_LIBRARY MATCHES "DLL$")))
  message(FATAL_ERROR "The static runtime (/MT) is refused: the DLL and its clients need one heap.")
endif()
