# Compiler options of our own targets. They never reach a client: nothing here is INTERFACE or PUBLIC.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

# kel_accepted(VARIABLE OPTION...): the first option that the compiler accepts, or nothing.
function(kel_accepted variable)
  foreach(option IN LISTS ARGN)
    string(MAKE_C_IDENTIFIER "KELUTIL_TAKES_${option}" takes)
    check_cxx_compiler_flag(${option} ${takes})
    if(${takes})
      set(${variable} ${option} PARENT_SCOPE)
      return()
    endif()
  endforeach()
  set(${variable} "" PARENT_SCOPE)
endfunction()

# MSVC is also set for clang-cl.
if(MSVC)
  set(KELUTIL_LANGUAGE /utf-8 /permissive- /Zc:__cplusplus /EHsc)
  set(KELUTIL_WARNINGS /W4)
  set(KELUTIL_WERROR /WX)
else()
  set(KELUTIL_LANGUAGE)
  set(KELUTIL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow)
  set(KELUTIL_WERROR -Werror)
endif()

# Scaled values round after every operation; some compilers fuse operations by default.
kel_accepted(KELUTIL_UNFUSED -ffp-contract=off /fp:strict)

# A short loop that crosses a fetch block boundary takes up to 50 % longer, so its speed would change
# with every function added before it.
kel_accepted(KELUTIL_ALIGNED_LOOPS -falign-loops=32)

# A double must be rounded after every operation. 32-bit x86 does so only with SSE2; its older unit
# keeps excess precision.
check_cxx_source_compiles("#include <cfloat>
static_assert(FLT_EVAL_METHOD == 0 || FLT_EVAL_METHOD == 1); int main() {}" KELUTIL_ROUNDS_DOUBLES)
set(KELUTIL_ARITHMETIC)
if(NOT KELUTIL_ROUNDS_DOUBLES)
  check_cxx_compiler_flag("-msse2 -mfpmath=sse" KELUTIL_HAS_SSE2_ARITHMETIC)
  if(KELUTIL_HAS_SSE2_ARITHMETIC)
    set(KELUTIL_ARITHMETIC -msse2 -mfpmath=sse)
  endif()
endif()

# Hardening of what is shipped: _FORTIFY_SOURCE, stack protector, full RELRO, non-executable stack.
# (The run-time checks need optimised code. They are left out on Windows, where they need another DLL.)
set(KELUTIL_HARDENED_CODE)
if(NOT WIN32)
  kel_accepted(KELUTIL_HARDENED_CODE -fstack-protector-strong)
  list(APPEND KELUTIL_HARDENED_CODE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
set(KELUTIL_HARDENED_LINK)
if(MSVC)
  set(hardened_link /dynamicbase /nxcompat /highentropyva)
elseif(WIN32)
  set(hardened_link LINKER:--dynamicbase,--nxcompat,--high-entropy-va)
else()
  set(hardened_link LINKER:-z,relro,-z,now,-z,noexecstack)
endif()
check_linker_flag(CXX "${hardened_link}" KELUTIL_TAKES_HARDENED_LINK)
if(KELUTIL_TAKES_HARDENED_LINK)
  set(KELUTIL_HARDENED_LINK ${hardened_link})
endif()

# kel_harden(TARGET): in the configurations that are shipped.
function(kel_harden target)
  set(shipped $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  target_compile_options(${target} PRIVATE "$<${shipped}:${KELUTIL_HARDENED_CODE}>")
  target_link_options(${target} PRIVATE "$<${shipped}:${KELUTIL_HARDENED_LINK}>")
endfunction()

# kel_own_target(TARGET): warnings, hidden visibility, and warnings as errors where asked for.
function(kel_own_target target)
  target_compile_options(${target} PRIVATE ${KELUTIL_LANGUAGE} ${KELUTIL_WARNINGS} ${KELUTIL_ARITHMETIC})
  # On 32-bit hosts, files above 2 GiB and inode numbers above 32 bits need 64-bit file offsets.
  target_compile_definitions(${target} PRIVATE $<$<PLATFORM_ID:Linux>:_FILE_OFFSET_BITS=64>)
  if(KELUTIL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE ${KELUTIL_WERROR})
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# kel_list(NAME ITEM...): writes lists/NAME in the build folder, one item a line, for the tasks to read.
function(kel_list name)
  list(JOIN ARGN "\n" lines)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/lists/${name} CONTENT "${lines}\n" @ONLY)
endfunction()
