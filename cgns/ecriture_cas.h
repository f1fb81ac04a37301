#pragma once

#include <iosfwd>
#include <string>

#include "base/modes.h"
#include "cgns/scene.h"
#include "cgns/topologie.h"

namespace topomine {

// The files of a case, as docs/formats.md has them.

/// All that a case is written from.
struct CasImporte {
  const Structure& structure;
  const std::vector<MesuresZone>& mesures;
  const Familles& familles;
  const Topologie& topologie;
  const SceneSuggeree& scene;
};

void ecrire_scene(std::ostream& out, const CasImporte& cas, const std::string& nom);
void ecrire_blocs(std::ostream& out, const CasImporte& cas);
void ecrire_faces(std::ostream& out, const CasImporte& cas, Mode mode);
void ecrire_edges(std::ostream& out, const CasImporte& cas, Mode mode);
void ecrire_vertices(std::ostream& out, const CasImporte& cas, Mode mode);

}  // namespace topomine
