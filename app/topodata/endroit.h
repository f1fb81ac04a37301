#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace topomine {

/// Which file a name or a stream stands for, under whatever spelling: the file itself, or the place
/// in a folder where it is to be.
struct Identite {
  dev_t appareil;
  ino_t numero;
  std::string nom;  ///< of a file that is not there yet, within the folder that the numbers tell
  bool operator==(const Identite&) const = default;
};

/// What a name leads to.
struct Endroit {
  std::string nom;      ///< behind symbolic links; empty for a stream
  int flux = -1;        ///< of this process, as /dev/stdout, /dev/fd/N and /proc/self/fd/N name it
  bool boucle = false;  ///< the links lead nowhere

  /// Nothing for a device (several outputs may share one), and where there is no folder.
  std::optional<Identite> identite() const;
};

/// Empty and "-" are standard output.
Endroit trouver_endroit(const std::string& nom);

/// A stream that was open when the program was started: not one of its own files.
bool flux_recu(int numero);

/// The command reads this file from now on: it is no output of its own.
void inscrire_entree(const std::string& nom);
bool est_une_entree(const Identite& fichier);

/// Holds a file as one that the command writes, as long as it lives.
class Inscription {
 public:
  Inscription() = default;
  ~Inscription();
  Inscription(const Inscription&) = delete;
  Inscription& operator=(const Inscription&) = delete;
  /// False when it is one already.
  bool inscrire(const Identite& fichier);

 private:
  std::optional<Identite> fichier_;
};

}  // namespace topomine
