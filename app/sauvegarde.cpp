#include "app/sauvegarde.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <sstream>

namespace topomine {

namespace {

/// Without O_NONBLOCK, opening a pipe would wait for its reader, for ever if need be. Only the
/// opening must not wait.
int ouvrir(const std::string& fichier, int creation) {
  constexpr int ecriture = O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const int f = open(fichier.c_str(), ecriture | creation, 0666);
  if (f >= 0) fcntl(f, F_SETFL, fcntl(f, F_GETFL) & ~O_NONBLOCK);
  return f;
}

/// A new file of the same folder, without a name as long as nothing is in it: a run that is ended
/// leaves none behind. -1 where the system has no such files, or something has the name.
int ouvrir_sans_nom(const std::string& fichier) {
  struct stat etat {};
  if (lstat(fichier.c_str(), &etat) == 0 || errno != ENOENT) return -1;
  const std::string dossier = std::filesystem::path(fichier).parent_path().string();
  return open(dossier.empty() ? "." : dossier.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
}

bool nommer(int f, const std::string& fichier) {
  const std::string ici = "/proc/self/fd/" + std::to_string(f);
  return linkat(AT_FDCWD, ici.c_str(), AT_FDCWD, fichier.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// Whether a regular file can take so many bytes. Where the system cannot say, it can.
bool place_pour(int f, off_t taille) {
  rlimit limite{};
  if (getrlimit(RLIMIT_FSIZE, &limite) == 0 && limite.rlim_cur != RLIM_INFINITY &&
      limite.rlim_cur < static_cast<rlim_t>(taille))
    return false;
  return fallocate(f, FALLOC_FL_KEEP_SIZE, 0, taille) == 0 ||
         (errno != ENOSPC && errno != EDQUOT && errno != EFBIG);
}

bool ecrire(int f, const std::string& texte) {
  struct stat etat {};
  const bool fichier = fstat(f, &etat) == 0 && S_ISREG(etat.st_mode);
  if (fichier && !place_pour(f, static_cast<off_t>(texte.size()))) return false;
  // Over the old text and then cut to its length: the file is never empty in between.
  std::size_t ecrits = 0;
  while (ecrits < texte.size()) {
    const ssize_t n = write(f, texte.data() + ecrits, texte.size() - ecrits);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    ecrits += static_cast<std::size_t>(n);
  }
  const bool coupe = !fichier || ftruncate(f, static_cast<off_t>(ecrits)) == 0;
  return coupe && ecrits == texte.size();
}

}  // namespace

bool sauvegarder(const BaseBuffer& table, const std::string& fichier) {
  int f = ouvrir(fichier, 0);
  bool sans_nom = false;
  if (f < 0 && errno == ENOENT) {
    f = ouvrir_sans_nom(fichier);
    sans_nom = f >= 0;
    if (!sans_nom) f = ouvrir(fichier, O_CREAT);
  }
  if (f < 0) return false;
  std::ostringstream matrice;
  table.mat_cov(matrice);
  const std::string texte = matrice.str();
  bool ecrit = matrice.good() && ecrire(f, texte);
  if (ecrit && sans_nom && !nommer(f, fichier)) {
    // Another process created the file meanwhile, or there is no /proc.
    const int g = ouvrir(fichier, O_CREAT);
    ecrit = g >= 0 && ecrire(g, texte);
    if (g >= 0) ecrit = close(g) == 0 && ecrit;
  }
  return close(f) == 0 && ecrit;
}

}  // namespace topomine
