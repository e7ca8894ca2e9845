# What the DLL needs beside it. Strings and exceptions cross its boundary, so it and its clients share
# one C++ runtime: the compiler's, as DLLs.

# Windows looks for DLLs in the directory of the program, so all of a build lies in one.
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_RUNTIME_OUTPUT_DIRECTORY)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endif()

set(KELUTIL_RUNTIME_DLLS)
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(NOT IS_ABSOLUTE "${path}")
    message(FATAL_ERROR "${CMAKE_CXX_COMPILER} does not know its ${dll}")
  endif()
  list(APPEND KELUTIL_RUNTIME_DLLS ${path})
endforeach()

# kel_lay_runtime_beside(TARGET): copies the runtime DLLs to where TARGET is built.
function(kel_lay_runtime_beside target)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${KELUTIL_RUNTIME_DLLS} $<TARGET_FILE_DIR:${target}>
    VERBATIM)
endfunction()
