# Compiler options of our own targets. They never reach a client: nothing here is INTERFACE or PUBLIC.

set(KELUTIL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow)

# A double is rounded after every operation. 32-bit x86 does so only with SSE2, its older unit keeps
# more digits.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#include <cfloat>
static_assert(FLT_EVAL_METHOD == 0 || FLT_EVAL_METHOD == 1); int main() {}" KELUTIL_ROUNDS_DOUBLES)
set(KELUTIL_ARITHMETIC)
if(NOT KELUTIL_ROUNDS_DOUBLES)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag("-msse2 -mfpmath=sse" KELUTIL_HAS_SSE2_ARITHMETIC)
  if(KELUTIL_HAS_SSE2_ARITHMETIC)
    set(KELUTIL_ARITHMETIC -msse2 -mfpmath=sse)
  endif()
endif()

# Hardening of what is shipped: checked copies and formats, guarded stacks, tables of addresses that are
# read-only once they are filled. (Run-time checks need optimised code, and on Windows a DLL more.)
set(KELUTIL_HARDENED_CODE)
set(KELUTIL_HARDENED_LINK)
if(MINGW)
  set(KELUTIL_HARDENED_LINK LINKER:--dynamicbase,--nxcompat,--high-entropy-va)
elseif(CMAKE_SYSTEM_NAME STREQUAL Linux)
  set(KELUTIL_HARDENED_CODE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
  set(KELUTIL_HARDENED_LINK LINKER:-z,relro,-z,now,-z,noexecstack)
endif()

# kel_harden(TARGET): in the configurations that are shipped.
function(kel_harden target)
  set(shipped $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  target_compile_options(${target} PRIVATE "$<${shipped}:${KELUTIL_HARDENED_CODE}>")
  target_link_options(${target} PRIVATE "$<${shipped}:${KELUTIL_HARDENED_LINK}>")
endfunction()

# kel_own_target(TARGET): warnings, hidden visibility, and warnings as errors where asked for.
function(kel_own_target target)
  target_compile_options(${target} PRIVATE ${KELUTIL_WARNINGS} ${KELUTIL_ARITHMETIC})
  # On 32-bit hosts files pass 2 GiB, and the numbers of files 32 bits, only with wide offsets.
  target_compile_definitions(${target} PRIVATE $<$<PLATFORM_ID:Linux>:_FILE_OFFSET_BITS=64>)
  if(KELUTIL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# kel_list(NAME ITEM...): the lines of lists/NAME in the build folder, from which tasks learn what there is.
function(kel_list name)
  list(JOIN ARGN "\n" lines)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/lists/${name} CONTENT "${lines}\n" @ONLY)
endfunction()
