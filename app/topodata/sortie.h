#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

#include "app/topodata/descripteur.h"
#include "app/topodata/endroit.h"

namespace topomine {

class Provisoire;

/// Ends a command with its text as one line on standard error, and status 2.
struct Erreur : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where a command writes: a stream that is open already (standard output, /dev/fd/N), at its
/// place, or a file that is written all or nothing, beside the old one until it takes its place.
/// Without conclure(), or after a signal that ends the program, the old file stays and nothing else
/// is left behind. What is no regular file (a device, a pipe) is written as it stands. A file that
/// the command reads, or writes already, is refused. Every operation that fails throws Erreur.
class Sortie {
 public:
  /// nom: the file; empty or "-" for standard output.
  explicit Sortie(const std::string& nom);
  ~Sortie();
  Sortie(const Sortie&) = delete;
  Sortie& operator=(const Sortie&) = delete;

  std::ostream& flux() { return flux_; }
  /// All is written: notices every write error up to here.
  void fermer();
  /// fermer(), then the new file takes the old one's place.
  void conclure();

 private:
  [[noreturn]] void echouer(int erreur) const;
  int ouvrir();

  std::string nom_;  // as the user gave it, for messages; empty for standard output
  Endroit endroit_;
  Inscription inscription_;
  std::unique_ptr<Provisoire> provisoire_;  // of a regular file
  Descripteur ouvert_;                      // of anything else
  TamponSortie tampon_;
  std::ostream flux_;
  bool ferme_ = false;
};

/// Standard output for readers: what `remplir` writes, line by line in their encoding.
void lister(const std::function<void(std::ostream&)>& remplir);

}  // namespace topomine
