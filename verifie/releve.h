#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/base.h"

namespace topomine {

// A strict reading of a case, for those who mend it: it goes on after a fault, says each one with
// its place, and knows the line of everything it has read. It never writes on the consoles.

/// erreur: the table would be wrong, or not made at all. avertissement: odd but usable.
enum class Gravite { avertissement, erreur };

struct Constat {
  std::string fichier;
  int ligne = 1;
  std::string sorte;   ///< "bloc", "piece", "code" ..., "fichier" when it is all of the file
  std::string numero;  ///< what it is called: a number, "de rang 3", a name; may be empty
  std::string quoi;    ///< what is wrong
  std::string remede;  ///< what to do about it
  Gravite gravite = Gravite::erreur;
};

/// The files of a base, in the order in which they are read and reported.
enum Fichier { fic_def, fic_blck, fic_face, fic_edge, fic_vrtx, nb_fichiers };

/// A base as its files give it: no links, no classes, and an entity without a number is left out.
/// A slot that does not hold exactly one entity is 0 here.
struct Releve {
  Base base;
  std::array<std::string, nb_fichiers> noms;
  std::array<bool, nb_fichiers> lus{};  ///< the document could be parsed and has its top element
  std::array<std::unordered_map<int, int>, nb_fichiers> lignes;  ///< number to line, by file
  std::map<std::string, int> lignes_pieces;                      ///< family to line
  std::vector<Constat> constats;

  /// Line of an entity of one of the four mesh files; 1 when it is not there.
  int ligne(Fichier f, int numero) const;
  void signaler(Fichier f, int ligne, const std::string& sorte, const std::string& numero,
                const std::string& quoi, const std::string& remede,
                Gravite gravite = Gravite::erreur);
};

/// Reads the five files of a base.
Releve relever(const std::string& nom, const std::string& chemin, const std::string& mode);

/// climite.cfg as it stands in the file, without what the run makes of a faulty line.
struct ReleveConfig {
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

ReleveConfig relever_config(const std::string& chemin);

}  // namespace topomine
