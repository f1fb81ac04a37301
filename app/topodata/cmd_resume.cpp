#include <CLI/CLI.hpp>
#include <algorithm>
#include <deque>
#include <iostream>
#include <map>
#include <memory>

#include "app/topodata/colonnes.h"
#include "app/topodata/commandes.h"
#include "app/topodata/console.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"
#include "base/base.h"
#include "dataset/arff.h"
#include "dataset/csv.h"
#include "dataset/resume.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

using Ligne = std::vector<std::string>;
using Lignes = std::vector<Ligne>;

struct Options {
  Cible cible;
  OptionsTable table;
  bool csv = false;
  std::string fichier;
};

const Ligne entete_attributs{"attribut", "type",    "min",        "q1",        "mediane",  "q3",
                             "max",      "moyenne", "ecart_type", "distincts", "effectifs"};

Ligne entete_bases(bool plusieurs) {
  Ligne entete{"base", "blocs", "faces", "edges", "vertices", "pieces", "blocs_C"};
  if (plusieurs) entete.insert(entete.begin(), nom_collection);
  return entete;
}

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

/// Counts of a nominal attribute: the values of its type in their order, then any others.
std::string effectifs(const Resume& resume, const std::string& type) {
  std::string texte;
  const auto noter = [&](const std::string& valeur, std::size_t n) {
    texte += (texte.empty() ? "" : " ") + valeur + ":" + std::to_string(n);
  };
  std::map<std::string, std::size_t> reste = resume.effectifs();
  for (const std::string& valeur : valeurs_nominales(type).value_or(Ligne{}))
    if (const auto place = reste.find(valeur); place != reste.end()) {
      noter(valeur, place->second);
      reste.erase(place);
    }
  for (const auto& [valeur, n] : reste) noter(valeur, n);
  return texte;
}

/// Numbers stay empty for an attribute that is not numeric, and for a table without examples.
Ligne resumer_attribut(const Resume& resume, const std::string& nom, const std::string& type) {
  Ligne ligne{nom, type};
  if (resume.numerique() && resume.nb_exemples() > 0) {
    for (const double part : {0.0, 0.25, 0.5, 0.75, 1.0})
      ligne.push_back(en_texte(resume.quantile(part)));
    ligne.push_back(en_texte(resume.moyenne()));
    ligne.push_back(en_texte(resume.ecart_type()));
  }
  ligne.resize(entete_attributs.size());
  *(ligne.end() - 2) = std::to_string(resume.distincts());
  if (valeurs_nominales(type)) ligne.back() = effectifs(resume, type);
  return ligne;
}

/// One table for both, so that any CSV reader takes it: "sorte" says which rows are which, and the
/// columns of the other sort stay empty.
void ecrire_csv_commun(std::ostream& out, const Lignes& attributs, const Lignes& bases,
                       FinDeLigne fin) {
  // The name of a base, and its collection's, stand in the columns of the name.
  const std::size_t noms = bases[0][0] == nom_collection ? 2 : 1;
  const std::size_t nb_a = attributs[0].size() - 1;
  Ligne entete{"sorte"};
  if (noms == 2) entete.push_back(nom_collection);
  entete.push_back("nom");
  entete.insert(entete.end(), attributs[0].begin() + 1, attributs[0].end());
  entete.insert(entete.end(), bases[0].begin() + static_cast<std::ptrdiff_t>(noms), bases[0].end());
  ecrire_ligne_csv(out, entete, fin);
  for (std::size_t i = 1; i < attributs.size(); ++i) {
    Ligne ligne(noms, "attribut");
    if (noms == 2) ligne[1].clear();
    ligne.insert(ligne.end(), attributs[i].begin(), attributs[i].end());
    ligne.resize(entete.size());
    ecrire_ligne_csv(out, ligne, fin);
  }
  for (std::size_t i = 1; i < bases.size(); ++i) {
    const auto apres_noms = bases[i].begin() + static_cast<std::ptrdiff_t>(noms);
    Ligne ligne{"base"};
    ligne.insert(ligne.end(), bases[i].begin(), apres_noms);
    ligne.resize(1 + noms + nb_a);
    ligne.insert(ligne.end(), apres_noms, bases[i].end());
    ecrire_ligne_csv(out, ligne, fin);
  }
}

void executer(Options& o) {
  if (o.table.crlf && !o.csv) throw Erreur("--crlf demande --csv");
  Progres progres;
  controler(o.cible);
  const std::vector<Provenance> liste = o.cible.liste();
  o.table.format = &format_csv;  // any base name will do
  const Atelier atelier(o.table, liste);
  const bool plusieurs = atelier.plusieurs_collections();
  Lignes bases{entete_bases(plusieurs)}, attributs{entete_attributs};
  const std::vector<Sommes::Attribut> noms = atelier.attributs_montres();
  std::deque<Resume> resumes;
  std::size_t nb_exemples = 0;  // whatever is shown of them
  for (const auto& a : noms) resumes.emplace_back(a.type == "numeric");
  pour_chaque_base(liste, o.cible.mode, progres, [&](Base& base, const Provenance& p) {
    bases.push_back(resumer_base(base));
    if (plusieurs) bases.back().insert(bases.back().begin(), p.collection);
    BaseBuffer exemples;
    atelier.ajouter(exemples, base, p);
    nb_exemples += exemples._expl.size();
    for (std::size_t a = 0; a < noms.size(); ++a)
      resumes[a].ajouter(exemples, static_cast<std::size_t>(exemples.num_attr(noms[a].nom)));
  });
  progres.etape("statistiques");
  for (std::size_t a = 0; a < noms.size(); ++a)
    attributs.push_back(resumer_attribut(resumes[a], noms[a].nom, noms[a].type));

  progres.ecriture(o.fichier);
  Sortie sortie(o.fichier);
  if (o.csv) {
    ecrire_csv_commun(sortie.flux(), attributs, bases,
                      o.table.crlf ? FinDeLigne::crlf : FinDeLigne::lf);
  } else {
    sortie.flux() << pour_lecteur(std::to_string(nb_exemples) + " exemples") << "\n\n";
    ecrire_aligne(sortie.flux(), attributs, {0, 1, entete_attributs.size() - 1});
    sortie.flux() << '\n';
    ecrire_aligne(sortie.flux(), bases,
                  plusieurs ? std::set<std::size_t>{0, 1} : std::set<std::size_t>{0});
  }
  sortie.conclure();
}

}  // namespace

void ajouter_resume(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("resume", "Resume les attributs de la table et les bases");
  options_cible(*c, o->cible);
  option_avec(*c, o->cible);
  options_attributs(*c, o->table);
  c->add_flag("--csv", o->csv, "Une seule table CSV, pour un programme");
  c->add_flag("--crlf", o->table.crlf, "Termine les lignes du csv par CR LF (RFC 4180)");
  option_sortie(*c, o->fichier);
  c->footer(
      "q1, mediane, q3 : un quart, la moitie, trois quarts des exemples sont au-dessous (entre "
      "deux\n"
      "exemples, en ligne droite). effectifs : exemples par valeur.\n"
      "Exemple :\n"
      "  topodata resume cas/ nrm --bases mesh_case_2,mesh_case_6");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
