# The XML parser of the readers: what the other files of the build, of the installation and of the
# packages say of it.
set(XML_MODULE TinyXML)         # cmake/FindTinyXML.cmake, installed with the library
set(XML_CIBLE TinyXML::TinyXML)
set(XML_BIBLIOTHEQUE tinyxml)   # name of the library, and of its module for pkg-config
set(XML_PAQUET libtinyxml-dev)  # Debian's

list(APPEND CMAKE_MODULE_PATH ${PROJECT_SOURCE_DIR}/cmake)
# libtinyxml.a is preferred: calls inside a shared library go through its PLT, a tenth of the run.
set(TinyXML_NAMES libtinyxml.a)
find_package(TinyXML REQUIRED)
set(XML_INCLUDE_DIR ${TINYXML_INCLUDE_DIR})
