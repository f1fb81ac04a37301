#pragma once

#include <array>
#include <string>
#include <vector>

#include "cgns/structure.h"

namespace topomine {

/// A mesh to be written as a CGNS file: what the readers are to find, with its coordinates.
struct Modele {
  Structure s;
  std::vector<std::array<std::vector<double>, 3>> xyz;  ///< x, y, z of each zone, i fastest

  /// Adds a zone of so many cells whose node at (u,v,w) in [0,1]^3 is image(u,v,w); its rank.
  template <class Image>
  std::size_t zone(const Ijk& cellules, Image image);
  /// Condition over a face, or a part of it; the family is its name.
  void condition(std::size_t zone, const Plage& plage, const std::string& famille, int bccode);
  void jonction(std::size_t zone, const Plage& plage, std::size_t voisine, const Passage& passage);

  const Ijk& taille(std::size_t z) const { return s.zones[z].taille; }
  std::size_t rang(std::size_t z, const Ijk& p) const;
};

template <class Image>
std::size_t Modele::zone(const Ijk& cellules, Image image) {
  Zone z{"zone " + std::to_string(s.zones.size() + 1), {}};
  for (std::size_t a = 0; a < 3; ++a) z.taille[a] = cellules[a] + 1;
  auto& x = xyz.emplace_back();
  for (Indice k = 0; k <= cellules[2]; ++k)
    for (Indice j = 0; j <= cellules[1]; ++j)
      for (Indice i = 0; i <= cellules[0]; ++i) {
        const auto part = [](Indice n, Indice nb) {
          return static_cast<double>(n) / static_cast<double>(nb);
        };
        const Vec p = image(part(i, cellules[0]), part(j, cellules[1]), part(k, cellules[2]));
        x[0].push_back(p.x);
        x[1].push_back(p.y);
        x[2].push_back(p.z);
      }
  s.zones.push_back(z);
  return s.zones.size() - 1;
}

/// The 48 ways to turn and mirror three axes.
const std::vector<std::array<int, 3>>& transformations();

/// The zone with its axes renamed: axis a becomes |t[a]|, the other way where t[a] < 0.
void tourner(Modele& m, std::size_t zone, const std::array<int, 3>& t);

enum class Fichiers { adf, hdf5 };
/// Conditions come in every form that means the same: by nodes or cell faces, as a range or a list,
/// with a type of their own or their family's.
/// A join called "seul..." is written on its own zone only, with the path to the other one.
void ecrire_cgns(const Modele& m, const std::string& fichier, Fichiers genre = Fichiers::adf);

}  // namespace topomine
