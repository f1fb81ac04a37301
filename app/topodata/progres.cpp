#include "app/topodata/progres.h"

#include <unistd.h>

#include "app/topodata/console.h"

namespace topomine {

namespace {

/// Straight to the descriptor: one write per step, nothing left in a stream's buffer.
void ecrire_ligne(const std::string& texte) {
  const std::string ligne = "\r\033[K" + texte;
  if (write(STDERR_FILENO, ligne.data(), ligne.size()) < 0) {
    // A failed write cannot be reported.
  }
}

}  // namespace

Progres::Progres() : terminal_(isatty(STDERR_FILENO) == 1) {}

void Progres::etape(const std::string& texte) {
  constexpr std::chrono::seconds silence(1);
  if (!terminal_ || std::chrono::steady_clock::now() - debut_ < silence) return;
  ecrire_ligne(pour_lecteur(texte));
  visible_ = true;
}

void Progres::effacer() {
  if (visible_) ecrire_ligne("");
  visible_ = false;
}

void Progres::ecriture(const std::string& fichier) {
  if (fichier.empty() || fichier == "-")
    effacer();
  else
    etape("ecriture de " + fichier);
}

}  // namespace topomine
