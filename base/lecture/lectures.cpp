#include "base/lecture/lectures.h"

#include <exception>

#include "base/base.h"

namespace topomine {

bool lire_base(Base& base, Journal& journal) {
  try {
    if (base.nom_base.empty()) base.gen_nom_base();
    return base.test_files() && lire_climite(base.chemin, journal) && lire_plane(base, journal) &&
           lire_scene(base, journal) && lire_blocs(base, journal) && lire_faces(base, journal) &&
           lire_edges(base, journal) && lire_vrtxs(base, journal) && base.make_link() &&
           base.maj_typeC();
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace topomine
