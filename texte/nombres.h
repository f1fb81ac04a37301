#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace topomine {

/// Texts to numbers. The meaning is that of a single std::stringstream per operation, appended to,
/// never emptied, its error state cleared before each read: what a read does not take ("a" of
/// "12a", ",5" of "1,5" read as an integer) stays ahead of the next text and can spoil it. A text
/// that does not parse (overflow included) leaves the previous number of its kind in place, 0 at
/// first. Numbers are read as in the "C" locale, whatever the global one.
/// What is left unread is not copied: each text stays where it is as long as this object lives.
class FluxNombres {
 public:
  FluxNombres();
  ~FluxNombres();
  FluxNombres(const FluxNombres&) = delete;
  FluxNombres& operator=(const FluxNombres&) = delete;

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

  /// True when no text read so far changes how the next ones are read.
  bool sans_reste() const { return !reste_; }
  /// True when what is left unread begins with what no number begins with: every read fails from
  /// now on.
  bool bouche() const { return bouche_; }

 private:
  struct Flux;
  /// Most numbers of a case: 1.3 % of the instructions of a run.
  static bool chiffre_seul(std::string_view texte) {
    return texte.size() == 1 && texte[0] >= '0' && texte[0] <= '9';
  }
  void lire(std::string_view texte, int& valeur);
  void lire(std::string_view texte, double& valeur);
  template <class T>
  void lire_flux(std::string_view texte, T& valeur);

  int entier_ = 0;
  double reel_ = 0.0;
  bool reste_ = false;  // characters other than blanks are left over from earlier texts
  bool bouche_ = false;
  std::unique_ptr<Flux> flux_;  // made when a text first needs it
};

/// Texts to characters, one each, in the same way: of "HO" the O is what the next text gives.
class FluxCaracteres {
 public:
  /// First non-blank character of what is left; the previous one, '\0' at first, when there is
  /// none.
  char caractere(std::string_view texte);

 private:
  std::string reste_;
  std::size_t lus_ = 0;  // of reste_
  char caractere_ = '\0';
};

/// The decimal number that a text wholly is, blanks around it and a plus sign apart: "010" is ten,
/// "0x10" is none. Nothing, too, when it is out of range; too small for a double is 0.
std::optional<int> entier_strict(std::string_view texte);
std::optional<std::int64_t> entier_long_strict(std::string_view texte);
std::optional<double> reel_strict(std::string_view texte);

/// The number that a text begins with, digits of base 10 or 16 without a sign; nothing when it
/// begins with none, or with one out of range.
std::optional<std::uint64_t> naturel_en_tete(std::string_view texte, int base = 10);

/// True when the text is wholly one real number, and so reads the same whatever came before it.
bool est_un_reel(std::string_view texte);

/// Number to text as a default-formatted stream writes it, appended to `texte`: six significant
/// digits, the shorter of fixed and exponent notation, no trailing zeros.
void ajouter_nombre(std::string& texte, double valeur);
void ajouter_nombre(std::string& texte, int valeur);

/// The same by itself, and with another number of significant digits if need be, 1 to 17.
std::string en_texte(double valeur, int chiffres = 6);

/// With so many digits after the point, 0 to 17, and no exponent.
std::string en_texte_fixe(double valeur, int decimales);

/// The shortest text that reads as just this number.
std::string exactement(double valeur);

}  // namespace topomine
