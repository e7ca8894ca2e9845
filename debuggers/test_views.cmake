# Lets GDB stop in CLIENT and compares what it prints with views.txt and checks.txt. The views must come with the
# library, from LIBRARY_FOLDER; FOLDER is that of this file.
cmake_minimum_required(VERSION 3.25)

if(CROSS)
  message("skipped: only programs of this host are debugged")
  return()
endif()
find_program(GDB gdb)
if(NOT GDB)
  message("skipped: there is no gdb")
  return()
endif()

unset(ENV{TOR_KEL_LOGFILE})
set(ENV{ASAN_OPTIONS} detect_leaks=0) # which a traced process cannot do
execute_process(
  COMMAND ${GDB} -nx -batch -iex "add-auto-load-safe-path ${LIBRARY_FOLDER}"
    -iex "python natvis = '${FOLDER}/kelutil.natvis'; natvis_names = '${FOLDER}/natvis_names.py'"
    -x ${FOLDER}/views.gdb ${CLIENT}
  OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(errors MATCHES "Python scripting is not supported|ptrace: Operation not permitted")
  message("skipped: gdb cannot do it here: ${errors}")
  return()
endif()
# Without a match the whole output is compared, and shown.
set(sections "^.*== views\n(.*)[+]set trace-commands off\n== checks\n(.*)$")
string(REGEX REPLACE "${sections}" "\\1" views "${output}")
string(REGEX REPLACE "${sections}" "\\2" checks "${output}")
foreach(section views checks)
  file(READ ${FOLDER}/${section}.txt expected)
  if(NOT ${section} STREQUAL expected)
    message(SEND_ERROR
      "GDB shows\n${${section}}\ninstead of\n${expected}\nand says\n${errors}")
  endif()
endforeach()
