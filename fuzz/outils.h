#pragma once

#include <functional>
#include <iostream>
#include <sstream>
#include <string>

#include "tests/support/modele.h"

// What the targets share.

/// Says which promise was broken and ends the program.
[[noreturn]] void promesse_rompue(const char* fichier, int ligne, const char* expr);
#define PROMET(expr) ((expr) ? void(0) : promesse_rompue(__FILE__, __LINE__, #expr))

/// While it lives, standard output and error are caught instead of written.
class Ecoute {
 public:
  Ecoute();
  ~Ecoute();
  Ecoute(const Ecoute&) = delete;
  Ecoute& operator=(const Ecoute&) = delete;
  /// What was written since the last call.
  std::string sortie() { return prendre(sortie_); }
  std::string erreur() { return prendre(erreur_); }

 private:
  static std::string prendre(std::stringbuf& tampon);
  std::stringbuf sortie_, erreur_;
  std::streambuf* avant_sortie_;
  std::streambuf* avant_erreur_;
};

/// True when `action` returned, false when it met a structural fault, whose message must be there.
bool sans_faute(Ecoute& ecoute, const std::function<void()>& action);

/// Bit for bit, so that not-a-number equals itself and -0 is not 0.
bool memes_bits(double a, double b);
