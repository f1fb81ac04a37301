# What cpack makes: two Debian packages, from a build whose prefix is /usr (preset "paquet"), and an
# archive of the sources.
set(CPACK_PACKAGE_NAME topomine)
set(CPACK_PACKAGE_VENDOR topomine)
set(CPACK_PACKAGE_CONTACT "Mainteneurs de topomine <topomine@users.noreply.example>" CACHE STRING
  "Who answers for the packages")
set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)

set(CPACK_COMPONENTS_ALL programmes developpement)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PROGRAMMES_PACKAGE_NAME topomine)
set(CPACK_DEBIAN_PROGRAMMES_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PROGRAMMES_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAMMES_PACKAGE_RECOMMENDS gnuplot-nox)
set(CPACK_COMPONENT_PROGRAMMES_DESCRIPTION
  "tables for machine learning from multi-block meshes
topomine turns a collection of multi-block structured mesh cases into a
table of examples, one per block, and writes the covariance matrix of its
attributes. topodata writes that table for learning tools, splits and
summarises it, looks into cases and checks their files. make_cases makes
sample collections.

The programs speak French.")

set(CPACK_DEBIAN_DEVELOPPEMENT_PACKAGE_NAME libtopomine-dev)
set(CPACK_DEBIAN_DEVELOPPEMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPPEMENT_PACKAGE_DEPENDS ${XML_PAQUET})
set(CPACK_DEBIAN_DEVELOPPEMENT_PACKAGE_SUGGESTS topomine)
set(CPACK_COMPONENT_DEVELOPPEMENT_DESCRIPTION
  "multi-block mesh cases and tables of their blocks (development files)
The library under topomine and topodata: reads multi-block structured
mesh cases, links and queries their topology, makes tables of examples of
their blocks and writes them for machine learning.

This package has the archive, the headers, and what CMake and pkg-config
need to find them.")

set(CPACK_SOURCE_GENERATOR TXZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME topomine-${PROJECT_VERSION})
string(REGEX REPLACE "[][+.*()^?|\\$]" "[\\0]" ici "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES "^${ici}/[.]git(/|$)" "^${ici}/build[^/]*/" "/__pycache__/" "~$")
include(CPack)

# What Debian wants in every package: the licences, and the changes.
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  return()
endif()
set(dossier_debian ${PROJECT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${dossier_debian})
file(STRINGS CHANGELOG.md jour REGEX "^## \\[${PROJECT_VERSION}\\] - ")
string(REGEX REPLACE ".* - " "" jour "${jour}")
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C
    date -u -d "${jour} 12:00" "+%a, %d %b %Y %H:%M:%S +0000"
  OUTPUT_VARIABLE JOUR OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
foreach(composant IN ITEMS programmes developpement)
  string(TOUPPER ${composant} COMPOSANT)
  set(PAQUET ${CPACK_DEBIAN_${COMPOSANT}_PACKAGE_NAME})
  set(dossier ${CMAKE_INSTALL_DATADIR}/doc/${PAQUET})
  configure_file(cmake/changelog.Debian.in ${dossier_debian}/${PAQUET}.Debian @ONLY)
  foreach(journal IN ITEMS changelog.Debian changelog)
    set(source ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
    if(journal STREQUAL "changelog.Debian")
      set(source ${dossier_debian}/${PAQUET}.Debian)
    endif()
    execute_process(COMMAND gzip -9nc ${source}
      OUTPUT_FILE ${dossier_debian}/${PAQUET}.${journal}.gz COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${dossier_debian}/${PAQUET}.${journal}.gz
      DESTINATION ${dossier} RENAME ${journal}.gz COMPONENT ${composant})
  endforeach()
  install(FILES cmake/lintian/${PAQUET}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${composant})
  install(FILES cmake/copyright DESTINATION ${dossier} COMPONENT ${composant})
endforeach()
