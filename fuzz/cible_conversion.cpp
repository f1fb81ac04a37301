#include <algorithm>
#include <cstring>
#include <string>

#include "fuzz/cibles.h"
#include "fuzz/outils.h"
#include "texte/affichable.h"
#include "texte/nombres.h"

using namespace topomine;

namespace {

template <class T>
std::string par_flux(T v) {
  std::ostringstream flux;
  flux << v;
  return flux.str();
}

template <class T>
void verifier_ecriture(std::string_view octets) {
  T v{};
  std::memcpy(&v, octets.data(), std::min(octets.size(), sizeof v));
  std::string texte = "x";
  ajouter_nombre(texte, v);
  PROMET(texte == std::string("x").append(par_flux(v)));
}

/// What is shown moves no cursor, in neither encoding, and says so only once.
void verifier_affichage(std::string_view texte) {
  const std::string visible = affichable(texte), utf8 = en_utf8(visible);
  PROMET(std::ranges::none_of(visible, [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; }));
  PROMET(affichable(visible) == visible && affichable(utf8) == utf8);
  PROMET(en_utf8(utf8) == utf8);
}

}  // namespace

/// Texts ended by `separateur`, each after a byte that says how it is read.
void cible_conversion(std::string_view entree) {
  verifier_ecriture<double>(entree);
  verifier_ecriture<int>(entree);
  verifier_affichage(entree);
  FluxNombres nombres;
  FluxCaracteres caracteres;
  Modele modele, modele_caracteres;
  while (!entree.empty()) {
    const char sorte = entree[0];
    entree.remove_prefix(1);
    const std::string_view texte = entree.substr(0, entree.find(separateur));
    entree.remove_prefix(std::min(texte.size() + 1, entree.size()));
    if (sorte == 'c')
      PROMET(caracteres.caractere(texte) == modele_caracteres.caractere(texte));
    else if (sorte == 'e')
      PROMET(nombres.entier(texte) == modele.entier(texte));
    else
      PROMET(memes_bits(nombres.reel(texte), modele.reel(texte)));
  }
}
