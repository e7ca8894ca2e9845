# The packages that `./dev package` makes with CPack: for Debian the pair libkelutilMAJOR and
# libkelutil-dev, for Windows one archive.
set(CPACK_PACKAGE_NAME libkelutil)
set(CPACK_PACKAGE_VENDOR "libKelUtil")
set(CPACK_PACKAGE_CONTACT "the libKelUtil maintainers <maintainers@kelutil.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime development)
# Settles what belongs to packages alone: licences, changelog, stripped runtime DLLs.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/KelPackageFiles.cmake)
set(CPACK_KEL_SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR})
set(CPACK_KEL_STRIP ${CMAKE_STRIP})

if(MINGW)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME libkelutil-${PROJECT_VERSION}-windows-x64)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
  set(CPACK_DEBIAN_PACKAGE_MULTIARCH same)

  set(runtime libkelutil${PROJECT_VERSION_MAJOR})
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime})
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON) # for packages that link ours
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
  set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared library.")

  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkelutil-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, CMake package and pkg-config file.")
endif()
include(CPack)
