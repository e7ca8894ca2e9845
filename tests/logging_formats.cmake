# The compiler in use, COMPILER, checks the formats of calls: each wrong one warns, each right one is
# silent. The calls are compiled in DIRECTORY against the headers in INCLUDE.
set(calls "")
set(expected "")
set(line 3) # of the first call

function(right)
  foreach(call IN LISTS ARGN)
    string(APPEND calls "    log.${call}|\n")
    math(EXPR line "${line} + 1")
  endforeach()
  set(calls "${calls}" PARENT_SCOPE)
  set(line ${line} PARENT_SCOPE)
endfunction()

function(wrong)
  foreach(call IN LISTS ARGN)
    list(APPEND expected ${line})
    right("${call}")
  endforeach()
  set(calls "${calls}" PARENT_SCOPE)
  set(expected "${expected}" PARENT_SCOPE)
  set(line ${line} PARENT_SCOPE)
endfunction()

right(
  [[printLog(1, "plain %% and %s %d %u %zu %c %p\n", text, 1, 2U, sizeof text, 'c', pointer)]]
  [[printLog(1, "%llx %ld %.3f %#o\n", 1ULL, 1L, 0.5, 8U)]]
  [[printLog(1, nullptr)]]
  [[vprintLog(1, "%d %s\n", list)]]
  [[logMethodEntry("m")]]
  [[logMethodEntry("m", nullptr)]]
  [[logMethodEntry("m", "text")]]
  [[logMethodEntry("m", "count=%d", 0)]]
  [[logMethodEntry("m", "%p", pointer)]]
  [[logMethodEntry("m", "%s=%d", text, 0)]]
  [[logMethodEntry("%s", "%d", 1)]] # a name is no format
  [[logMethodEntry("m", "%s %d", list)]]
  [[logMethodExit("%s")]]
  [[logMethodExit("%s", 0)]]
  [[dumpBuffer(1, "%s", nullptr, 0)]])
wrong(
  [[printLog(1, "%s", 1)]]
  [[printLog(1, "%d")]]
  [[printLog(1, "%d", text)]]
  [[printLog(1, "%d\n", 1, 2)]]
  [[printLog(1, "%zu\n", "size")]]
  [[vprintLog(1, "%d %", list)]]
  [[logMethodEntry("m", "count=%s", 0)]]
  [[logMethodEntry("m", "count=%d")]]
  [[logMethodEntry("m", "%d", text)]]
  [[logMethodEntry("m", "none", 0)]]
  [[logMethodEntry("m", "%s %", list)]])

string(REPLACE "|" ";" calls "${calls}")
file(WRITE "${DIRECTORY}/logging_formats.cpp" "#include \"KelRT/Logger.h\"
void call(KelRT::Logger& log, const char* text, void* pointer, std::va_list list) {
${calls}}\n")
execute_process(
  COMMAND ${COMPILER} -std=c++17 -fsyntax-only -Wall -Wextra "-I${INCLUDE}" logging_formats.cpp
  WORKING_DIRECTORY "${DIRECTORY}" RESULT_VARIABLE result ERROR_VARIABLE diagnostics)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the calls do not compile:\n${diagnostics}")
endif()
string(REGEX MATCHALL "formats.cpp:[0-9]+:[0-9]+: warning: " warnings "${diagnostics}")
list(TRANSFORM warnings REPLACE "formats.cpp:([0-9]+):.*" "\\1" OUTPUT_VARIABLE warned)
list(REMOVE_DUPLICATES warned)
if(NOT warned STREQUAL expected)
  message(FATAL_ERROR "warnings on the lines ${warned} instead of ${expected}:\n${diagnostics}")
endif()
