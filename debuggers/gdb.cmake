# print_scene(REGEX): GDB stops in the client and prints the scene; the group of REGEX is compared.
macro(print_scene part)
  if(CROSS)
    skip("only programs of this host are debugged")
  endif()
  find_program(GDB gdb)
  if(NOT GDB)
    skip("there is no gdb")
  endif()
  # The views come with the library: GDB finds them beside it.
  set(COMMAND ${GDB} -nx -batch -iex "set auto-load safe-path /"
    -x ${FOLDER}/views.gdb ${COMMAND})
  run(ENVIRONMENT ASAN_OPTIONS=detect_leaks=0 # which a traced process cannot do
    KEEP "${part}")
  if(errors MATCHES "Python scripting is not supported|ptrace: Operation not permitted")
    skip("gdb cannot do it here: ${errors}")
  endif()
endmacro()
