#include "cgns/lecture_cgns.h"

#include <algorithm>
#include <memory>
#include <thread>

#include "cgns/fichier_cgns.h"
#include "cgns/jointures.h"

namespace topomine {

namespace {

/// Room for the coordinates of the largest zone so far; not set to anything before it is read into.
class Tampon {
 public:
  std::span<double> donner(std::size_t n) {
    if (n > place_) {
      reels_.reset();
      reels_ = std::make_unique_for_overwrite<double[]>(n);
      place_ = n;
    }
    return {reels_.get(), n};
  }

 private:
  std::unique_ptr<double[]> reels_;
  std::size_t place_ = 0;
};

}  // namespace

Extrait lire_cgns(const std::string& fichier, const OptionsLecture& options) {
  FichierCgns f(fichier, options.base);
  Extrait e;
  e.structure = f.structure();
  valider(e.structure);
  const Decoupage d = decouper(e.structure);
  Jointures jointures(e.structure, options.tolerance);
  const unsigned fils = std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
  std::array<Tampon, 3> tampons;
  for (std::size_t z = 0; z < e.structure.zones.size(); ++z) {
    Coordonnees c;
    c.taille = e.structure.zones[z].taille;
    const auto n = static_cast<std::size_t>(zone_entiere(c.taille).nb_noeuds());
    constexpr std::size_t par_noeud = 3 * sizeof(double);
    if (options.octets > 0 && n > options.octets / par_noeud)
      throw MaillageRefuse("zone '" + e.structure.zones[z].nom +
                           "' : plus grande que ce qu'un fichier de cette taille peut contenir");
    std::array<std::span<double>, 3> xyz;
    for (const std::size_t a : axes_ijk) xyz[a] = tampons[a].donner(n);
    f.coordonnees(z, c.taille, xyz);
    c.x = xyz[0];
    c.y = xyz[1];
    c.z = xyz[2];
    e.mesures.push_back(mesurer(e.structure, d, z, c, fils));
    jointures.passer(z, c, e.mesures.back().taille);
  }
  return e;
}

}  // namespace topomine
