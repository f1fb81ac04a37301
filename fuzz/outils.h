#pragma once

#include <functional>
#include <iostream>
#include <sstream>
#include <string>

#include "base/lecture/journal.h"
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

/// Keeps all that is said; a structural fault is thrown.
class JournalEssai final : public topomine::Journal {
 public:
  void ouverture(const std::string& fichier) override { dit += fichier; }
  void illisible(const std::string& fichier, bool /*ligne_neuve*/) override { dit += fichier; }
  void trace(std::string_view ligne) override { (dit += ligne) += '\n'; }
  void avertissement(std::string_view ligne) override { (dit += ligne) += '\n'; }
  void echec(std::string_view ligne) override { (dit += ligne) += '\n'; }
  void faute(const topomine::Faute& faute) override;

  std::string dit;
};

/// True when `action` returned, false when it met a structural fault.
bool sans_faute(const std::function<void()>& action);

/// Bit for bit, so that not-a-number equals itself and -0 is not 0.
bool memes_bits(double a, double b);
