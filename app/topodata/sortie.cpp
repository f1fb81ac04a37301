#include "app/topodata/sortie.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace topomine {

namespace {

// The temporary files under way, for the signals that end the program: plain memory, since nothing
// else may be touched there.
std::array<std::array<char, PATH_MAX>, 2> en_cours{};

extern "C" void effacer_et_finir(int numero) {
  for (const auto& nom : en_cours)
    if (nom[0] != '\0') unlink(nom.data());
  static_cast<void>(std::signal(numero, SIG_DFL));
  static_cast<void>(std::raise(numero));
}

void inscrire(const std::string& nom) {
  for (auto& place : en_cours) {
    if (place[0] != '\0' || nom.size() >= place.size()) continue;
    // Its first byte last: a signal in between finds no name, not a part of one.
    nom.copy(place.data() + 1, nom.size() - 1, 1);
    std::atomic_signal_fence(std::memory_order_release);
    place[0] = nom[0];
    for (const int numero : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
      if (std::signal(numero, effacer_et_finir) == SIG_IGN)
        static_cast<void>(std::signal(numero, SIG_IGN));
    return;
  }
}

void rayer(const std::string& nom) {
  for (auto& place : en_cours)
    if (nom == place.data()) place.fill('\0');
}

/// Rights of the new file: the old one's, or those of any file that is created.
mode_t droits(const std::string& cible) {
  struct stat etat {};
  if (stat(cible.c_str(), &etat) == 0) return etat.st_mode & 07777;
  const mode_t masque = umask(0);
  umask(masque);
  return 0666 & ~masque;
}

/// The file that symbolic links lead to, there or not yet.
std::string derriere_les_liens(std::filesystem::path nom) {
  namespace fs = std::filesystem;
  std::error_code erreur;
  constexpr int liens_max = 40;  // as the system has it: more are a loop
  for (int i = 0; i < liens_max && fs::is_symlink(fs::symlink_status(nom, erreur)); ++i)
    nom = nom.parent_path() / fs::read_symlink(nom, erreur);
  return nom.string();
}

}  // namespace

Sortie::Sortie(const std::string& nom) : nom_(nom == "-" ? "" : nom), cible_(nom_) {
  errno = 0;  // what it holds when a write has failed is that write's
  if (nom_.empty()) return;
  namespace fs = std::filesystem;
  std::error_code erreur;
  const fs::file_status etat = fs::status(nom_, erreur);
  if (erreur == std::errc::too_many_symbolic_link_levels) echouer(ELOOP);
  if (fs::is_directory(etat)) echouer(EISDIR);
  if (!fs::exists(etat) || fs::is_regular_file(etat)) {
    cible_ = derriere_les_liens(nom_);
    if (fs::exists(etat) && access(cible_.c_str(), W_OK) != 0) echouer(errno);
    creer_provisoire();
  }
  flux_.open(fichier(), std::ios::out | std::ios::binary);
  if (!flux_) echouer(errno);
  errno = 0;
}

Sortie::~Sortie() {
  if (provisoire_.empty()) return;
  unlink(provisoire_.c_str());
  rayer(provisoire_);
}

void Sortie::creer_provisoire() {
  std::string modele = cible_ + ".XXXXXX";
  const int descripteur = mkstemp(modele.data());
  if (descripteur < 0) echouer(errno);
  provisoire_ = modele;
  inscrire(provisoire_);
  if (fchmod(descripteur, droits(cible_)) != 0) {
    // Only its rights differ then: not worth failing for.
  }
  close(descripteur);
}

void Sortie::echouer(int erreur) const {
  throw Erreur((nom_.empty() ? "sortie standard" : nom_) + " : ecriture impossible (" +
               std::strerror(erreur) + ")");
}

std::ostream& Sortie::flux() {
  return nom_.empty() ? std::cout : flux_;
}

void Sortie::fermer() {
  if (ferme_) return;
  ferme_ = true;
  flux().flush();
  const bool ecrit = flux().good();
  const int erreur = errno != 0 ? errno : EIO;
  if (!nom_.empty()) flux_.close();
  if (!ecrit || !flux().good()) echouer(erreur);
}

void Sortie::conclure() {
  fermer();
  if (provisoire_.empty()) return;
  if (std::rename(provisoire_.c_str(), cible_.c_str()) != 0) echouer(errno);
  rayer(provisoire_);
  provisoire_.clear();
}

}  // namespace topomine
