# Expects the marks of each hardening option in LIBRARY.
if(WINDOWS)
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE found COMMAND_ERROR_IS_FATAL ANY)
  set(marks HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT)
else()
  execute_process(COMMAND ${READELF} -W --segments --dynamic --dyn-syms ${LIBRARY}
    OUTPUT_VARIABLE found COMMAND_ERROR_IS_FATAL ANY)
  set(marks "GNU_RELRO" "BIND_NOW|FLAGS_1[^\n]*NOW" "GNU_STACK[^\n]* RW " "__stack_chk_fail"
    "__[a-z]+_chk[@ \n]")
endif()
foreach(mark IN LISTS marks)
  if(NOT found MATCHES "${mark}")
    message(SEND_ERROR "${LIBRARY} has no ${mark}")
  endif()
endforeach()
