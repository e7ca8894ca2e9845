# print_scene(REGEX): runs the client in GDB, which stops in inspect() and prints the objects of the client's struct
# Scene. The test compares the part of the output that the group in REGEX matches.
macro(print_scene part)
  if(CROSS)
    skip("only programs of this host are debugged")
  endif()
  find_program(GDB gdb)
  if(NOT GDB)
    skip("there is no gdb")
  endif()
  # GDB finds the views beside the library.
  set(COMMAND ${GDB} -nx -batch -iex "set auto-load safe-path /"
    -x ${FOLDER}/views.gdb ${COMMAND})
  run(ENVIRONMENT ASAN_OPTIONS=detect_leaks=0 # leak detection does not work under a debugger
    KEEP "${part}")
  if(errors MATCHES "Python scripting is not supported|ptrace: Operation not permitted")
    skip("gdb cannot do it here: ${errors}")
  endif()
endmacro()
