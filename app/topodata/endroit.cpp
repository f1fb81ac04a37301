#include "app/topodata/endroit.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

#include "app/flux_standards.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

namespace fs = std::filesystem;

// A process runs one command: the files it reads and writes.
std::vector<Identite> entrees, sorties;

/// Whether a folder is the one where the system lists the process's own streams.
bool liste_les_flux(const fs::path& dossier) {
  std::error_code erreur;
  const fs::path ici = fs::canonical(dossier.empty() ? "." : dossier, erreur);
  if (erreur) return false;
  for (const char* nom : {"/proc/self/fd", "/proc/thread-self/fd"})
    if (const fs::path liste = fs::canonical(nom, erreur); !erreur && liste == ici) return true;
  return false;
}

}  // namespace

Endroit trouver_endroit(const std::string& nom) {
  Endroit e;
  if (nom.empty() || nom == "-") {
    e.flux = 1;
    return e;
  }
  fs::path chemin = nom;
  std::error_code erreur;
  constexpr int liens_max = 40;  // as the system has it: more are a loop
  for (int i = 0; i <= liens_max; ++i) {
    const std::string fin = chemin.filename().string();
    const auto flux = entier_strict(fin);
    if (flux && *flux >= 0 && std::to_string(*flux) == fin &&
        liste_les_flux(chemin.parent_path())) {
      e.flux = *flux;
      return e;
    }
    if (!fs::is_symlink(fs::symlink_status(chemin, erreur))) {
      e.nom = chemin.string();
      return e;
    }
    chemin = chemin.parent_path() / fs::read_symlink(chemin, erreur);
  }
  e.nom = nom;
  e.boucle = true;
  return e;
}

std::optional<Identite> Endroit::identite() const {
  struct stat etat {};
  if ((flux >= 0 ? fstat(flux, &etat) : stat(nom.c_str(), &etat)) == 0) {
    if (S_ISCHR(etat.st_mode)) return std::nullopt;
    return Identite{etat.st_dev, etat.st_ino, {}};
  }
  const fs::path chemin = nom;
  const std::string dossier = chemin.has_parent_path() ? chemin.parent_path().string() : ".";
  if (flux >= 0 || stat(dossier.c_str(), &etat) != 0) return std::nullopt;
  return Identite{etat.st_dev, etat.st_ino, chemin.filename().string()};
}

bool flux_recu(int numero) {
  // Files of ours close when another program is started; what was handed to us did not.
  const int drapeaux = fcntl(numero, F_GETFD);
  return drapeaux >= 0 && (drapeaux & FD_CLOEXEC) == 0 && !flux_etait_ferme(numero);
}

void inscrire_entree(const std::string& nom) {
  if (auto fichier = trouver_endroit(nom).identite()) entrees.push_back(std::move(*fichier));
}

bool est_une_entree(const Identite& fichier) {
  return std::ranges::find(entrees, fichier) != entrees.end();
}

bool Inscription::inscrire(const Identite& fichier) {
  if (std::ranges::find(sorties, fichier) != sorties.end()) return false;
  sorties.push_back(fichier);
  fichier_ = fichier;
  return true;
}

Inscription::~Inscription() {
  if (fichier_) std::erase(sorties, *fichier_);
}

}  // namespace topomine
