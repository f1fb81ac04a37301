#pragma once

#include <csignal>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace topomine {

/// A folder that is filled out of sight, beside its place, and takes it whole or not at all. When
/// it is not published nothing of it stays behind. Signals that would end the program wait as long
/// as it lives. Every operation that fails throws Erreur.
class Depot {
 public:
  /// dossier: the folder to make. It may be there only with `force`: its other files are kept then.
  Depot(const std::string& dossier, bool force);
  ~Depot();
  Depot(const Depot&) = delete;
  Depot& operator=(const Depot&) = delete;

  void ecrire(const std::string& nom, const std::function<void(std::ostream&)>& remplir);
  /// Everything that can fail, but for the change of place itself.
  void preparer();
  /// Prepared before.
  void publier();

 private:
  [[noreturn]] void echouer(const std::string& quoi, int erreur) const;

  std::string dossier_;
  std::string provisoire_;  // empty once published
  bool remplace_;
  std::vector<std::string> ecrits_;
  sigset_t signaux_{};  // those that were held back before
};

}  // namespace topomine
