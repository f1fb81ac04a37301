#include "dataset/comptes_codes.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

#include "base/configuration.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

/// From how many codes or slots on an entity is worth remembering.
constexpr int longueur_notable = 32;

/// Bytes of BCCODE texts that one base may have read one after the other. Only texts such as "3 4",
/// which leave a part of a number behind, are: no sound configuration has one.
constexpr std::int64_t octets_max = 16 << 20;

/// Place of a BCCODE among those that have a column, or their count.
std::size_t place(int bccode) {
  return static_cast<std::size_t>(std::ranges::find(codes_comptes, bccode) - codes_comptes.begin());
}

std::string_view texte_bccode(int code) {
  static const std::string colonne(colonne_bccode);
  const std::string* texte = chercher_CL(code, colonne);
  return texte ? std::string_view(*texte) : std::string_view();
}

/// What is read first from `debut`, then from each of the others.
template <std::size_t n>
std::array<int, n> essayer(std::string_view debut, const std::array<std::string_view, n>& textes) {
  FluxNombres nombres;
  nombres.entier(debut);
  std::array<int, n> lus;
  for (std::size_t i = 0; i < n; ++i) lus[i] = nombres.entier(textes[i]);
  return lus;
}

}  // namespace

ComptesCodes::Code ComptesCodes::classer(int code) {
  const auto [trouve, nouveau] = codes_.try_emplace(code);
  Code& c = trouve->second;
  if (!nouveau) return c;
  const std::string_view texte = texte_bccode(code);
  if (const auto n = entier_strict(texte)) {
    c.valeur = n;
    return c;
  }
  // Texts with a further sign split over several reads: not predicted, read in full.
  const std::size_t debut = texte.find_first_not_of(" \t\n\v\f\r");
  if (debut != std::string_view::npos &&
      texte.find_first_of("+-", debut + 1) != std::string_view::npos) {
    c.effet = Code::melange;
    return c;
  }
  // Probe: read the text after two different numbers and before two others; the four results show
  // its effect.
  const auto apres_1 = essayer<3>("1", {texte, "7", "8"});
  const auto apres_2 = essayer<3>("2", {texte, "7", "8"});
  if (apres_1[0] == apres_2[0]) c.valeur = apres_1[0];
  if (apres_1[1] == apres_1[0] && apres_1[2] == apres_1[0] && apres_2[1] == apres_2[0])
    c.effet = Code::fin;
  else if (apres_1[1] != 7 || apres_1[2] != 8)
    c.effet = Code::melange;
  return c;
}

void ComptesCodes::repeter(Effets& e, std::int64_t fois) const {
  if (!e.valeur)
    e.repetes += fois;
  else if (const std::size_t i = place(*e.valeur); i < e.comptes.size())
    e.comptes[i] += fois;
}

void ComptesCodes::ajouter_code(Effets& e, int code) {
  ++e.nb;
  if (!e.fin) {
    const Code c = classer(code);
    if (c.valeur) e.valeur = c.valeur;
    e.fin = c.effet == Code::fin;
    e.melange = e.melange || c.effet == Code::melange;
  }
  repeter(e, 1);
}

void ComptesCodes::enchainer(Effets& e, const Effets& suite) const {
  e.nb += suite.nb;
  if (e.fin) return repeter(e, suite.nb);
  repeter(e, suite.repetes);
  for (std::size_t i = 0; i < e.comptes.size(); ++i) e.comptes[i] += suite.comptes[i];
  if (suite.valeur) e.valeur = suite.valeur;
  e.fin = suite.fin;
  e.melange = e.melange || suite.melange;
}

template <class Entite>
void ComptesCodes::ajouter_codes(Effets& e, int numero, const Entite& entite,
                                 std::unordered_map<int, Effets>& longs) {
  const int nb = entite.nb_BC();
  if (nb < longueur_notable) {
    for (int i = 0; i < nb; ++i) ajouter_code(e, entite._BC(i));
    return;
  }
  const auto [trouve, nouvelle] = longs.try_emplace(numero);
  if (nouvelle)
    for (int i = 0; i < nb; ++i) ajouter_code(trouve->second, entite._BC(i));
  enchainer(e, trouve->second);
}

void ComptesCodes::ajouter_edges(Effets& e, const Face& face) {
  for (int j = 0; j < face.nb_edge(); ++j) {
    const int numero = face._edge(j);
    if (const auto edge = base_.edges.find(numero); edge != base_.edges.end())
      ajouter_codes(e, numero, edge->second, edges_);
  }
}

void ComptesCodes::compter_lus(std::int64_t octets) {
  octets_lus_ += octets;
  if (octets_lus_ > octets_max)
    throw std::length_error("des BCCODE qui ne sont pas des nombres sont vus trop de fois");
}

/// The list itself, for what cannot be counted by parts.
ComptesCodes::Comptes ComptesCodes::lire_textes(const std::vector<int>& codes) {
  for (const int code : codes) compter_lus(static_cast<std::int64_t>(texte_bccode(code).size()));
  Comptes comptes{};
  for (const int bccode : base_.DAM2BCCODE(codes))
    if (const std::size_t i = place(bccode); i < comptes.size()) ++comptes[i];
  return comptes;
}

ComptesCodes::Comptes ComptesCodes::faces(const Block& bloc) {
  Effets e;
  for (int i = 0; i < bloc.nb_face(); ++i) {
    const int numero = bloc._face(i);
    if (numero == 0) continue;
    if (const auto face = base_.faces.find(numero); face != base_.faces.end())
      ajouter_codes(e, numero, face->second, faces_);
  }
  if (!e.melange) return e.comptes;
  compter_lus(e.nb);
  return lire_textes(base_.BC_blk_face(bloc._id()));
}

ComptesCodes::Comptes ComptesCodes::edges(const Block& bloc) {
  Effets e;
  for (int i = 0; i < bloc.nb_face(); ++i) {
    const int numero = bloc._face(i);
    if (numero == 0) continue;
    const auto face = base_.faces.find(numero);
    if (face == base_.faces.end()) continue;
    if (face->second.nb_edge() < longueur_notable) {
      ajouter_edges(e, face->second);
      continue;
    }
    const auto [trouve, nouvelle] = edges_de_face_.try_emplace(numero);
    if (nouvelle) ajouter_edges(trouve->second, face->second);
    enchainer(e, trouve->second);
  }
  if (!e.melange) return e.comptes;
  compter_lus(e.nb);
  return lire_textes(base_.BC_blk_edge(bloc._id()));
}

}  // namespace topomine
