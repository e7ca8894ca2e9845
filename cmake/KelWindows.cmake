# Rules for DLLs.

# Windows looks for DLLs in the directory of the program, so all programs of a build are put into one.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endif()

# Strings and exceptions cross the boundary of the DLL, so it and its clients share one C++ runtime.
# MinGW's are DLLs of the compiler, which are copied beside ours; MSVC's come with its redistributable.
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

# kel_finish_dll(TARGET): copies the runtime DLLs to the directory of TARGET. With MSVC the debug build
# has a name of its own, since it needs another runtime, and each build has a PDB file.
function(kel_finish_dll target)
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
