#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/base.h"
#include "base/fichiers.h"
#include "verifie/constat.h"

namespace topomine {

// A strict reading of a case, for people who repair it: it goes on after a fault, says each one
// with its place, and knows the line of everything it has read. It never writes on the consoles.

/// What could not be read of an entity.
enum Partie : unsigned { partie_liens = 1, partie_codes = 2, partie_valeurs = 4 };

/// The faces that share a slot of a block.
struct Partage {
  int numero;  ///< of the slot, from 1
  std::vector<int> faces;
};

/// A base as its files give it: no links, no classes, and an entity without a number is left out.
/// A slot that does not hold exactly one entity is 0 here.
struct CasLu {
  Base base;
  std::array<std::string, nb_fichiers> noms;
  std::array<bool, nb_fichiers> lus{};  ///< the document could be parsed and has its top element
  std::array<std::unordered_map<int, int>, nb_fichiers> lignes;  ///< number to line, by file
  std::map<std::string, int> lignes_pieces;                      ///< family to line
  std::map<std::string, int, std::less<>> lignes_avion;          ///< element to line
  std::vector<Constat> constats;

  // What has been said already, so that nothing is said of what follows from it.
  std::array<std::unordered_map<int, unsigned>, nb_fichiers> illisibles;  ///< number to its parts
  std::array<std::unordered_set<int>, nb_fichiers>
      disputes;                                  ///< numbers of several entities, or < 1
  std::map<int, std::vector<Partage>> partages;  ///< by block
  std::array<int, nb_fichiers> perdus{};  ///< entities that another replaces, or without a number

  bool illisible(Fichier f, int numero, unsigned partie) const;

  /// Line of an entity of one of the four mesh files; 1 when it is not there.
  int ligne(Fichier f, int numero) const;
  int ligne_avion(std::string_view element) const;
  void signaler(Code code, Fichier f, int ligne, const std::string& sorte,
                const std::string& numero, const std::string& quoi);
};

/// Reads the five files of a base.
CasLu lire_cas(const std::string& nom, const std::string& chemin, const std::string& mode);

/// climite.cfg as it stands in the file, without what the run makes of a faulty line.
struct ConfigLue {
  struct Ligne {
    int ligne;
    std::optional<int> bccode;
    std::string famille;
  };
  std::string nom;
  bool lue = false;  ///< there are rows to judge the cases by
  std::map<int, Ligne> codes;
  std::vector<Constat> constats;
};

ConfigLue lire_config(const std::string& chemin);

}  // namespace topomine
