#include "base/conversion.h"

#include <array>
#include <charconv>
#include <locale>
#include <system_error>

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

/// from_chars also takes "inf" and "nan", a stream does not.
bool commence_par_lettre(std::string_view texte) {
  const std::size_t i = (!texte.empty() && texte[0] == '-') ? 1 : 0;
  return i >= texte.size() || (texte[i] != '.' && (texte[i] < '0' || texte[i] > '9'));
}

}  // namespace

template <class T>
void FluxNombres::lire_flux(std::string_view texte, T& valeur) {
  if (!flux_) {
    flux_ = std::make_unique<std::stringstream>();
    flux_->imbue(std::locale::classic());
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
  if (reste_ || commence_par_lettre(texte) || !est_un_nombre(texte, valeur))
    lire_flux(texte, valeur);
}

void ajouter_nombre(std::string& texte, double valeur) {
  std::array<char, 32> tampon;  // "-1.23457e-308" and "-nan" fit
  const auto fin = std::to_chars(tampon.data(), tampon.data() + tampon.size(), valeur,
                                 std::chars_format::general, 6);
  texte.append(tampon.data(), fin.ptr);
}

void ajouter_nombre(std::string& texte, int valeur) {
  std::array<char, 16> tampon;
  const auto fin = std::to_chars(tampon.data(), tampon.data() + tampon.size(), valeur);
  texte.append(tampon.data(), fin.ptr);
}
