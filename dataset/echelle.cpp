#include "dataset/echelle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <ostream>

#include "dataset/basebuffer.h"
#include "dataset/csv.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

const std::vector<std::string> entete{"attribut", "minimum", "maximum"};

}  // namespace

Echelle Echelle::mesurer(const BaseBuffer& table) {
  Echelle echelle;
  for (const auto& [nom, type] : table._attr) {
    Bornes b;
    if (table.calc_min_max(nom, b.min, b.max)) echelle.bornes.try_emplace(nom, b);
  }
  return echelle;
}

std::vector<std::string> Echelle::manquants(const BaseBuffer& table) const {
  std::vector<std::string> noms;
  for (const auto& [nom, type] : table._attr)
    if (type == "numeric" && table._aff.at(nom) && !bornes.contains(nom)) noms.push_back(nom);
  return noms;
}

void ramener(BaseBuffer& table, int col, const Bornes& bornes) {
  std::vector<double> valeurs;
  if (!table.get_vec_dbl(col, valeurs)) return;
  const auto [min, max] = bornes;
  const double d = max - min == 0 ? 1.0 : max - min, o = min / d;
  for (std::size_t j = 0; j < valeurs.size(); ++j) {
    std::string& texte = table._expl[j].at(static_cast<std::size_t>(col));
    texte.clear();
    ajouter_nombre(texte, valeurs[j] / d - o);
  }
}

void Echelle::appliquer(BaseBuffer& table) const {
  for (int col = 0; col < static_cast<int>(table._attr.size()); ++col)
    if (const auto b = bornes.find(table._attr[static_cast<std::size_t>(col)].first);
        b != bornes.end())
      ramener(table, col, b->second);
}

void ecrire_echelle(std::ostream& out, const Echelle& echelle, const BaseBuffer& table) {
  ecrire_ligne_csv(out, entete);
  for (const auto& [nom, type] : table._attr)
    if (const auto b = echelle.bornes.find(nom); b != echelle.bornes.end())
      ecrire_ligne_csv(out, {nom, exactement(b->second.min), exactement(b->second.max)});
}

bool lire_echelle(std::string_view texte, Echelle& echelle, std::string& faute) {
  const auto lignes = lire_csv(texte);
  if (!lignes || lignes->empty() || lignes->front() != entete) {
    faute = "attendu : un csv qui commence par attribut,minimum,maximum";
    return false;
  }
  for (std::size_t i = 1; i < lignes->size(); ++i) {
    const std::vector<std::string>& l = (*lignes)[i];
    if (l.empty()) continue;
    const auto min = l.size() == entete.size() ? reel_strict(l[1]) : std::nullopt;
    const auto max = min ? reel_strict(l[2]) : std::nullopt;
    if (!max)
      faute = "attendu : un nom et deux nombres";
    else if (*min > *max)
      faute = "'" + l[0] + "' a un minimum au-dessus de son maximum";
    else if (!echelle.bornes.try_emplace(l[0], Bornes{*min, *max}).second)
      faute = "'" + l[0] + "' vient deux fois";
    else
      continue;
    faute.insert(0, "ligne " + std::to_string(i + 1) + " : ");
    return false;
  }
  return true;
}

void annuler_poussieres(BaseBuffer& table, double epsilon) {
  std::vector<double> valeurs;
  for (int col = 0; col < static_cast<int>(table._attr.size()); ++col) {
    if (!table.get_vec_dbl(col, valeurs)) continue;
    for (std::size_t j = 0; j < valeurs.size(); ++j)
      if (std::abs(valeurs[j]) < epsilon) table._expl[j].at(static_cast<std::size_t>(col)) = "0";
  }
}

std::vector<std::string> attributs_constants(const BaseBuffer& table) {
  std::vector<std::string> noms;
  for (std::size_t col = 0; col < table._attr.size(); ++col)
    if (std::ranges::all_of(
            table._expl, [&](const auto& e) { return e.at(col) == table._expl.front().at(col); }))
      noms.push_back(table._attr[col].first);
  return noms;
}

}  // namespace topomine
