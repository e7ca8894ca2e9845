# Sets the compiler options of the project's own targets. They are all PRIVATE, so none reaches a client.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

# kel_accepted(VARIABLE OPTION...): sets VARIABLE to the first option that the compiler accepts, or to nothing.
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
  # _CRT_SECURE_NO_WARNINGS silences the warning that standard functions such as getenv and fopen are deprecated.
  # Warning 4127 reports constant conditions. Some are intended: true on one host, false on another.
  set(KELUTIL_LANGUAGE /utf-8 /permissive- /Zc:__cplusplus /EHsc /D_CRT_SECURE_NO_WARNINGS)
  set(KELUTIL_WARNINGS /W4 /wd4127)
  set(KELUTIL_WERROR /WX)
else()
  set(KELUTIL_LANGUAGE)
  set(KELUTIL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow)
  set(KELUTIL_WERROR -Werror)
endif()

# Scaled values must be rounded after every operation, but some compilers fuse a multiplication and an addition.
kel_accepted(KELUTIL_UNFUSED -ffp-contract=off /fp:strict)

# A short loop that crosses a boundary of 32 bytes takes up to 50 % longer. Without alignment its speed would change
# whenever code is added before it.
kel_accepted(KELUTIL_ALIGNED_LOOPS -falign-loops=32)

# A double must be rounded after every operation. 32-bit x86 does so only with SSE2; its older x87 unit
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

# kel_version_script(TARGET FILE): limits the exports of a shared library to those in FILE. It uses -Xlinker, since
# LINKER: and -Wl, would split a path at its commas.
function(kel_version_script target file)
  target_link_options(${target} PRIVATE "SHELL:-Xlinker \"--version-script=${file}\"")
  set_property(TARGET ${target} PROPERTY LINK_DEPENDS ${file})
endfunction()

# kel_own_target(TARGET): gives TARGET hidden visibility, the options above and the warnings. The warnings are errors if
# KELUTIL_WARNINGS_AS_ERRORS is on. If the library is a part of another project, that project chooses the warnings.
function(kel_own_target target)
  target_compile_options(${target} PRIVATE ${KELUTIL_LANGUAGE} ${KELUTIL_ARITHMETIC})
  if(PROJECT_IS_TOP_LEVEL)
    target_compile_options(${target} PRIVATE ${KELUTIL_WARNINGS})
  endif()
  # On 32-bit hosts, files above 2 GiB and inode numbers above 32 bits need 64-bit file offsets, and files dated
  # after 2038 need 64-bit times.
  target_compile_definitions(${target} PRIVATE "$<$<PLATFORM_ID:Linux>:_FILE_OFFSET_BITS=64;_TIME_BITS=64>")
  if(KELUTIL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE ${KELUTIL_WERROR})
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# kel_list(NAME ITEM...): writes the file lists/NAME in the build folder, one item a line. The tasks of ./dev read it.
function(kel_list name)
  list(JOIN ARGN "\n" lines)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/lists/${name} CONTENT "${lines}\n" @ONLY)
endfunction()
