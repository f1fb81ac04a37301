#include "texte/nombres.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <locale>
#include <system_error>

namespace topomine {

namespace {

/// True when the text is wholly one number that std::from_chars reads as a stream does. Signs "+",
/// blanks and leftovers are for the stream, as is underflow, which from_chars refuses.
template <class T>
bool est_un_nombre(std::string_view texte, T& valeur) {
  const char* const fin = texte.data() + texte.size();
  T lu{};
  const auto [arret, erreur] = std::from_chars(texte.data(), fin, lu);
  if (erreur != std::errc{} || arret != fin) return false;
  valeur = lu;
  return true;
}

/// A short plain decimal, such as the table holds: digits that make an exact double and an exact
/// power of ten, so that one division rounds as well as the longest road does.
bool est_un_decimal(std::string_view texte, double& valeur) {
  static constexpr std::array<double, 17> puissances{
      1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16};
  constexpr std::size_t longueur_max = 17;  // a sign and 16 digits, or 15 and the point
  constexpr std::uint64_t exact_max = std::uint64_t{1} << 53;
  if (texte.size() > longueur_max) return false;
  const char* p = texte.data();
  const char* const fin = p + texte.size();
  const bool negatif = p != fin && *p == '-';
  if (negatif) ++p;
  const char* const debut = p;
  std::uint64_t mantisse = 0;
  const auto lire_chiffres = [&] {
    for (; p != fin; ++p) {
      const auto chiffre = static_cast<unsigned>(*p) - '0';
      if (chiffre > 9) return;
      mantisse = 10 * mantisse + chiffre;
    }
  };
  lire_chiffres();
  std::ptrdiff_t chiffres = p - debut, decimales = 0;
  if (p != fin && *p == '.') {
    const char* const apres_virgule = ++p;
    lire_chiffres();
    decimales = p - apres_virgule;
    chiffres += decimales;
  }
  if (p != fin || chiffres == 0 || mantisse > exact_max) return false;
  const double absolue =
      static_cast<double>(mantisse) / puissances[static_cast<std::size_t>(decimales)];
  valeur = negatif ? -absolue : absolue;
  return true;
}

/// from_chars also takes "inf" and "nan", a stream does not.
bool commence_par_lettre(std::string_view texte) {
  const std::size_t i = (!texte.empty() && texte[0] == '-') ? 1 : 0;
  return i >= texte.size() || (texte[i] != '.' && (texte[i] < '0' || texte[i] > '9'));
}

bool lire_seul(std::string_view texte, double& valeur) {
  return est_un_decimal(texte, valeur) ||
         (!commence_par_lettre(texte) && est_un_nombre(texte, valeur));
}

}  // namespace

bool est_un_reel(std::string_view texte) {
  double valeur;
  return lire_seul(texte, valeur);
}

template <class T>
void FluxNombres::lire_flux(std::string_view texte, T& valeur) {
  if (!flux_) {
    flux_ = std::make_unique<std::stringstream>();
    flux_->imbue(std::locale::classic());
    // A stream that lacks memory would keep it to itself and read nothing: a wrong number.
    flux_->exceptions(std::ios_base::badbit);
  } else if (!reste_) {
    flux_->str({});
  }
  flux_->clear();
  *flux_ << texte;
  // Not straight into `valeur`: a failed read writes 0, or the limit on overflow.
  if (T lu{}; *flux_ >> lu) valeur = lu;
  reste_ = flux_->rdbuf()->in_avail() > 0;
}

template void FluxNombres::lire_flux(std::string_view, char&);

void FluxNombres::lire(std::string_view texte, int& valeur) {
  if (reste_ || !est_un_nombre(texte, valeur)) lire_flux(texte, valeur);
}

void FluxNombres::lire(std::string_view texte, double& valeur) {
  if (reste_ || !lire_seul(texte, valeur)) lire_flux(texte, valeur);
}

void ajouter_nombre(std::string& texte, double valeur) {
  // Integers below the seventh digit, the counts of the table, are written as integers are; -0 has
  // its sign.
  if (valeur > -1e6 && valeur < 1e6) {
    if (const int entier = static_cast<int>(valeur);
        entier == valeur && (entier != 0 || !std::signbit(valeur)))
      return ajouter_nombre(texte, entier);
  }
  std::array<char, 32> tampon;  // "-1.23457e-308" and "-nan" fit
  const char* const fin = std::to_chars(tampon.data(), tampon.data() + tampon.size(), valeur,
                                        std::chars_format::general, 6)
                              .ptr;
  texte.append(tampon.data(), static_cast<std::size_t>(fin - tampon.data()));
}

void ajouter_nombre(std::string& texte, int valeur) {
  std::array<char, 16> tampon;
  const char* const fin = std::to_chars(tampon.data(), tampon.data() + tampon.size(), valeur).ptr;
  texte.append(tampon.data(), static_cast<std::size_t>(fin - tampon.data()));
}

}  // namespace topomine
