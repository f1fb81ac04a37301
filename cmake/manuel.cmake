# Manual pages, made from docs/ and from the help of the programs just built.
find_package(Python3 COMPONENTS Interpreter)
if(NOT Python3_FOUND OR TOPOMINE_FUZZ OR NOT TARGET topodata)
  message(STATUS "Manual pages are not made: they take Python and topodata")
  return()
endif()
file(GLOB sources_manuel CONFIGURE_DEPENDS docs/manuel/*.md)
set(dossier_manuel ${PROJECT_BINARY_DIR}/man)
add_custom_command(OUTPUT ${dossier_manuel}/fait
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${dossier_manuel}
  COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/manuel.py
    --programmes ${PROJECT_BINARY_DIR} --version ${PROJECT_VERSION} --sortie ${dossier_manuel}
  COMMAND ${CMAKE_COMMAND} -E touch ${dossier_manuel}/fait
  DEPENDS topodata make_cases tools/manuel.py docs/formats.md CHANGELOG.md ${sources_manuel}
  COMMENT "Manual pages"
  VERBATIM)
add_custom_target(manuel ALL DEPENDS ${dossier_manuel}/fait)
install(DIRECTORY ${dossier_manuel}/man1 ${dossier_manuel}/man5
  DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT programmes)
