#include "base/lecture/tranches.h"

#include <algorithm>
#include <utility>

#include "base/fichiers.h"
#include "base/lecture/document.h"

namespace topomine {

namespace {

constexpr std::string_view blancs = " \t\n";

bool est_de_nom(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool est_nom(std::string_view mot) {
  return !mot.empty() && std::ranges::all_of(mot, est_de_nom);
}

std::size_t passer_blancs(std::string_view texte, std::size_t i) {
  return std::min(texte.find_first_not_of(blancs, i), texte.size());
}

/// What stands between "<" at i and the next ">".
std::string_view balise(std::string_view texte, std::size_t i) {
  const std::size_t fin = texte.find('>', i);
  return fin == std::string_view::npos ? std::string_view() : texte.substr(i + 1, fin - i - 1);
}

}  // namespace

Coupe reperer_coupe(std::string_view texte, std::size_t taille) {
  std::size_t i = passer_blancs(texte, 0);
  if (texte.substr(i).starts_with("<?xml ")) {
    i = texte.find("?>", i);
    if (i == std::string_view::npos) return {};
    i = passer_blancs(texte, i + 2);
  }
  if (i == texte.size() || texte[i] != '<') return {};
  Coupe coupe{balise(texte, i), {}};
  // A scene is no list of entities: each of its parts is asked for by name.
  if (!est_nom(coupe.nom) || coupe.nom == sortes_de_fichier[fic_def].racine) return {};
  i += coupe.nom.size() + 2;
  coupe.bornes.push_back(i);
  for (int niveau = 1; (i = texte.find('<', i)) != std::string_view::npos;) {
    std::string_view b = balise(texte, i);
    const std::size_t apres = i + b.size() + 2;
    const bool fermante = b.starts_with('/'), vide = b.ends_with('/');
    if (fermante) b.remove_prefix(1);
    if (vide) b.remove_suffix(b.empty() ? 0 : 1);
    if (!est_nom(b) || (fermante && vide)) return {};
    if (fermante) --niveau;
    if (!fermante && !vide) ++niveau;
    if (niveau == 0) {
      coupe.bornes.push_back(i);
      return b == coupe.nom && passer_blancs(texte, apres) == texte.size() ? coupe : Coupe{};
    }
    if (niveau == 1 && apres - coupe.bornes.back() >= taille) coupe.bornes.push_back(apres);
    i = apres;
  }
  return {};
}

Tranches::Tranches(std::string texte, std::size_t taille)
    : texte_(std::move(texte)),
      coupe_(reperer_coupe(std::string_view(texte_).substr(0, texte_.find('\0')), taille)) {
  doc_.marquer(&moi_);
}

bool Tranches::commencer() {
  return coupe_.bornes.size() > 2 && analyser();
}

bool Tranches::analyser() {
  const std::size_t debut = coupe_.bornes[rang_], fin = coupe_.bornes[rang_ + 1];
  std::string tranche = texte_.substr(0, coupe_.bornes[0]);
  tranche.append(texte_, debut, fin - debut).append("</").append(coupe_.nom).append(">");
  return analyser_xml(std::move(tranche), doc_);
}

Noeud Tranches::suivante() {
  while (++rang_ + 1 < coupe_.bornes.size()) {
    if (!analyser()) throw TrancheRefusee{};
    if (const Noeud n = doc_.racine().premier()) return n;
  }
  return {};
}

Noeud dans_la_tranche_suivante(Noeud derniere, bool retenue) {
  const void* moi = derniere.marque();
  if (!moi) return {};
  if (retenue) throw TrancheRefusee{};
  return (*static_cast<Tranches* const*>(moi))->suivante();
}

}  // namespace topomine
