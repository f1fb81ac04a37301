#pragma once

#include <sstream>
#include <string_view>

/// The conversion in its slow and literal form: one stream, appended to, cleared before each read.
class Modele {
 public:
  int entier(std::string_view texte) { return lire(texte, entier_); }
  double reel(std::string_view texte) { return lire(texte, reel_); }
  char caractere(std::string_view texte) { return lire(texte, caractere_); }

 private:
  template <class T>
  T lire(std::string_view texte, T& valeur) {
    flux_.clear();
    flux_ << texte;
    if (T lu{}; flux_ >> lu) valeur = lu;
    return valeur;
  }
  std::stringstream flux_;
  int entier_ = 0;
  double reel_ = 0.0;
  char caractere_ = '\0';
};
