#include "app/topodata/gnuplot.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "app/topodata/descripteur.h"
#include "app/topodata/sortie.h"
#include "texte/affichable.h"

namespace topomine {

namespace {

using Bouts = std::pair<Descripteur, Descripteur>;  // ours, gnuplot's

Bouts paire(int fait, const std::array<int, 2>& bouts) {
  if (fait != 0) throw Erreur(std::string("gnuplot impossible a lancer : ") + std::strerror(errno));
  return {Descripteur(bouts[0]), Descripteur(bouts[1])};
}

/// gnuplot reads from a socket: a pipe without a reader would end this program.
Bouts vers_gnuplot() {
  std::array<int, 2> bouts{};
  return paire(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, bouts.data()), bouts);
}

Bouts de_gnuplot() {
  std::array<int, 2> bouts{};
  return paire(pipe2(bouts.data(), O_CLOEXEC), bouts);
}

/// The environment without what gnuplot would take its settings from.
std::vector<char*> environnement() {
  static char langue[] = "LC_ALL=C";
  std::vector<char*> variables{langue};
  for (char** v = environ; *v; ++v) {
    const std::string_view variable = *v;
    bool reglage = false;
    for (const char* debut : {"GNU", "GDFONTPATH=", "FIT_", "LC_ALL="})
      reglage = reglage || variable.starts_with(debut);
    if (!reglage) variables.push_back(*v);
  }
  variables.push_back(nullptr);
  return variables;
}

pid_t lancer(int entree, int sortie, int erreurs) {
  posix_spawn_file_actions_t places;
  posix_spawnattr_t attributs;
  posix_spawn_file_actions_init(&places);
  posix_spawnattr_init(&attributs);
  posix_spawn_file_actions_adddup2(&places, entree, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&places, sortie, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&places, erreurs, STDERR_FILENO);
  sigset_t usuels;  // default action again, whatever this process set
  sigemptyset(&usuels);
  sigaddset(&usuels, SIGPIPE);
  sigaddset(&usuels, SIGXFSZ);
  posix_spawnattr_setsigdefault(&attributs, &usuels);
  posix_spawnattr_setflags(&attributs, POSIX_SPAWN_SETSIGDEF);
  std::string nom = "gnuplot", reglages = "-d", flux = "-";
  const std::array<char*, 4> mots{nom.data(), reglages.data(), flux.data(), nullptr};
  pid_t enfant = -1;
  const int erreur =
      posix_spawnp(&enfant, nom.c_str(), &places, &attributs, mots.data(), environnement().data());
  posix_spawn_file_actions_destroy(&places);
  posix_spawnattr_destroy(&attributs);
  if (erreur == ENOENT)
    throw Erreur(
        "gnuplot n'est pas installe (paquet Debian : gnuplot-nox) ; sans lui il n'y a pas "
        "d'image");
  if (erreur != 0)
    throw Erreur(std::string("gnuplot impossible a lancer : ") + std::strerror(erreur));
  return enfant;
}

/// Appends what has come; closes at the end of it.
void recevoir(Descripteur& bout, std::string& texte) {
  std::array<char, 1 << 16> tampon;
  const ssize_t n = read(bout.numero(), tampon.data(), tampon.size());
  if (n > 0)
    texte.append(tampon.data(), static_cast<std::size_t>(n));
  else if (n == 0 || errno != EINTR)
    bout.fermer();
}

/// Hands the script out as it is read, and takes in what comes, until both ends are closed.
void dialoguer(std::string_view script, Descripteur entree, Descripteur& sortie,
               Descripteur& erreurs, std::string& image, std::string& dit) {
  while (sortie || erreurs) {
    if (script.empty()) entree.fermer();
    std::array<pollfd, 3> attente{{{entree.numero(), POLLOUT, 0},
                                   {sortie.numero(), POLLIN, 0},
                                   {erreurs.numero(), POLLIN, 0}}};
    if (poll(attente.data(), attente.size(), -1) < 0) continue;  // a signal came
    if (attente[0].revents != 0) {
      const ssize_t n =
          send(entree.numero(), script.data(), script.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (n > 0)
        script.remove_prefix(static_cast<std::size_t>(n));
      else if (errno != EINTR && errno != EAGAIN)
        script = {};  // it reads no more
    }
    if (attente[1].revents != 0) recevoir(sortie, image);
    if (attente[2].revents != 0) recevoir(erreurs, dit);
  }
}

/// The first line that is not a mere warning.
std::string plainte(std::string_view dit) {
  while (!dit.empty()) {
    std::string_view ligne = dit.substr(0, dit.find('\n'));
    dit.remove_prefix(std::min(dit.size(), ligne.size() + 1));
    ligne.remove_prefix(std::min(ligne.size(), ligne.find_first_not_of(' ')));
    if (!ligne.empty() && ligne.find("arning") == std::string_view::npos)
      return " : " + std::string(ligne);
  }
  return {};
}

/// To its last byte: a disk without room, or an end before its time, leaves a part.
bool entiere(std::string_view image) {
  constexpr std::string_view debut_png = "\x89PNG\r\n\x1A\n", fin_png = "IEND\xAE\x42\x60\x82";
  if (image.starts_with(debut_png)) return image.ends_with(fin_png);
  image = image.substr(0, image.find_last_not_of(" \r\n") + 1);
  return image.find("<svg") != std::string_view::npos && image.ends_with("</svg>");
}

}  // namespace

std::string dessiner(const std::string& script) {
  Bouts entree = vers_gnuplot(), sortie = de_gnuplot(), erreurs = de_gnuplot();
  const pid_t enfant =
      lancer(entree.second.numero(), sortie.second.numero(), erreurs.second.numero());
  for (Bouts* bouts : {&entree, &sortie, &erreurs}) bouts->second.fermer();
  std::string image, dit;
  dialoguer("set encoding utf8\n" + en_utf8(script), std::move(entree.first), sortie.first,
            erreurs.first, image, dit);
  int etat{};
  while (waitpid(enfant, &etat, 0) < 0 && errno == EINTR) {
  }
  // Its messages matter only if it failed: warnings also come with a good picture.
  if (!WIFEXITED(etat) || WEXITSTATUS(etat) != 0) throw Erreur("gnuplot a echoue" + plainte(dit));
  if (!entiere(image)) throw Erreur("gnuplot a echoue, son image est incomplete" + plainte(dit));
  return image;
}

}  // namespace topomine
