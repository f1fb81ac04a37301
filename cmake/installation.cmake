# What `cmake --install` puts where: the programs, and what it takes to link the library.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/completion)
set(dossier_cmake ${CMAKE_INSTALL_LIBDIR}/cmake/topomine)

install(TARGETS topomine make_cases
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programmes)
if(TARGET topodata)
  install(TARGETS topodata RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programmes)
endif()

# Shells look for one file per program in bash, and know all three from one in zsh.
set(dossier_bash ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES app/completion/topomine.bash
  DESTINATION ${dossier_bash} RENAME topomine COMPONENT programmes)
foreach(programme IN ITEMS topodata make_cases)
  file(CREATE_LINK topomine ${PROJECT_BINARY_DIR}/completion/${programme} SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/completion/${programme}
    DESTINATION ${dossier_bash} COMPONENT programmes)
endforeach()
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(dossier_zsh ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
else()
  set(dossier_zsh ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()
install(FILES app/completion/_topomine DESTINATION ${dossier_zsh} COMPONENT programmes)

install(TARGETS topomine_lib EXPORT topomineTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT developpement)
foreach(entete IN LISTS entetes_publics)
  cmake_path(GET entete PARENT_PATH dossier)
  install(FILES ${entete}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/topomine/${dossier} COMPONENT developpement)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/include/topomine/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/topomine COMPONENT developpement)

install(EXPORT topomineTargets NAMESPACE topomine::
  DESTINATION ${dossier_cmake} COMPONENT developpement)
configure_package_config_file(cmake/topomineConfig.cmake.in
  ${PROJECT_BINARY_DIR}/topomineConfig.cmake INSTALL_DESTINATION ${dossier_cmake})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/topomineConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/topomineConfig.cmake
  ${PROJECT_BINARY_DIR}/topomineConfigVersion.cmake
  cmake/Find${XML_MODULE}.cmake
  DESTINATION ${dossier_cmake} COMPONENT developpement)

# From the .pc file back to the prefix: the tree can be moved as a whole.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig
  OUTPUT_VARIABLE RETOUR_AU_PREFIXE)
configure_file(cmake/topomine.pc.in ${PROJECT_BINARY_DIR}/topomine.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/topomine.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT developpement)
