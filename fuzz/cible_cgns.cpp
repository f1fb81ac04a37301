#include <sys/mman.h>
#include <unistd.h>

#include <ostream>
#include <set>
#include <sstream>
#include <string>

#include "cgns/ecriture_cas.h"
#include "cgns/enfant.h"
#include "fuzz/cibles.h"
#include "fuzz/outils.h"

using namespace topomine;

namespace {

/// Bytes as a file that is nowhere on the disk.
class FichierEnMemoire {
 public:
  explicit FichierEnMemoire(std::string_view octets) : d_(memfd_create("maillage", 0)) {
    PROMET(d_ >= 0);
    PROMET(write(d_, octets.data(), octets.size()) == static_cast<ssize_t>(octets.size()));
  }
  ~FichierEnMemoire() { close(d_); }
  FichierEnMemoire(const FichierEnMemoire&) = delete;
  FichierEnMemoire& operator=(const FichierEnMemoire&) = delete;
  std::string nom() const { return "/proc/self/fd/" + std::to_string(d_); }

 private:
  int d_;
};

/// What a topology promises to whoever writes it: no number without its entity.
void verifier_topologie(const Topologie& t) {
  std::set<int> faces;
  for (const FaceTopo& f : t.faces) {
    PROMET(faces.insert(f.numero).second);
    PROMET(f.nb_blocs >= 1 && f.nb_blocs <= 2);
    for (const int e : f.edges) PROMET(e >= 0 && static_cast<std::size_t>(e) <= t.edges.size());
  }
  for (const BlocTopo& b : t.blocs)
    for (const auto& place : b.faces) {
      for (const int n : place) PROMET(faces.contains(n));
      // The count that readers take for a number is nobody's.
      PROMET(place.size() < 2 || !faces.contains(static_cast<int>(place.size())));
    }
  const auto nb = static_cast<int>(t.sommets.size());
  for (const EdgeTopo& e : t.edges)
    PROMET(e.debut > 0 && e.debut <= nb && e.fin > 0 && e.fin <= nb);
}

void continuer(const Extrait& e) {
  const Decoupage d = decouper(e.structure);
  accorder(e, d);
  const Familles familles =
      attribuer_codes(e.structure, d, pieces_ecrasees(d, e.mesures), {{101, {1, "paroi"}}}, {});
  const Topologie t = identifier(e.structure, d, e.mesures, familles);
  verifier_topologie(t);
  const SceneSuggeree scene = suggerer_scene(e.structure, d, e.mesures, familles, t);
  const CasImporte cas{e.structure, e.mesures, familles, t, scene};
  std::ostringstream out;
  ecrire_scene(out, cas, "essai");
  ecrire_blocs(out, cas);
  for (const Mode mode : {Mode::ext, Mode::nrm, Mode::min}) {
    ecrire_faces(out, cas, mode);
    ecrire_edges(out, cas, mode);
    ecrire_vertices(out, cas, mode);
  }
}

bool commence_par(std::string_view entree, std::string_view debut) {
  return entree.substr(0, debut.size()) == debut;
}

}  // namespace

// The bytes of a mesh file, or those that the process which reads one sends back.
void cible_cgns(std::string_view entree) {
  constexpr LimitesLecture limites{5, 256UL << 20};
  try {
    if (commence_par(entree, "\211HDF") || commence_par(entree, "@(#)ADF")) {
      const FichierEnMemoire fichier(entree);
      continuer(extraire(fichier.nom(), {}, limites));
    } else {
      continuer(deballer(entree));
    }
  } catch (const MaillageRefuse& r) {
    PROMET(!std::string(r.what()).empty());
  }
}
