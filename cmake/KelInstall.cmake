# Installs the headers, library, licence, CMake package and kelutil.pc. The component KelUtil_Runtime has what
# a program needs to run, KelUtil_Development what it needs to be built.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KelUtil)

install(TARGETS KelUtil EXPORT KelUtilTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT KelUtil_Runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT KelUtil_Runtime NAMELINK_COMPONENT KelUtil_Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT KelUtil_Development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KelUtilTargets NAMESPACE KelUtil:: DESTINATION ${package_dir} COMPONENT KelUtil_Development)
export(EXPORT KelUtilTargets NAMESPACE KelUtil:: FILE ${CMAKE_CURRENT_BINARY_DIR}/KelUtilTargets.cmake)

install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT KelUtil_Runtime)
install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/include/KelRT DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT KelUtil_Development FILES_MATCHING PATTERN "*.h")

# The build tree and the installed tree use the same KelUtilConfig.cmake and KelUtilConfigVersion.cmake. In both trees
# the targets file is beside them.
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KelUtilConfig.cmake.in KelUtilConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(KelUtilConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KelUtilConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/KelUtilConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT KelUtil_Development)

# kelutil.pc derives the prefix from its own location, so the installation can be moved. Directories that
# the user gave as absolute paths stay absolute.
function(kel_pc_dir variable dir)
  if(IS_ABSOLUTE ${dir})
    set(${variable} ${dir} PARENT_SCOPE)
  else()
    set(${variable} "\${prefix}/${dir}" PARENT_SCOPE)
  endif()
endfunction()
kel_pc_dir(pc_libdir ${CMAKE_INSTALL_LIBDIR})
kel_pc_dir(pc_includedir ${CMAKE_INSTALL_INCLUDEDIR})
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(pc_prefix ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" pc_prefix "\${pcfiledir}/${pc_prefix}")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/kelutil.pc.in kelutil.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kelutil.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT KelUtil_Development)

if(WIN32)
  install(FILES ${KELUTIL_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT KelUtil_Runtime)
endif()
if(MSVC)
  install(FILES $<TARGET_PDB_FILE:KelUtil> DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT KelUtil_Development)
endif()
