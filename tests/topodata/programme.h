#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "dataset/basebuffer.h"

/// What the program did with a command line.
struct Resultat {
  int statut = -1;  ///< exit status, or minus the signal that ended it
  std::string sortie, erreurs;
};

/// Runs topodata; `avant` prepares the child just before.
Resultat topodata(
    const std::vector<std::string>& arguments, const std::function<void()>& avant = [] {});

std::string lire(const std::filesystem::path& fichier);
void ecrire(const std::filesystem::path& fichier, const std::string& texte);

/// A folder of its own, gone at the end, with a fresh collection of make_cases in "cas/".
class Collection {
 public:
  Collection();
  ~Collection();
  Collection(const Collection&) = delete;
  Collection& operator=(const Collection&) = delete;

  std::string cas() const { return dossier / "cas/"; }
  /// Replaces the first match of a regular expression in a file of the collection; false without
  /// one.
  bool changer(const std::string& fichier, const std::string& motif,
               const std::string& texte) const;
  /// The table of these bases, made by the library.
  BaseBuffer table(const std::vector<std::string>& bases) const;

  std::filesystem::path dossier;
};
