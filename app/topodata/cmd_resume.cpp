#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <memory>
#include <string_view>

#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"
#include "base/base.h"
#include "dataset/csv.h"

namespace topomine {

namespace {

using Ligne = std::vector<std::string>;
using Lignes = std::vector<Ligne>;

struct Options {
  Cible cible;
  bool csv = false;
  std::string fichier;
};

const Ligne entete_attributs{"attribut", "type",       "min",      "max",
                             "moyenne",  "ecart_type", "distincts"};
const Ligne entete_bases{"base", "blocs", "faces", "edges", "vertices", "pieces", "blocs_C"};

Ligne resumer_base(const Base& base) {
  const auto blocs_c =
      std::ranges::count_if(base.blocs, [](const auto& b) { return b.second._typeC(); });
  Ligne ligne{base.nom};
  for (const std::size_t n :
       {base.blocs.size(), base.faces.size(), base.edges.size(), base.vrtxs.size(),
        base.pieces.size(), static_cast<std::size_t>(blocs_c)})
    ligne.push_back(std::to_string(n));
  return ligne;
}

std::size_t nb_distincts(const BaseBuffer& table, std::size_t col) {
  std::vector<std::string_view> valeurs;
  valeurs.reserve(table._expl.size());
  for (const auto& exemple : table._expl) valeurs.push_back(exemple[col]);
  std::ranges::sort(valeurs);
  return static_cast<std::size_t>(std::unique(valeurs.begin(), valeurs.end()) - valeurs.begin());
}

/// Numbers stay empty for an attribute that is not numeric, and for a table without examples.
Ligne resumer_attribut(const BaseBuffer& table, int col) {
  const auto& [nom, type] = table._attr[static_cast<std::size_t>(col)];
  Ligne ligne{nom, type, "", "", "", ""};
  double min, max, moy, ecart;
  if (table.calc_min_max(col, min, max) && table.calc_moy(col, moy) && table.calc_std(col, ecart)) {
    // Rounding can leave a variance a little below zero, whose root is not a number.
    if (std::isnan(ecart) && std::isfinite(moy)) ecart = 0.0;
    ligne = {nom, type, en_texte(min), en_texte(max), en_texte(moy), en_texte(ecart)};
  }
  ligne.push_back(std::to_string(nb_distincts(table, static_cast<std::size_t>(col))));
  return ligne;
}

/// Columns as wide as their widest cell: names and types to the left, numbers to the right.
void aligner(std::ostream& out, const Lignes& lignes, std::size_t nb_a_gauche) {
  std::vector<std::size_t> largeurs(lignes[0].size());
  for (const Ligne& ligne : lignes)
    for (std::size_t i = 0; i < ligne.size(); ++i)
      largeurs[i] = std::max(largeurs[i], std::max<std::size_t>(ligne[i].size(), 1));
  for (const Ligne& ligne : lignes) {
    std::string texte;
    for (std::size_t i = 0; i < ligne.size(); ++i) {
      const std::string cellule = ligne[i].empty() ? "-" : ligne[i];
      const std::string blancs(largeurs[i] - cellule.size(), ' ');
      texte += (i > 0 ? "  " : "") + (i < nb_a_gauche ? cellule + blancs : blancs + cellule);
    }
    texte.erase(texte.find_last_not_of(' ') + 1);
    out << texte << '\n';
  }
}

/// One table for both, so that any CSV reader takes it: "sorte" says which rows are which, and the
/// columns of the other sort stay empty.
void ecrire_csv_commun(std::ostream& out, const Lignes& attributs, const Lignes& bases) {
  const std::size_t nb_a = attributs[0].size(), nb_b = bases[0].size();
  Ligne entete{"sorte", "nom"};
  entete.insert(entete.end(), attributs[0].begin() + 1, attributs[0].end());
  entete.insert(entete.end(), bases[0].begin() + 1, bases[0].end());
  ecrire_ligne_csv(out, entete);
  for (std::size_t i = 1; i < attributs.size(); ++i) {
    Ligne ligne{"attribut"};
    ligne.insert(ligne.end(), attributs[i].begin(), attributs[i].end());
    ligne.resize(nb_a + nb_b);
    ecrire_ligne_csv(out, ligne);
  }
  for (std::size_t i = 1; i < bases.size(); ++i) {
    Ligne ligne{"base", bases[i][0]};
    ligne.resize(nb_a + 1);
    ligne.insert(ligne.end(), bases[i].begin() + 1, bases[i].end());
    ecrire_ligne_csv(out, ligne);
  }
}

void executer(Options& o) {
  Progres progres;
  Lignes bases{entete_bases}, attributs{entete_attributs};
  OptionsTable options;
  options.format = Format::csv;  // any base name will do
  const BaseBuffer table = construire(
      o.cible, options, progres, [&](const Base& base) { bases.push_back(resumer_base(base)); });
  progres.etape("statistiques");
  for (int col = 0; col < static_cast<int>(table._attr.size()); ++col)
    attributs.push_back(resumer_attribut(table, col));

  progres.ecriture(o.fichier);
  Sortie sortie(o.fichier);
  if (o.csv) {
    ecrire_csv_commun(sortie.flux(), attributs, bases);
  } else {
    sortie.flux() << table.nb_expl() << " exemples\n\n";
    aligner(sortie.flux(), attributs, 2);
    sortie.flux() << '\n';
    aligner(sortie.flux(), bases, 1);
  }
  sortie.conclure();
}

}  // namespace

void ajouter_resume(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("resume", "Resume les attributs de la table et les bases");
  options_cible(*c, o->cible);
  c->add_flag("--csv", o->csv, "Une seule table CSV, pour un programme");
  option_sortie(*c, o->fichier);
  c->footer(
      "Exemple :\n"
      "  topodata resume cas/ nrm --bases mesh_case_2,mesh_case_6");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
