#pragma once

#include <array>
#include <string>

#include "app/topodata/descripteur.h"

namespace topomine {

/// A file under way beside the one whose place it is to take: without a name where the system can
/// do that, under a short one otherwise. Whatever ends the program before, an error or a signal,
/// nothing of it stays. Operations that fail throw std::system_error.
class Provisoire {
 public:
  /// cible: a regular file, there or not yet, behind any symbolic link.
  explicit Provisoire(const std::string& cible);
  ~Provisoire();
  Provisoire(const Provisoire&) = delete;
  Provisoire& operator=(const Provisoire&) = delete;

  int descripteur() const { return fichier_.numero(); }
  /// Takes the target's place, with the old file's owner, group and rights (but for set-id bits).
  /// False when owner or group could not be kept.
  bool placer();

 private:
  friend void effacer_provisoires();
  void nommer();
  void oublier();

  std::string cible_;  // within dossier_
  Descripteur dossier_, fichier_;
  std::array<char, 64> nom_{};     // within dossier_; empty without a name
  Provisoire* suivant_ = nullptr;  // of those with a name
};

}  // namespace topomine
