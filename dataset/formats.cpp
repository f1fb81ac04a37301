#include "dataset/formats.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string>

#include "dataset/basebuffer.h"

namespace topomine {

namespace {

/// The attributes, flags and class of a table, without its examples.
BaseBuffer sans_exemples(const BaseBuffer& table) {
  BaseBuffer vide;
  vide._attr = table._attr;
  vide._aff = table._aff;
  vide._nom = table._nom;
  vide._num_classe = table._num_classe;
  return vide;
}

/// A shown column that holds texts.
bool a_des_textes(const BaseBuffer& table) {
  return std::ranges::any_of(
      table._attr, [&](const auto& a) { return a.second == "string" && table._aff.at(a.first); });
}

}  // namespace

std::string tel_quel(const std::string& mot) {
  return mot;
}

void ecrire_weka(std::ostream& out, BaseBuffer& table, const Morceau& morceau) {
  constexpr std::string_view apres_la_derniere = "\n\n";
  if (morceau.premier) {
    std::ostringstream vide;
    sans_exemples(table).Print_weka(vide);
    const std::string texte = vide.str();
    out << std::string_view(texte).substr(0, texte.size() - apres_la_derniere.size());
  }
  table.Print_attr(out, ',');
  if (morceau.dernier) out << apres_la_derniere;
}

void ecrire_torch(std::ostream& out, BaseBuffer& table, const Morceau& morceau) {
  if (morceau.premier)
    out << (a_des_textes(table) ? "" : "# ")
        << std::to_string(morceau.total) + ' ' + std::to_string(table.nb_attr_aff()) << '\n';
  table.Print_attr(out, ' ');
  if (morceau.dernier) out << '\n';
}

void ecrire_format_csv(std::ostream& out, BaseBuffer& table, const Morceau& morceau) {
  if (morceau.premier) ecrire_entete_csv(out, table, morceau.fin);
  ecrire_lignes_csv(out, table, morceau.fin);
}

}  // namespace topomine
