# Describes the archive for Windows, which `./dev package windows` makes with CPack. The folder debian/ describes the
# Debian packages.
set(CPACK_PACKAGE_NAME libkelutil)
set(CPACK_PACKAGE_VENDOR "libKelUtil")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
if(NOT MSVC) # MSVC keeps symbols in a PDB file
  set(CPACK_STRIP_FILES ON)
endif()
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL KelUtil_Runtime KelUtil_Development KelUtil_Tools)
if(KELUTIL_BUILD_DOCS)
  list(APPEND CPACK_COMPONENTS_ALL KelUtil_Documentation)
endif()
# This script adds what only the archive has: licences, the changelog and stripped runtime DLLs.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/KelPackageFiles.cmake)
set(CPACK_KEL_SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
set(CPACK_KEL_STRIP ${CMAKE_STRIP})
set(CPACK_KEL_MINGW ${MINGW})
set(CPACK_KEL_OBJDUMP ${CMAKE_OBJDUMP})
set(CPACK_KEL_RUNTIME_LICENCES ${KELUTIL_RUNTIME_LICENCES})

set(CPACK_GENERATOR ZIP)
string(TOLOWER windows-${CMAKE_SYSTEM_PROCESSOR} host)
string(REGEX REPLACE "x86_64|amd64" "x64" host ${host})
if(MSVC)
  string(APPEND host -msvc)
endif()
set(CPACK_PACKAGE_FILE_NAME libkelutil-${PROJECT_VERSION}-${host})
include(CPack)
