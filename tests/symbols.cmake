# Compares the exported symbols of LIBRARY with those in the dump file ABI. NM reads a shared object, OBJDUMP a DLL.
# CXXFILT demangles.
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
else()
  run(symbols ${NM} --dynamic --defined-only --format=just-symbols ${LIBRARY})
  string(REGEX MATCHALL "[^\n]+" exports "${symbols}")
endif()
file(STRINGS ${ABI} recorded REGEX "<elf-symbol ")
list(TRANSFORM recorded REPLACE ".* name='([^']*)'.*" "\\1")

# Sets OUTPUT to the sorted list of the demangled names, in a form that is the same on every host: std::uint64_t and
# std::size_t are `unsigned long`, std::va_list is va_list.
function(demangle output)
  run(names ${CXXFILT} ${ARGN})
  string(REPLACE "long long" "long" names "${names}")
  string(REGEX REPLACE "(operator new[^\n]*\\(unsigned )int" "\\1long" names "${names}")
  string(REGEX REPLACE "(char const\\*, )(char\\*|std::__va_list|__va_list_tag\\*)\\)" "\\1va_list)" names "${names}")
  # DLLs do not export the names of types.
  string(REGEX REPLACE "typeinfo name for [^\n]*\n" "" names "${names}")
  string(REGEX MATCHALL "[^\n]+" names "${names}")
  # Keeps duplicates: the variants of a constructor or destructor have the same demangled name.
  list(SORT names)
  set(${output} "${names}" PARENT_SCOPE)
endfunction()

demangle(actual ${exports})
demangle(expected ${recorded})
if(NOT expected OR NOT actual STREQUAL expected)
  set(added ${actual})
  list(REMOVE_ITEM added ${expected})
  list(REMOVE_ITEM expected ${actual})
  list(JOIN added "\n  + " added)
  list(JOIN expected "\n  - " removed)
  message(FATAL_ERROR "The exported symbols are not those of ${ABI}; if this is intended, ./dev abi "
    "rewrites the file.\n  + ${added}\n  - ${removed}")
endif()
