# Compares the exported symbols of LIBRARY, demangled and sorted, with the file LIST. NM reads a shared
# object, OBJDUMP and CXXFILT read a DLL. With UPDATE, writes the file instead.
function(run output)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  set(${output} "${text}" PARENT_SCOPE)
endfunction()

if(LIBRARY MATCHES "\\.dll$")
  run(headers ${OBJDUMP} -p ${LIBRARY})
  string(REGEX REPLACE ".*\\[Ordinal/Name Pointer\\] Table" "" headers "${headers}")
  string(REGEX REPLACE "\n\n.*" "" headers "${headers}")
  string(REGEX MATCHALL "\\[ *[0-9]+\\] [^\n]+" exports "${headers}")
  # Newer versions of objdump show the ordinal and the hint, too.
  list(TRANSFORM exports REPLACE "^\\[ *[0-9]+\\] +([+]base\\[ *[0-9]+\\] +[0-9a-f]+ )?" "")
  run(symbols ${CXXFILT} ${exports})
else()
  run(symbols ${NM} --dynamic --defined-only --demangle --format=just-symbols ${LIBRARY})
endif()
# Some tools leave no blank between the brackets of nested templates.
while(symbols MATCHES ">>")
  string(REPLACE ">>" "> >" symbols "${symbols}")
endwhile()
# One list serves every host: std::uint64_t and std::size_t are `unsigned long` in it, std::va_list is va_list.
# DLLs do not export the names of types, so the list leaves them out.
string(REPLACE "long long" "long" symbols "${symbols}")
string(REGEX REPLACE "(operator new[^\n]*\\(unsigned )int" "\\1long" symbols "${symbols}")
string(REGEX REPLACE "(char const\\*, )(char\\*|std::__va_list|__va_list_tag\\*)\\)" "\\1va_list)"
  symbols "${symbols}")
string(REGEX REPLACE "typeinfo name for [^\n]*\n" "" symbols "${symbols}")

# Keeps duplicates: the variants of a constructor or destructor have the same demangled name.
string(REGEX REPLACE "\n$" "" symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
list(SORT symbols)
list(JOIN symbols "\n" text)
if(UPDATE)
  file(WRITE ${LIST} "${text}\n")
  return()
endif()

file(READ ${LIST} expected)
if(text STREQUAL "" OR NOT expected STREQUAL "${text}\n")
  string(REGEX REPLACE "\n$" "" expected "${expected}")
  string(REPLACE "\n" ";" expected "${expected}")
  set(added ${symbols})
  list(REMOVE_ITEM added ${expected})
  set(removed ${expected})
  list(REMOVE_ITEM removed ${symbols})
  list(JOIN added "\n  + " added)
  list(JOIN removed "\n  - " removed)
  message(FATAL_ERROR "The exported symbols are not those of ${LIST}; if this is intended, ./dev abi "
    "rewrites the list.\n  + ${added}\n  - ${removed}")
endif()
