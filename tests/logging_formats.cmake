# Compiles SOURCE with COMPILER and the include directory INCLUDE, and compares the lines on which
# format warnings stand with those marked "// warns".
execute_process(
  COMMAND ${COMPILER} -x c++ -std=c++17 -fsyntax-only -Wall -Wextra "-I${INCLUDE}" "${SOURCE}"
  RESULT_VARIABLE result ERROR_VARIABLE diagnostics)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${SOURCE} does not compile:\n${diagnostics}")
endif()

set(expected "")
set(number 0)
file(READ "${SOURCE}" text)
string(REGEX REPLACE "[];[]" "_" text "${text}") # they have a meaning in lists
string(REPLACE "\n" ";" lines "${text}")
foreach(line IN LISTS lines)
  math(EXPR number "${number} + 1")
  if(line MATCHES "// warns$")
    list(APPEND expected ${number})
  endif()
endforeach()

get_filename_component(name "${SOURCE}" NAME)
string(REGEX MATCHALL "${name}:[0-9]+:[0-9]+: warning: [^\n]*" warnings "${diagnostics}")
set(warned "")
foreach(warning IN LISTS warnings)
  string(REGEX MATCH ":([0-9]+):" unused "${warning}")
  set(number ${CMAKE_MATCH_1})
  list(APPEND warned ${number})
  if(NOT warning MATCHES "Wformat")
    message(FATAL_ERROR "another warning: ${warning}")
  endif()
endforeach()
list(REMOVE_DUPLICATES warned)
if(NOT expected OR NOT warned STREQUAL expected)
  message(FATAL_ERROR "format warnings on lines ${warned}, expected on ${expected}\n${diagnostics}")
endif()
