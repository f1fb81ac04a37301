#include "app/topodata/progres.h"

#include <unistd.h>

#include <chrono>

namespace topomine {

namespace {

/// Straight to the descriptor: std::cerr may be diverted while a base is loaded.
void ecrire_ligne(const std::string& texte) {
  const std::string ligne = "\r\033[K" + texte;
  if (write(STDERR_FILENO, ligne.data(), ligne.size()) < 0) {
    // Nobody to tell.
  }
}

}  // namespace

Progres::Progres() : terminal_(isatty(STDERR_FILENO) == 1) {
  if (terminal_) fil_ = std::thread([this] { montrer(); });
}

Progres::~Progres() {
  if (!terminal_) return;
  {
    const std::lock_guard garde(verrou_);
    fini_ = true;
  }
  reveil_.notify_one();
  fil_.join();
}

void Progres::etape(const std::string& texte) {
  if (!terminal_) return;
  {
    const std::lock_guard garde(verrou_);
    texte_ = texte;
    change_ = true;
  }
  reveil_.notify_one();
}

void Progres::effacer() {
  if (!terminal_) return;
  const std::lock_guard garde(verrou_);
  texte_.clear();
  if (visible_) ecrire_ligne("");
  visible_ = false;
}

void Progres::ecriture(const std::string& fichier) {
  if (fichier.empty() || fichier == "-")
    effacer();
  else
    etape("ecriture de " + fichier);
}

void Progres::montrer() {
  std::unique_lock garde(verrou_);
  if (reveil_.wait_for(garde, std::chrono::seconds(1), [this] { return fini_; })) return;
  while (!fini_) {
    if (!texte_.empty()) {
      ecrire_ligne(texte_);
      visible_ = true;
    }
    change_ = false;
    reveil_.wait(garde, [this] { return fini_ || change_; });
  }
  if (visible_) ecrire_ligne("");
}

}  // namespace topomine
