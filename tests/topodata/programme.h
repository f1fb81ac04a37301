#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "dataset/basebuffer.h"
#include "tests/support/dossier.h"
#include "tests/support/execution.h"

/// Runs topodata in the C locale; `preparer` is called in the new process.
Resultat topodata(
    const std::vector<std::string>& arguments, const std::function<void()>& preparer = [] {});
/// The same, on a disk that takes no file of more than a kilobyte, as far as it can tell.
Resultat topodata_disque_plein(std::vector<std::string> arguments);

std::string lire(const std::filesystem::path& fichier);
void ecrire(const std::filesystem::path& fichier, const std::string& texte);

/// A folder of its own, gone at the end, with a fresh collection of make_cases in "cas/".
class Collection {
 public:
  Collection();

  std::string cas() const { return dossier / "cas/"; }
  /// Replaces the first match of a regular expression in a file of the collection; false without
  /// one.
  bool changer(const std::string& fichier, const std::string& motif,
               const std::string& texte) const;
  /// The table of these bases, made by the library.
  BaseBuffer table(const std::vector<std::string>& bases) const;

 private:
  Dossier temporaire_;

 public:
  const std::filesystem::path dossier{temporaire_.chemin()};
};

/// Replays whole commands, by a shell, and compares all that they say and their statuses other than
/// 0. Each case has an empty folder but for cas, the sample cases, reels, the real ones, and
/// modeles, what is in the folder of that name of the collection; what gnuplot would be given is
/// drawn as text.
void rejouer_sessions(const Collection& collection, const std::string& fichier);
