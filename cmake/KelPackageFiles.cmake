# CPack runs this script before it packs the files. The script adds the files that only the archive has, and checks
# that nothing is missing.

# The packed version must be the last release in the changelog.
set(released "## \\[([0-9.]+)\\] - [0-9-]+")
file(STRINGS ${CPACK_KEL_SOURCE_DIR}/CHANGELOG.md releases REGEX "^${released}$")
list(GET releases 0 release)
string(REGEX MATCH "${released}" release "${release}")
set(version ${CMAKE_MATCH_1})
if(NOT version STREQUAL CPACK_PACKAGE_VERSION)
  message(FATAL_ERROR "The last release in CHANGELOG.md is ${version}, the packed one is ${CPACK_PACKAGE_VERSION}")
endif()

set(root ${CPACK_TEMPORARY_DIRECTORY})
configure_file(${CPACK_KEL_SOURCE_DIR}/LICENSE ${root}/LICENSE COPYONLY)
configure_file(${CPACK_KEL_SOURCE_DIR}/CHANGELOG.md ${root}/CHANGELOG.md COPYONLY)
if(CPACK_KEL_MINGW)
  # The archive must hold each DLL of the compiler that its programs need, and the licences of these DLLs.
  file(GLOB dlls ${root}/bin/*.dll)
  execute_process(COMMAND ${CPACK_KEL_OBJDUMP} -p ${dlls} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "DLL Name: lib[^\n]+" needed "${headers}")
  foreach(dll IN LISTS needed)
    string(REPLACE "DLL Name: " "" dll ${dll})
    if(NOT EXISTS ${root}/bin/${dll})
      message(FATAL_ERROR "The archive needs ${dll}, which is not beside the compiler.")
    endif()
  endforeach()
  if(NOT CPACK_KEL_RUNTIME_LICENCES)
    message(FATAL_ERROR "KELUTIL_RUNTIME_LICENCES must name the licence files of the compiler's runtime DLLs.")
  endif()
  foreach(licence IN LISTS CPACK_KEL_RUNTIME_LICENCES)
    string(REGEX REPLACE ".*/([^/]+)/([^/]+)$" "\\1-\\2.txt" name ${licence})
    configure_file(${licence} ${root}/licences/${name} COPYONLY)
  endforeach()
  # Unstripped, these DLLs are fifteen times as large.
  execute_process(COMMAND ${CPACK_KEL_STRIP} --strip-unneeded ${dlls} COMMAND_ERROR_IS_FATAL ANY)
endif()
