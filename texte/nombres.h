#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <string_view>

namespace topomine {

/// Text to number, the one place. The meaning is that of a single std::stringstream per operation,
/// appended to, never emptied, its error state cleared before each read: what a read does not take
/// ("a" of "12a", ",5" of "1,5" read as an integer) stays ahead of the next text and can spoil it.
/// A text that does not parse (overflow included) leaves the previous number of its kind in place,
/// 0 at first. Numbers are read as in the "C" locale, whatever the global one.
class FluxNombres {
 public:
  /// Decimal int: leading blanks skipped, longest valid prefix.
  int entier(std::string_view texte) {
    if (!reste_ && chiffre_seul(texte))
      entier_ = texte[0] - '0';
    else
      lire(texte, entier_);
    return entier_;
  }

  /// Decimal double, in the same way. "inf" and "nan" are no numbers; a value too small for a
  /// double reads as 0.
  double reel(std::string_view texte) {
    if (!reste_ && chiffre_seul(texte))
      reel_ = texte[0] - '0';
    else
      lire(texte, reel_);
    return reel_;
  }

  /// First non-blank character; '\0' until one has been read.
  char caractere(std::string_view texte) {
    lire_flux(texte, caractere_);
    return caractere_;
  }

 private:
  static bool chiffre_seul(std::string_view texte) {
    return texte.size() == 1 && texte[0] >= '0' && texte[0] <= '9';
  }
  void lire(std::string_view texte, int& valeur);
  void lire(std::string_view texte, double& valeur);
  template <class T>
  void lire_flux(std::string_view texte, T& valeur);

  int entier_ = 0;
  double reel_ = 0.0;
  char caractere_ = '\0';
  bool reste_ = false;                       // characters are left over from earlier texts
  std::unique_ptr<std::stringstream> flux_;  // made when a text first needs it
};

/// True when the text is wholly one real number, and so reads the same whatever came before it.
bool est_un_reel(std::string_view texte);

/// Number to text as a default-formatted stream writes it, appended to `texte`: six significant
/// digits, the shorter of fixed and exponent notation, no trailing zeros.
void ajouter_nombre(std::string& texte, double valeur);
void ajouter_nombre(std::string& texte, int valeur);

}  // namespace topomine
