# Compiler options of our own targets. They never reach a client: nothing here is INTERFACE or PUBLIC.

set(KELUTIL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow)

# kel_own_target(TARGET): warnings, hidden visibility, and warnings as errors where asked for.
function(kel_own_target target)
  target_compile_options(${target} PRIVATE ${KELUTIL_WARNINGS})
  if(KELUTIL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()
