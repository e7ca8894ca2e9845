# Checks that COMPILER warns about the calls marked "warns: " in logging_formats.txt, and about no others. Compiles
# them in DIRECTORY against the headers in INCLUDE.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/logging_formats.txt calls REGEX "^[a-z]+: ")
set(source "#include \"KelRT/Logger.h\"\nvoid call(KelRT::Logger& log, const char* text, void* pointer, std::va_list list) {\n")
set(line 2)
foreach(call IN LISTS calls)
  math(EXPR line "${line} + 1")
  if(call MATCHES "^warns: ")
    list(APPEND expected ${line})
  endif()
  string(REGEX REPLACE "^[a-z]+: ([^/]*).*" "    log.\\1;\n" call "${call}")
  string(APPEND source "${call}")
endforeach()
file(WRITE "${DIRECTORY}/logging_formats.cpp" "${source}}\n")
execute_process(
  COMMAND ${COMPILER} -std=c++17 -fsyntax-only -Wall -Wextra "-I${INCLUDE}" logging_formats.cpp
  WORKING_DIRECTORY "${DIRECTORY}" RESULT_VARIABLE result ERROR_VARIABLE diagnostics)
string(REGEX MATCHALL "formats.cpp:[0-9]+:[0-9]+: warning: " warned "${diagnostics}")
list(TRANSFORM warned REPLACE "formats.cpp:([0-9]+):.*" "\\1")
list(REMOVE_DUPLICATES warned)
if(NOT result EQUAL 0 OR NOT warned STREQUAL expected)
  message(FATAL_ERROR "warnings on the lines ${warned} instead of ${expected}:\n${diagnostics}")
endif()
