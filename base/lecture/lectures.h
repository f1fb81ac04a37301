#pragma once

#include <string>

#include "base/lecture/document.h"

class Base;

namespace topomine {

class Journal;

// How the files of a case are read into a Base. All answer false after a failure that the journal
// was told.

/// Base::load_all.
bool lire_base(Base& base, Journal& journal);

/// climite.cfg, unless a configuration is loaded.
bool lire_climite(const std::string& repertoire, Journal& journal);
/// The scene file is read twice: for the aircraft, then for the pieces and their junctions.
bool lire_plane(Base& base, Journal& journal);
bool lire_scene(Base& base, Journal& journal);
bool lire_blocs(Base& base, Journal& journal);
bool lire_faces(Base& base, Journal& journal);
bool lire_edges(Base& base, Journal& journal);
bool lire_vrtxs(Base& base, Journal& journal);

// Their walks, one per kind of file, for a run as well as for a strict reading.
bool parcourir_plane(Base&, const DocumentXml&, const std::string& fichier, Journal&);
bool parcourir_scene(Base&, const DocumentXml&, const std::string& fichier, Journal&);
bool parcourir_blocs(Base&, const DocumentXml&, const std::string& fichier, Journal&);
bool parcourir_faces(Base&, const DocumentXml&, const std::string& fichier, Journal&);
bool parcourir_edges(Base&, const DocumentXml&, const std::string& fichier, Journal&);
bool parcourir_vrtxs(Base&, const DocumentXml&, const std::string& fichier, Journal&);

}  // namespace topomine
