#pragma once

#include <fstream>
#include <stdexcept>
#include <string>

namespace topomine {

/// Ends a command with its text as one line on standard error, and status 2.
struct Erreur : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where a command writes: standard output, or a file that is written all or nothing, in a
/// temporary file beside it that takes its place at the end. Without conclure(), or after a signal
/// that ends the program, the old file stays and nothing else is left behind. What is no regular
/// file (a device, a pipe) is written as it stands. Every operation that fails throws Erreur.
class Sortie {
 public:
  /// nom: the file; empty or "-" for standard output.
  explicit Sortie(const std::string& nom);
  ~Sortie();
  Sortie(const Sortie&) = delete;
  Sortie& operator=(const Sortie&) = delete;

  std::ostream& flux();
  /// The file that is really written; empty for standard output.
  const std::string& fichier() const { return provisoire_.empty() ? cible_ : provisoire_; }
  /// All is written: notices every write error up to here.
  void fermer();
  /// fermer(), then the new file takes the old one's place.
  void conclure();

 private:
  [[noreturn]] void echouer(int erreur) const;
  void creer_provisoire();

  std::string nom_;         // as the user gave it, for messages
  std::string cible_;       // behind symbolic links
  std::string provisoire_;  // empty when the target itself is written
  std::ofstream flux_;
  bool ferme_ = false;
};

}  // namespace topomine
