#include "app/topodata/provisoire.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace topomine {

namespace {

/// No signal comes as long as it lives.
class SansSignaux {
 public:
  SansSignaux() {
    sigset_t tous;
    sigfillset(&tous);
    sigprocmask(SIG_BLOCK, &tous, &avant_);
  }
  ~SansSignaux() { sigprocmask(SIG_SETMASK, &avant_, nullptr); }
  SansSignaux(const SansSignaux&) = delete;
  SansSignaux& operator=(const SansSignaux&) = delete;

 private:
  sigset_t avant_{};
};

// The files that have a name, for the signals that end the program. Changed without signals only.
Provisoire* premier = nullptr;

[[noreturn]] void echouer() {
  throw std::system_error(errno, std::generic_category());
}

}  // namespace

void effacer_provisoires() {
  for (const Provisoire* p = premier; p; p = p->suivant_)
    unlinkat(p->dossier_.numero(), p->nom_.data(), 0);
}

namespace {

extern "C" void effacer_et_finir(int numero) {
  effacer_provisoires();
  static_cast<void>(std::signal(numero, SIG_DFL));
  static_cast<void>(std::raise(numero));
}

/// For every signal that would end the program.
void guetter_les_signaux() {
  static bool fait = false;
  if (std::exchange(fait, true)) return;
  constexpr int sans_fin[]{SIGKILL,  SIGSTOP, SIGCHLD, SIGCONT, SIGURG,
                           SIGWINCH, SIGTSTP, SIGTTIN, SIGTTOU};
  for (int numero = 1; numero <= SIGRTMAX; ++numero) {
    struct sigaction avant {
    }, action{};
    if (std::ranges::find(sans_fin, numero) != std::end(sans_fin) ||
        sigaction(numero, nullptr, &avant) != 0 || avant.sa_handler != SIG_DFL)
      continue;
    action.sa_handler = effacer_et_finir;
    sigfillset(&action.sa_mask);
    sigaction(numero, &action, nullptr);
  }
}

/// The old file's owner, group and rights; false when owner or group could not be kept.
bool reprendre_droits(int fichier, const struct stat& ancien) {
  struct stat neuf {};
  if (fstat(fichier, &neuf) != 0) echouer();
  mode_t droits = ancien.st_mode & 0777;
  bool garde = (neuf.st_uid == ancien.st_uid && neuf.st_gid == ancien.st_gid) ||
               fchown(fichier, ancien.st_uid, ancien.st_gid) == 0;
  if (!garde && fchown(fichier, static_cast<uid_t>(-1), ancien.st_gid) != 0)
    droits &= 0707 | (droits & 07) << 3;  // another group may do no more than everyone
  if (fchmod(fichier, droits) != 0) {
    // Only its rights differ then: not worth failing for.
  }
  return garde;
}

}  // namespace

Provisoire::Provisoire(const std::string& cible) {
  const std::filesystem::path chemin = cible;
  cible_ = chemin.filename().string();
  const std::string dossier = chemin.has_parent_path() ? chemin.parent_path().string() : ".";
  dossier_ = Descripteur(open(dossier.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!dossier_) echouer();
  struct stat etat {};
  const bool existe = fstatat(dossier_.numero(), cible_.c_str(), &etat, 0) == 0;
  // Nobody else may read what replaces a file before it has that file's rights.
  const mode_t droits = existe ? 0600 : 0666;
  if (access("/proc/self/fd", X_OK) == 0)
    fichier_ =
        Descripteur(openat(dossier_.numero(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, droits));
  if (fichier_) return;
  guetter_les_signaux();
  const SansSignaux retenus;
  do {
    nommer();
    fichier_ = Descripteur(openat(dossier_.numero(), nom_.data(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, droits));
  } while (!fichier_ && errno == EEXIST);
  if (!fichier_) echouer();
  suivant_ = std::exchange(premier, this);
}

Provisoire::~Provisoire() {
  if (nom_[0] == '\0') return;
  const SansSignaux retenus;
  unlinkat(dossier_.numero(), nom_.data(), 0);
  oublier();
}

/// A name that no other file has yet, as far as this program knows.
void Provisoire::nommer() {
  static int numero = 0;
  static_cast<void>(std::snprintf(nom_.data(), nom_.size(), ".topodata-%ld-%d",
                                  static_cast<long>(getpid()), ++numero));
}

void Provisoire::oublier() {
  nom_[0] = '\0';
  for (Provisoire** p = &premier; *p; p = &(*p)->suivant_)
    if (*p == this) {
      *p = suivant_;
      return;
    }
}

bool Provisoire::placer() {
  struct stat etat {};
  const int dossier = dossier_.numero();
  const bool existe = fstatat(dossier, cible_.c_str(), &etat, 0) == 0;
  const bool garde = !existe || reprendre_droits(fichier_.numero(), etat);
  const std::string ici = "/proc/self/fd/" + std::to_string(fichier_.numero());
  const auto lier = [&](const char* nom) {
    return linkat(AT_FDCWD, ici.c_str(), dossier, nom, AT_SYMLINK_FOLLOW) == 0;
  };
  const SansSignaux retenus;
  if (nom_[0] == '\0') {
    if (!existe && lier(cible_.c_str())) return garde;
    // A name that is taken is replaced by a rename only.
    bool lie;
    do nommer();
    while (!(lie = lier(nom_.data())) && errno == EEXIST);
    if (!lie) {
      nom_[0] = '\0';
      echouer();
    }
  }
  if (renameat(dossier, nom_.data(), dossier, cible_.c_str()) != 0) {
    const int erreur = errno;
    unlinkat(dossier, nom_.data(), 0);
    oublier();
    throw std::system_error(erreur, std::generic_category());
  }
  oublier();
  return garde;
}

}  // namespace topomine
