# Runs the program of logging_process.cpp in many environments and compares its whole logs, with the
# time and the version masked. PROGRAM and EMULATOR say how to run it, DIRECTORY is emptied first.
file(REMOVE_RECURSE "${DIRECTORY}")
file(MAKE_DIRECTORY "${DIRECTORY}")

# run(VALUE DETAIL FLAGS ARGUMENTS...): sets `output` and `errors`. UNSET leaves a variable unset.
function(run value detail flags)
  foreach(variable FILE DETAIL FLAGS)
    string(TOLOWER ${variable} given)
    if(variable STREQUAL FILE)
      set(given value)
    endif()
    set(ENV{TOR_KEL_LOG${variable}} "${${given}}")
    if("${${given}}" STREQUAL UNSET)
      unset(ENV{TOR_KEL_LOG${variable}})
    endif()
  endforeach()
  execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${ARGN} WORKING_DIRECTORY "${DIRECTORY}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    message(SEND_ERROR "'${value}' '${detail}' '${flags}' ${ARGN} ended with ${result}")
  endif()
  set(output "${output}" PARENT_SCOPE)
  set(errors "${errors}" PARENT_SCOPE)
endfunction()

# expect(WHAT TEXT EXPECTED): compares after masking.
function(expect what text expected)
  string(REPLACE "\r\n" "\n" text "${text}")
  string(REGEX REPLACE "Kel - Version [0-9][^\n]* - Compiled [^\n]*" "Kel - Version V" text "${text}")
  set(time "[A-Z][a-z][a-z] [A-Z][a-z][a-z] [0-9][0-9] [0-9][0-9][0-9][0-9] ")
  string(APPEND time "[01][0-9]:[0-5][0-9]:[0-6][0-9] [AP]M [A-Za-z0-9+-]+( [A-Za-z0-9.]+)*\n")
  string(REGEX REPLACE "(Started|Ended) - ${time}" "\\1 - T\n" text "${text}")
  if(NOT text STREQUAL expected)
    message(SEND_ERROR "${what} wrote\n${text}\ninstead of\n${expected}")
  endif()
endfunction()

# expect_file(NAME EXPECTED): the one file that was written.
function(expect_file name expected)
  file(GLOB found RELATIVE "${DIRECTORY}" "${DIRECTORY}/*")
  if(NOT found STREQUAL name)
    message(SEND_ERROR "wrote '${found}' instead of '${name}'")
  elseif(NOT name STREQUAL "")
    file(READ "${DIRECTORY}/${name}" text)
    expect("${name}" "${text}" "${expected}")
    file(REMOVE "${DIRECTORY}/${name}")
  endif()
endfunction()

# What the program writes at a detail level: its records of the levels -4 to 26 and its dump.
function(records level)
  set(text "")
  foreach(number RANGE 0 30)
    math(EXPR number "${number} - 4")
    if(number LESS_EQUAL level)
      string(APPEND text "${number} ")
    endif()
  endforeach()
  set(records "${text}\n(MSB<-LSB)  1  0\n00000000h: 0a 55 \n" PARENT_SCOPE)
endfunction()

set(file "ENVIRONMENT::TOR_KEL_LOGFILE=")
set(detail "ENVIRONMENT::TOR_KEL_LOGDETAIL=")
set(flags "ENVIRONMENT::TOR_KEL_LOGFLAGS=0x")
set(bits "      -PRINTBITS ON\n")
set(large "      -PRINTLARGEBUFS ON\n")
set(banner "Kel - Version V\n\n----- Logging Started - T\n")
set(ended "----- Logging Ended - T\n")
set(hex_dump "  1  0\n00000000h: 0a 55 \n")
set(bit_dump "        1        0\n00000000h:     1010 01010101 \n")

# What the environment asks for, the level that comes of it, and what the log says about it.
function(opening detail_value flags_value level lines)
  run(trace.log "${detail_value}" "${flags_value}")
  records(${level})
  if(flags_value MATCHES "[13]$")
    string(REPLACE "${hex_dump}" "${bit_dump}" records "${records}")
  endif()
  if(level GREATER_EQUAL 2)
    string(APPEND records "${ended}")
  endif()
  expect_file(trace.log "${file}trace.log\n${lines}${records}")
endfunction()

opening(UNSET UNSET 1 "")
opening("" "" 1 "")
opening(1 3 1 "${detail}1\n${flags}00000003\n${bits}${large}")
opening(2 UNSET 2 "${detail}2\n${banner}")
opening(0 3 0 "")                                   # only the line before the level was read
opening(high UNSET 0 "")
opening(" -3" 1 -3 "")
opening(25 UNSET 25 "${detail}25\n${banner}")       # not limited to 10
opening("\t+2x" 2kB 2 "${detail}2\n${flags}00000002\n${large}${banner}")
opening(UNSET 0x2 1 "${flags}00000000\n")
opening(UNSET 6 1 "${flags}00000006\n${large}")
opening(UNSET -1 1 "${flags}FFFFFFFF\n${bits}${large}")

# The name of the output.
records(1)
string(ASCII 8 backspace)
foreach(name "my trace.log" STDOUT Stderr stdout.log)
  run("${backspace} ${name}\t\r\n" UNSET UNSET)
  expect_file("${name}" "${file}${name}\n${records}")
endforeach()
foreach(name UNSET "" " \t\r\n" missing/trace.log .)
  run("${name}" 4 UNSET)
  expect_file("" "")
endforeach()

# The standard streams are closed in the end; one that is closed before is survived.
records(2)
run(" stdout\t" 2 UNSET stream 1)
expect(stdout "${output}" "${file}stdout\n${detail}2\n${banner}${records}${ended}")
run("stderr" 2 UNSET stream 2)
expect(stderr "${errors}" "${file}stderr\n${detail}2\n${banner}${records}${ended}")
run("stdout" 4 UNSET closed)
expect(closed "${output}" "")

# Unloading ends logging, after the last client has logged.
records(4)
run(trace.log 4 UNSET unload)
expect_file(trace.log "${file}trace.log\n${detail}4\n${banner}${records}ENTERING Client \n\
  client ends\nEXITING Client\n${ended}")

# The opening lines go through the process-wide Logger, the settings to the one that is started.
run(trace.log 4 1 other)
string(REPLACE "${hex_dump}" "${bit_dump}" records "${records}")
expect_file(trace.log "${records}")

# A copy has its own depth and names. Its end writes the closing line through the process-wide
# Logger, at that one's depth; the last one that holds the stream closes it, without a line.
records(4)
run(stdout 4 UNSET copies 1)
expect(copies "${output}" "${file}stdout\n${detail}4\n${banner}${records}ENTERING f \n\
EXITING f -- returning copied\n  still inside\n  ${ended}  ${ended}EXITING f -- returning 7\n")
