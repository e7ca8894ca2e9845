# Runs PROGRAM in the empty directory DIRECTORY and compares its output with the file EXPECTED. The
# build and the times are not the same twice and are masked; separators of paths are those of Linux.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${DIRECTORY})
file(WRITE ${DIRECTORY}/data/fields.csv "")
set(ENV{USERPROFILE} ${DIRECTORY})
set(ENV{TOR_KEL_LOGFILE} stdout)
set(ENV{TOR_KEL_LOGDETAIL} 4)
unset(ENV{TOR_KEL_LOGFLAGS})
unset(ENV{TOR_KEL_DATADIR})
execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${DIRECTORY}
  OUTPUT_VARIABLE actual COMMAND_ERROR_IS_FATAL ANY)
file(READ ${EXPECTED} expected)
foreach(text actual expected)
  string(REPLACE "\r" "" ${text} "${${text}}")
  string(REPLACE "\\" "/" ${text} "${${text}}")
  string(REGEX REPLACE "[0-9]+[.][0-9.]+ [A-Z][.][0-9][0-9][a-z]( - Compiled [A-Z][a-z][a-z] [ 1-3][0-9] [0-9:]+ [0-9:]+)"
    "BUILD" ${text} "${${text}}")
  string(REGEX REPLACE "(Started|Ended) - [A-Z][^\n]+" "\\1 - TIME" ${text} "${${text}}")
endforeach()
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "the output is\n${actual}\ninstead of\n${expected}")
endif()
