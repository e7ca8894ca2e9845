# Runs the program of a golden test (KelGolden.cmake) as the file RUN says, and compares the transcript
# with the file GOLDEN. RUN is a CMake script that calls
#
#   run([ARGUMENT...] [ENVIRONMENT NAME=VALUE...] [FILES FILE...] [INPUT FILE] [KEEP REGEX])
#
# Each run begins in an empty directory, which is also the user's home, and without the library's
# environment variables. ENVIRONMENT sets variables. FILES are copied into the directory, INPUT becomes
# standard input; both are relative to the folder of RUN. With KEEP, the transcript has only
# the part of standard output that the first group of REGEX matches. After run(), `output` and `errors`
# hold what the program wrote.
#
# RUN can call skip(REASON), which ends the test as skipped. It can read these variables: COMMAND is the
# command line of the program, which begins with an emulator if there is one. WINDOWS is true if the
# program is for Windows, CROSS if it is cross-compiled.
#
# The transcript shows standard output. Standard error and each written file follow under a heading,
# unless they are empty. The exit status follows, too, unless it is 0. If RUN calls run() more than
# once, each run is preceded by its command line. Versions, times and the directory get fixed values.
cmake_minimum_required(VERSION 3.22)

cmake_path(GET RUN PARENT_PATH FOLDER)
string(ASCII 8 backspace)

# mask(VARIABLE): gives a fixed value to each part that depends on the build, the time or the host.
function(mask variable)
  string(REPLACE "\r\n" "\n" text "${${variable}}")
  string(REPLACE "${DIRECTORY}" "DIRECTORY" text "${text}")
  if(WINDOWS)
    string(REPLACE "\\" "/" text "${text}")
  endif()
  set(date "[A-Z][a-z][a-z] [ 0-3][0-9] [0-9][0-9][0-9][0-9] [0-9][0-9]:[0-5][0-9]:[0-6][0-9]")
  string(REGEX REPLACE "[0-9]+[.][0-9.]+ [A-Z][.][0-9][0-9][a-z] - Compiled ${date}"
    "1.0 A.01a - Compiled Mar 14 2011 09:05:37" text "${text}")
  string(REGEX REPLACE "(Logging [A-Z][a-z]+) - [A-Z][a-z][a-z] ${date} [AP]M [A-Za-z0-9+-]+( [A-Za-z0-9.]+)*\n"
    "\\1 - Tue Mar 02 2027 09:05:07 AM UTC\n" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# add(TITLE TEXT): appends the heading TITLE, if not empty, and TEXT to `record`. Does nothing if TEXT is empty.
function(add title text)
  if(NOT text STREQUAL "")
    string(REGEX REPLACE "([^\n])$" "\\1\n" text "${text}")
    string(REGEX REPLACE "(.+)" "== \\1\n" title "${title}")
    set(record "${record}${title}${text}" PARENT_SCOPE)
  endif()
endfunction()

function(run)
  cmake_parse_arguments(PARSE_ARGV 0 ARG "" "INPUT;KEEP" "ENVIRONMENT;FILES")
  file(REMOVE_RECURSE ${DIRECTORY})
  list(TRANSFORM ARG_FILES PREPEND ${FOLDER}/)
  file(MAKE_DIRECTORY ${DIRECTORY})
  file(COPY ${ARG_FILES} DESTINATION ${DIRECTORY})
  file(GLOB_RECURSE given RELATIVE ${DIRECTORY} ${DIRECTORY}/*)
  foreach(name LOGFILE LOGDETAIL LOGFLAGS DATADIR SORVADATADIR)
    unset(ENV{TOR_KEL_${name}})
  endforeach()
  foreach(setting IN LISTS ARG_ENVIRONMENT ITEMS "USERPROFILE=${DIRECTORY}")
    string(REGEX MATCH "^([^=]+)=(.*)$" setting "${setting}")
    set(ENV{${CMAKE_MATCH_1}} "-") # CMake does not create a variable with an empty value
    set(ENV{${CMAKE_MATCH_1}} "${CMAKE_MATCH_2}")
  endforeach()
  set(command_line "$;${ARG_ENVIRONMENT};${NAME};${ARG_UNPARSED_ARGUMENTS}")
  set(input)
  if(ARG_INPUT)
    set(input INPUT_FILE ${FOLDER}/${ARG_INPUT})
    list(APPEND command_line < ${ARG_INPUT})
  endif()
  execute_process(COMMAND ${COMMAND} ${ARG_UNPARSED_ARGUMENTS} WORKING_DIRECTORY ${DIRECTORY} ${input}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE status)

  set(record "")
  if(ARG_KEEP)
    string(REGEX REPLACE "^.*${ARG_KEEP}.*$" "\\1" kept "${output}")
    add("" "${kept}")
  else()
    add("" "${output}")
    add("standard error" "${errors}")
    file(GLOB_RECURSE written RELATIVE ${DIRECTORY} ${DIRECTORY}/*)
    list(REMOVE_ITEM written ${given})
    foreach(file IN LISTS written)
      file(READ ${DIRECTORY}/${file} text)
      add("file ${file}" "${text}")
    endforeach()
    if(NOT status STREQUAL 0)
      add("exit status" "${status}")
    endif()
  endif()

  # Makes the command line one line of printable characters.
  foreach(escape "\t=\\t" "\r=\\r" "\n=\\n" "${backspace}=\\b" ";= ")
    string(REGEX MATCH "^(.*)=(.*)$" escape "${escape}")
    string(REPLACE "${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}" command_line "${command_line}")
  endforeach()
  string(REGEX REPLACE "  +" " " command_line "${command_line}")
  string(STRIP "${command_line}" command_line)
  set_property(GLOBAL APPEND PROPERTY runs run)
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
if(NOT runs)
  message(FATAL_ERROR "${RUN} runs nothing")
elseif(runs STREQUAL "run") # a single run: its command line is not shown
  string(REGEX REPLACE "^[^\n]*\n(.*)$" "\\1" transcript "${transcript}")
endif()
mask(transcript)
if(DEFINED ENV{KELUTIL_UPDATE_GOLDEN})
  file(WRITE ${GOLDEN} "${transcript}")
  return()
endif()

set(expected "")
if(EXISTS ${GOLDEN})
  file(READ ${GOLDEN} expected)
  mask(expected)
endif()
if(NOT transcript STREQUAL expected)
  file(WRITE ${DIRECTORY}.txt "${transcript}")
  execute_process(COMMAND diff -u ${GOLDEN} ${DIRECTORY}.txt OUTPUT_VARIABLE difference)
  message("${difference}")
  message(FATAL_ERROR "The transcript ${DIRECTORY}.txt differs from ${GOLDEN}.\n"
    "If this is intended, run the test with KELUTIL_UPDATE_GOLDEN=1 in the environment.")
endif()
