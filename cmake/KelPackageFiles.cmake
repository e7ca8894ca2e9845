# Run by CPack for each package, on the files that are about to be packed: adds what belongs to a
# package and to no other installation.
if(CPACK_GENERATOR STREQUAL DEB)
  file(GLOB packages LIST_DIRECTORIES TRUE ${CPACK_TEMPORARY_DIRECTORY}/*)
  foreach(package IN LISTS packages)
    get_filename_component(component ${package} NAME)
    string(TOUPPER ${component} component)
    set(doc ${package}/usr/share/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME})
    configure_file(${CPACK_KEL_SOURCE_DIR}/LICENSE ${doc}/copyright COPYONLY)
    configure_file(${CPACK_KEL_SOURCE_DIR}/CHANGELOG.md ${doc}/changelog COPYONLY)
    execute_process(COMMAND gzip -9nf ${doc}/changelog COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  return()
endif()

# The archive. The compiler's runtime DLLs come with their symbols, fifteen times what runs.
set(root ${CPACK_TEMPORARY_DIRECTORY})
file(GLOB dlls ${root}/bin/*.dll)
execute_process(COMMAND ${CPACK_KEL_STRIP} --strip-unneeded ${dlls} COMMAND_ERROR_IS_FATAL ANY)
configure_file(${CPACK_KEL_SOURCE_DIR}/LICENSE ${root}/LICENSE COPYONLY)
configure_file(${CPACK_KEL_SOURCE_DIR}/CHANGELOG.md ${root}/CHANGELOG.md COPYONLY)
foreach(runtime gcc-mingw-w64-base mingw-w64-x86-64-dev)
  configure_file(/usr/share/doc/${runtime}/copyright ${root}/licences/${runtime}.txt COPYONLY)
endforeach()
