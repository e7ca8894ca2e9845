# Runs the program of a golden test (KelGolden.cmake) as the file RUN says, and compares the transcript
# with the file GOLDEN. RUN is a CMake script that calls
#
#   run([ARGUMENT...] [ENVIRONMENT NAME=VALUE...] [FILES FILE...] [INPUT FILE] [KEEP REGEX])
#
# Each run begins in an empty directory, which is also the user's home, and without the library's
# environment variables. ENVIRONMENT sets variables. FILES are copied into the directory, INPUT becomes
# standard input; both are relative to the folder of RUN. With KEEP the transcript is only what the
# first group of REGEX matches in standard output. Afterwards `output` and `errors` hold what the
# program wrote. COMMAND is the program with its emulator, WINDOWS and CROSS tell whether it is one for
# Windows and for another host than this. skip(REASON) ends the test as skipped.
#
# The transcript shows standard output and then, each under a heading and unless it is empty, standard
# error, every file that was written, and the exit status unless it is 0. If RUN calls run() more than
# once, each run is preceded by its command line. The build, times and the directory are masked.
cmake_minimum_required(VERSION 3.25)

cmake_path(GET RUN PARENT_PATH FOLDER)

# expose(VARIABLE): replaces control characters by escapes.
function(expose variable)
  string(ASCII 8 backspace)
  set(text "${${variable}}")
  string(REPLACE "\t" "\\t" text "${text}")
  string(REPLACE "\r" "\\r" text "${text}")
  string(REPLACE "\n" "\\n" text "${text}")
  string(REPLACE "${backspace}" "\\b" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# mask(VARIABLE): what differs from one build, time or host to another gets a fixed value.
function(mask variable)
  set(text "${${variable}}")
  string(REPLACE "\r\n" "\n" text "${text}")
  string(REPLACE "${DIRECTORY}" "DIRECTORY" text "${text}")
  if(WINDOWS)
    string(REPLACE "\\" "/" text "${text}")
  endif()
  set(day "[A-Z][a-z][a-z] [ 0-3][0-9]")
  set(year "[0-9][0-9][0-9][0-9]")
  set(time "[0-9][0-9]:[0-5][0-9]:[0-6][0-9]")
  set(zone "[A-Za-z0-9+-]+( [A-Za-z0-9.]+)*")
  string(REGEX REPLACE "[0-9]+[.][0-9.]+ [A-Z][.][0-9][0-9][a-z] - Compiled ${day} ${year} ${time}"
    "1.0 A.01a - Compiled Mar 14 2011 09:05:37" text "${text}")
  string(REGEX REPLACE
    "(Logging [A-Z][a-z]+) - [A-Z][a-z][a-z] ${day} ${year} ${time} [AP]M ${zone}\n"
    "\\1 - Tue Mar 02 2027 09:05:07 AM UTC\n" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# add(VARIABLE TITLE TEXT): appends the text with its heading, if any, unless it is empty.
function(add variable title text)
  if(NOT text STREQUAL "")
    if(NOT title STREQUAL "")
      string(PREPEND text "== ${title}\n")
    endif()
    if(NOT text MATCHES "\n$")
      string(APPEND text "\n")
    endif()
    set(${variable} "${${variable}}${text}" PARENT_SCOPE)
  endif()
endfunction()

# set_variable(SETTING): sets a variable of the environment, also to the empty value.
function(set_variable setting)
  string(REGEX MATCH "^([^=]+)=(.*)$" setting "${setting}")
  set(ENV{${CMAKE_MATCH_1}} "-") # CMake leaves an unset variable unset when it is given no value
  set(ENV{${CMAKE_MATCH_1}} "${CMAKE_MATCH_2}")
endfunction()

# prepare(FILE...): the directory and the environment of a run.
function(prepare)
  file(REMOVE_RECURSE ${DIRECTORY})
  file(MAKE_DIRECTORY ${DIRECTORY})
  foreach(file IN LISTS ARGN)
    file(COPY ${FOLDER}/${file} DESTINATION ${DIRECTORY})
  endforeach()
  set_variable(USERPROFILE=${DIRECTORY})
  foreach(name LOGFILE LOGDETAIL LOGFLAGS DATADIR SORVADATADIR)
    unset(ENV{TOR_KEL_${name}})
  endforeach()
endfunction()

function(run)
  cmake_parse_arguments(PARSE_ARGV 0 ARG "" "INPUT;KEEP" "ENVIRONMENT;FILES")
  prepare(${ARG_FILES})
  foreach(setting IN LISTS ARG_ENVIRONMENT)
    set_variable("${setting}")
  endforeach()
  set(input)
  if(ARG_INPUT)
    set(input INPUT_FILE ${FOLDER}/${ARG_INPUT})
  endif()
  file(GLOB_RECURSE given RELATIVE ${DIRECTORY} ${DIRECTORY}/*)
  execute_process(COMMAND ${COMMAND} ${ARG_UNPARSED_ARGUMENTS} WORKING_DIRECTORY ${DIRECTORY} ${input}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE status)
  file(GLOB_RECURSE written RELATIVE ${DIRECTORY} ${DIRECTORY}/*)
  list(REMOVE_ITEM written ${given})

  set(record "")
  if(ARG_KEEP)
    string(REGEX REPLACE "^.*${ARG_KEEP}.*$" "\\1" kept "${output}")
    add(record "" "${kept}")
  else()
    add(record "" "${output}")
    add(record "standard error" "${errors}")
    foreach(file IN LISTS written)
      file(READ ${DIRECTORY}/${file} text)
      add(record "file ${file}" "${text}")
    endforeach()
    if(NOT status STREQUAL 0)
      add(record "exit status" "${status}")
    endif()
  endif()
  mask(record)

  string(REPLACE ";" " " command_line "$;${ARG_ENVIRONMENT};${NAME};${ARG_UNPARSED_ARGUMENTS}")
  if(ARG_INPUT)
    string(APPEND command_line " < ${ARG_INPUT}")
  endif()
  expose(command_line)
  string(REGEX REPLACE "  +" " " command_line "${command_line}")
  string(STRIP "${command_line}" command_line)
  set_property(GLOBAL APPEND_STRING PROPERTY runs "I")
  set_property(GLOBAL PROPERTY record "${record}")
  set_property(GLOBAL APPEND_STRING PROPERTY transcript "${command_line}\n${record}")
  set(output "${output}" PARENT_SCOPE)
  set(errors "${errors}" PARENT_SCOPE)
endfunction()

macro(skip reason)
  message("skipped: ${reason}")
  set(skipped YES)
  return()
endmacro()

include(${RUN})
if(skipped)
  return()
endif()

get_property(runs GLOBAL PROPERTY runs)
get_property(transcript GLOBAL PROPERTY transcript)
if(runs STREQUAL "I")
  get_property(transcript GLOBAL PROPERTY record)
elseif(runs STREQUAL "")
  message(FATAL_ERROR "${RUN} runs nothing")
endif()
if(DEFINED ENV{KELUTIL_UPDATE_GOLDEN})
  file(WRITE ${GOLDEN} "${transcript}")
  return()
endif()

set(expected "")
if(EXISTS ${GOLDEN})
  file(READ ${GOLDEN} expected)
  string(REPLACE "\r\n" "\n" expected "${expected}")
endif()
if(NOT transcript STREQUAL expected)
  set(actual ${DIRECTORY}.txt)
  file(WRITE ${actual} "${transcript}")
  set(difference "${transcript}")
  find_program(DIFF diff)
  if(DIFF)
    execute_process(COMMAND ${DIFF} -u ${GOLDEN} ${actual} OUTPUT_VARIABLE difference)
  endif()
  message("${difference}")
  message(FATAL_ERROR "The transcript ${actual} differs from ${GOLDEN}.\n"
    "If this is intended, run the test with KELUTIL_UPDATE_GOLDEN=1 in the environment.")
endif()
