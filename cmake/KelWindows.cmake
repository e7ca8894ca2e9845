# A DLL and what belongs to it.

# Windows looks for DLLs in the directory of the program, so all of a build lies in one.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endif()

# Strings and exceptions cross the boundary of the DLL, so it and its clients share one C++ runtime.
# MinGW's are DLLs of the compiler, which are laid beside ours; MSVC's are installed with Windows.
set(KELUTIL_RUNTIME_DLLS)
if(MINGW)
  foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
      OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT IS_ABSOLUTE "${path}")
      message(FATAL_ERROR "${CMAKE_CXX_COMPILER} does not know its ${dll}")
    endif()
    list(APPEND KELUTIL_RUNTIME_DLLS ${path})
  endforeach()
endif()

# kel_dress_dll(TARGET): lays the runtime DLLs to where TARGET is built. With MSVC, whose debug runtime
# is another one, its debug build has a name of its own, and a PDB file describes each build.
function(kel_dress_dll target)
  if(KELUTIL_RUNTIME_DLLS)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E copy_if_different ${KELUTIL_RUNTIME_DLLS} $<TARGET_FILE_DIR:${target}>
      VERBATIM)
  endif()
  if(MSVC)
    set_target_properties(${target} PROPERTIES DEBUG_POSTFIX d)
    target_compile_options(kelutil_objects PRIVATE /Z7)
    target_link_options(${target} PRIVATE /DEBUG /OPT:REF /OPT:ICF)
  endif()
endfunction()
