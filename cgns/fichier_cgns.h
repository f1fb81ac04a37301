#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "cgns/structure.h"

namespace topomine {

/// A CGNS file under reading. Every operation throws MaillageRefuse for what it cannot read.
class FichierCgns {
 public:
  /// base: name of the base to read; empty when the file has only one.
  FichierCgns(const std::string& fichier, const std::string& base);
  ~FichierCgns();
  FichierCgns(const FichierCgns&) = delete;
  FichierCgns& operator=(const FichierCgns&) = delete;

  /// Zones, in the file's order, joins and conditions of the base.
  Structure structure();
  /// Coordinates of the nodes of one of these zones, i fastest, into three arrays of its size.
  void coordonnees(std::size_t zone, const Ijk& taille,
                   const std::array<std::span<double>, 3>& xyz) const;

 private:
  void choisir_base(const std::string& nom);
  Zone zone(int z) const;
  /// That the coordinates of a zone are in, a name of the library; empty when the file does not
  /// say.
  std::string unite_de_longueur(int z) const;
  bool a_coordonnee(int z, const char* nom) const;
  std::map<std::string, std::size_t> ordre_des_noeuds() const;

  int fichier_{}, base_{};
  std::string nom_base_;
  std::vector<int> numeros_;  // of the library, per zone
  std::vector<std::string> noms_;
};

}  // namespace topomine
