#include "app/topodata/gnuplot.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "app/topodata/sortie.h"

namespace topomine {

namespace {

constexpr int introuvable = 127;

using Fichier = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// A file without a name.
Fichier anonyme() {
  Fichier f(std::tmpfile(), &std::fclose);
  if (!f) throw Erreur("fichier temporaire impossible a creer");
  return f;
}

/// In the child: descriptors in place, then gnuplot. There is no shell in between.
[[noreturn]] void devenir_gnuplot(int entree, int sortie, int erreurs) {
  if (sortie >= 0 && dup2(entree, STDIN_FILENO) >= 0 && dup2(sortie, STDOUT_FILENO) >= 0 &&
      dup2(erreurs, STDERR_FILENO) >= 0)
    execlp("gnuplot", "gnuplot", "-", static_cast<char*>(nullptr));
  _exit(introuvable);
}

/// The first line that is not a mere warning.
std::string plainte(std::FILE* f) {
  std::rewind(f);
  std::string ligne;
  for (int c = 0; c != EOF;) {
    c = std::fgetc(f);
    if (c != '\n' && c != EOF) {
      ligne += static_cast<char>(c);
      continue;
    }
    ligne.erase(0, ligne.find_first_not_of(' '));
    if (!ligne.empty() && ligne.find("arning") == std::string::npos) break;
    ligne.clear();
  }
  return ligne;
}

}  // namespace

void dessiner(const std::string& script, const std::string& image) {
  const Fichier entree = anonyme(), erreurs = anonyme();
  if (std::fwrite(script.data(), 1, script.size(), entree.get()) != script.size() ||
      std::fflush(entree.get()) != 0)
    throw Erreur("fichier temporaire impossible a ecrire");
  std::rewind(entree.get());

  const pid_t enfant = fork();
  if (enfant < 0) throw Erreur("gnuplot impossible a lancer");
  if (enfant == 0)
    devenir_gnuplot(fileno(entree.get()), open(image.c_str(), O_WRONLY | O_TRUNC),
                    fileno(erreurs.get()));
  int etat = 0;
  while (waitpid(enfant, &etat, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(etat) && WEXITSTATUS(etat) == introuvable)
    throw Erreur(
        "gnuplot n'est pas installe (paquet Debian : gnuplot-nox) ; sans lui il n'y a pas "
        "d'image, seulement la matrice en csv");
  // What it writes counts only then: warnings of cells without a number, or of missing fonts, do
  // not keep it from drawing.
  std::error_code erreur;
  const auto taille = std::filesystem::file_size(image, erreur);
  if (WIFEXITED(etat) && WEXITSTATUS(etat) == 0 && !erreur && taille > 0) return;
  const std::string dit = plainte(erreurs.get());
  throw Erreur(dit.empty() ? "gnuplot a echoue" : "gnuplot a echoue : " + dit);
}

}  // namespace topomine
