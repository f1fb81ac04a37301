#include "app/topodata/depot.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "app/topodata/sortie.h"

namespace topomine {

namespace fs = std::filesystem;

namespace {

/// Blocks all signals but those that stop, continue or are ignored by default; `avant` keeps the
/// old mask.
void retenir_signaux(sigset_t& avant) {
  sigset_t ensemble;
  sigfillset(&ensemble);
  for (const int s : {SIGTSTP, SIGTTIN, SIGTTOU, SIGCONT, SIGCHLD, SIGWINCH, SIGURG})
    sigdelset(&ensemble, s);
  sigprocmask(SIG_BLOCK, &ensemble, &avant);
}

}  // namespace

Depot::Depot(const std::string& dossier, bool force) : dossier_(dossier) {
  struct stat etat {};
  remplace_ = lstat(dossier_.c_str(), &etat) == 0;
  if (remplace_ && !force)
    throw Erreur(dossier_ + " existe deja (--force pour en remplacer les fichiers)");
  if (remplace_ && !S_ISDIR(etat.st_mode)) throw Erreur(dossier_ + " n'est pas un dossier");
  const fs::path chemin(dossier_);
  std::string modele =
      (chemin.parent_path() / ("." + chemin.filename().string() + ".XXXXXX")).string();
  retenir_signaux(signaux_);
  if (!mkdtemp(modele.data())) {
    const int erreur = errno;
    sigprocmask(SIG_SETMASK, &signaux_, nullptr);
    echouer(dossier_, erreur);
  }
  provisoire_ = modele;
  static_cast<void>(chmod(provisoire_.c_str(), remplace_ ? etat.st_mode & 07777 : 0700));
}

Depot::~Depot() {
  if (!provisoire_.empty()) {
    std::error_code erreur;
    static_cast<void>(chmod(provisoire_.c_str(), 0700));  // it may be one that only allows reading
    fs::remove_all(provisoire_, erreur);
  }
  sigprocmask(SIG_SETMASK, &signaux_, nullptr);
}

void Depot::echouer(const std::string& quoi, int erreur) const {
  throw Erreur(quoi + " : ecriture impossible (" + std::strerror(erreur != 0 ? erreur : EIO) + ")");
}

void Depot::ecrire(const std::string& nom, const std::function<void(std::ostream&)>& remplir) {
  errno = 0;
  std::ofstream flux(provisoire_ + "/" + nom, std::ios::binary);
  if (flux) remplir(flux);
  flux.close();
  if (!flux) echouer(dossier_ + "/" + nom, errno);
  ecrits_.push_back(nom);
}

void Depot::preparer() {
  if (!remplace_) {
    // Not before all is in it: the user's mask may allow no more than reading.
    const mode_t masque = umask(0);
    umask(masque);
    static_cast<void>(chmod(provisoire_.c_str(), 0777 & ~masque));
    return;
  }
  std::error_code erreur;
  for (const fs::directory_entry& entree : fs::directory_iterator(dossier_, erreur)) {
    const std::string nom = entree.path().filename().string();
    if (std::ranges::find(ecrits_, nom) != ecrits_.end()) continue;
    if (!entree.is_regular_file() || entree.is_symlink())
      throw Erreur(dossier_ + " contient autre chose que des fichiers : " + nom);
    fs::create_hard_link(entree.path(), fs::path(provisoire_) / nom, erreur);
    if (erreur) fs::copy_file(entree.path(), fs::path(provisoire_) / nom, erreur);
    if (erreur) echouer(dossier_ + "/" + nom, erreur.value());
  }
  if (erreur) echouer(dossier_, erreur.value());
}

void Depot::publier() {
  if (!remplace_) {
    if (std::rename(provisoire_.c_str(), dossier_.c_str()) != 0) echouer(dossier_, errno);
    provisoire_.clear();
    return;
  }
  // The two folders change places; the old one is then removed as the temporary one.
  if (renameat2(AT_FDCWD, provisoire_.c_str(), AT_FDCWD, dossier_.c_str(), RENAME_EXCHANGE) == 0)
    return;
  const std::string ancien = provisoire_ + ".ancien";
  if (std::rename(dossier_.c_str(), ancien.c_str()) != 0) echouer(dossier_, errno);
  if (std::rename(provisoire_.c_str(), dossier_.c_str()) != 0) {
    const int erreur = errno;
    static_cast<void>(std::rename(ancien.c_str(), dossier_.c_str()));
    echouer(dossier_, erreur);
  }
  provisoire_ = ancien;
}

}  // namespace topomine
