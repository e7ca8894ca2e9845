# Puts the DLLs where programs find them.

# Windows looks for DLLs in the directory of the program, so all programs of a build go into one directory.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endif()

# Strings and exceptions cross the boundary of the DLL, so the DLL and its clients share one C++ runtime.
# The runtime of MinGW is in DLLs of the compiler; they are copied beside the DLL of the library. The runtime of MSVC is
# installed separately.
set(KELUTIL_RUNTIME_DLLS)
if(MINGW)
  cmake_path(GET CMAKE_CXX_COMPILER PARENT_PATH tools)
  foreach(folder IN LISTS CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES tools)
    foreach(dll IN ITEMS libstdc++-6 libgcc_s_*-1 libwinpthread-1 libc++ libunwind)
      file(GLOB found ${folder}/${dll}.dll ${folder}/../bin/${dll}.dll)
      list(APPEND KELUTIL_RUNTIME_DLLS ${found})
    endforeach()
  endforeach()
  add_link_options($<$<CXX_COMPILER_ID:Clang>:-pthread>) # GCC links its thread library without an option
  if(NOT KELUTIL_RUNTIME_DLLS)
    message(WARNING "The DLLs of the C++ runtime are not beside ${CMAKE_CXX_COMPILER}: programs look for them in PATH.")
  endif()
endif()

# kel_finish_dll(TARGET): copies the runtime DLLs to the directory of TARGET. With MSVC, gives the debug build
# another name, since it needs another runtime, and makes a PDB file.
function(kel_finish_dll target)
  if(KELUTIL_RUNTIME_DLLS)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E copy_if_different ${KELUTIL_RUNTIME_DLLS} $<TARGET_FILE_DIR:${target}>
      VERBATIM)
  endif()
  if(MSVC)
    set_target_properties(${target} PROPERTIES DEBUG_POSTFIX d)
    target_link_options(${target} PRIVATE /DEBUG /OPT:REF /OPT:ICF)
  endif()
endfunction()
