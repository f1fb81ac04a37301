# TinyXML::TinyXML, from TINYXML_INCLUDE_DIR and TINYXML_LIBRARY. Used by the build, and installed
# for those who link the library. TinyXML_NAMES, when set, is what to look for first.
find_path(TINYXML_INCLUDE_DIR tinyxml.h)
find_library(TINYXML_LIBRARY NAMES ${TinyXML_NAMES} tinyxml)
mark_as_advanced(TINYXML_INCLUDE_DIR TINYXML_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(TinyXML REQUIRED_VARS TINYXML_LIBRARY TINYXML_INCLUDE_DIR)

if(TinyXML_FOUND AND NOT TARGET TinyXML::TinyXML)
  add_library(TinyXML::TinyXML UNKNOWN IMPORTED)
  set_target_properties(TinyXML::TinyXML PROPERTIES
    IMPORTED_LOCATION "${TINYXML_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${TINYXML_INCLUDE_DIR}")
endif()
