#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>

#include "app/topodata/carte.h"
#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "app/topodata/options.h"
#include "base/lecture/fichier.h"
#include "dataset/csv.h"
#include "dataset/matrice.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  OptionsTable table;
  bool brut = false, centree = false, correlation = false;
  std::string fichier, image, sommes;
  std::vector<std::string> depuis;
};

Relation relation(const Options& o) {
  return o.correlation ? Relation::correlation : o.centree ? Relation::centree : Relation::produits;
}

/// A cell as in the run's own matrix: five significant digits.
std::string cellule(const std::optional<double>& c) {
  return c ? en_texte(*c, 5) : "NaN";
}

/// The attributes of the sums that --garde and --cache leave.
std::vector<std::size_t> choisis(const Sommes& sommes, const OptionsTable& options) {
  BaseBuffer cadre;
  cadre.clear();
  for (const Sommes::Attribut& a : sommes.attributs()) cadre.add_attr(a.nom, a.type);
  montrer_les_voulus(cadre, options);
  std::vector<std::size_t> rangs;
  for (std::size_t a = 0; a < cadre._attr.size(); ++a)
    if (cadre._aff.at(cadre._attr[a].first)) rangs.push_back(a);
  return rangs;
}

Matrice en_matrice(const Sommes& sommes, const std::vector<std::size_t>& choisis, Relation r) {
  Matrice m;
  for (const std::size_t a : choisis) {
    m.noms.push_back(sommes.attributs()[a].nom);
    for (const std::size_t b : choisis) m.cellules.push_back(cellule(sommes.cellule(a, b, r)));
  }
  return m;
}

void ecrire_matrice(std::ostream& out, const Matrice& m) {
  std::vector<std::string> ligne{"attribut"};
  ligne.insert(ligne.end(), m.noms.begin(), m.noms.end());
  ecrire_ligne_csv(out, ligne);
  for (std::size_t a = 0; a < m.noms.size(); ++a) {
    ligne.assign(1, m.noms[a]);
    const auto debut = m.cellules.begin() + static_cast<std::ptrdiff_t>(a * m.noms.size());
    ligne.insert(ligne.end(), debut, debut + static_cast<std::ptrdiff_t>(m.noms.size()));
    ecrire_ligne_csv(out, ligne);
  }
}

/// The sums over the shown attributes of the cases. Without a scale to be measured first, each base
/// is done with as soon as it is read.
Sommes sommer_les_cas(Options& o, Progres& progres) {
  o.table.format = &format_csv;  // any base name will do
  o.table.normalise = !o.brut && o.table.applique_echelle.empty();
  controler(o.cible);
  const std::vector<Provenance> liste = o.cible.liste();
  Atelier atelier(o.table, liste);
  Sommes sommes(atelier.attributs_montres());
  const auto sommer = [&](const BaseBuffer& exemples) {
    sommes.ajouter(exemples, [&](std::size_t faits) {
      progres.etape("sommes : attribut " + std::to_string(faits + 1) + " sur " +
                    std::to_string(sommes.attributs().size()));
    });
  };
  if (o.table.normalise) {
    BaseBuffer exemples = atelier.construire(o.cible.mode, progres);
    atelier.mettre_a_l_echelle(exemples);
    sommer(exemples);
  } else {
    pour_chaque_base(liste, o.cible.mode, progres, [&](Base& base, const Provenance& p) {
      BaseBuffer exemples;
      atelier.ajouter(exemples, base, p);
      atelier.appliquer_echelle(exemples);
      sommer(exemples);
    });
  }
  sommes.echelle = atelier.echelle();
  return sommes;
}

Sommes ajouter_les_sommes(const std::vector<std::string>& fichiers, Progres& progres) {
  Sommes total;
  for (const std::string& fichier : fichiers) {
    progres.etape("lecture de " + fichier);
    inscrire_entree(fichier);
    std::string texte;
    Sommes partie;
    std::string faute = "illisible";
    if (lire_fichier(fichier, texte) != Lecture::faite || !partie.lire(texte, faute))
      throw Erreur(faute.insert(0, " : ").insert(0, fichier));
    if (&fichier == &fichiers.front())
      total = partie;
    else if (!total.ajouter(partie))
      throw Erreur(fichier + " : ses attributs ou leur echelle ne sont pas ceux de " +
                   fichiers.front() + " ; donner a tous la meme --applique-echelle, ou --brut");
  }
  return total;
}

void controler_options(const Options& o) {
  const bool des_cas = !o.cible.chemin.empty();
  if (o.centree && o.correlation) throw Erreur("--centree et --correlation s'excluent");
  if (o.depuis.empty() && (!des_cas || o.cible.mode.empty()))
    throw CLI::RequiredError("CHEMIN et MODE, ou --depuis-sommes");
  if (!o.depuis.empty() && des_cas)
    throw Erreur("--depuis-sommes remplace CHEMIN et MODE : donner l'un ou l'autre");
  if (!o.depuis.empty() && (o.brut || !o.table.applique_echelle.empty() || o.table.epsilon ||
                            !o.cible.avec.empty() || o.cible.bases))
    throw Erreur("--depuis-sommes prend les valeurs telles qu'elles ont ete sommees");
  if (!o.sommes.empty() && o.depuis.empty() && !o.brut && o.table.applique_echelle.empty())
    throw Erreur(
        "--sommes demande --brut ou --applique-echelle : les sommes de collections ramenees "
        "chacune a sa propre echelle ne s'ajoutent pas");
  if (o.brut && !o.table.applique_echelle.empty())
    throw Erreur("--brut et --applique-echelle s'excluent");
  if (!o.image.empty()) controler_nom_image(o.image);
}

Legende legende(Relation r, bool brut, std::size_t exemples) {
  const std::string suite =
      " des attributs, " + std::to_string(exemples) + " exemples (gris : pas de nombre)";
  switch (r) {
    case Relation::centree:
      return {"Covariance" + suite, "covariance", brut};
    case Relation::correlation:
      return {"Correlation" + suite, "correlation", false};
    case Relation::produits:
      break;
  }
  return {"Covariance non centree" + suite, "moyenne des produits", brut};
}

void executer(Options& o) {
  controler_options(o);
  Progres progres;
  const Sommes sommes =
      o.depuis.empty() ? sommer_les_cas(o, progres) : ajouter_les_sommes(o.depuis, progres);
  std::optional<Sortie> somme, image, csv;  // all at once: no two may be one file
  if (!o.sommes.empty()) somme.emplace(o.sommes);
  if (!o.image.empty()) image.emplace(o.image);
  if (!o.fichier.empty() || (!somme && !image)) csv.emplace(o.fichier);
  const Matrice m = en_matrice(sommes, choisis(sommes, o.table), relation(o));

  if (somme) sommes.ecrire(somme->flux());
  if (image) {
    progres.etape("dessin");
    dessiner_carte(m, legende(relation(o), sommes.echelle.bornes.empty(), sommes.nb_exemples()),
                   o.image, image->flux());
  }
  progres.ecriture(o.fichier);
  if (csv) ecrire_matrice(csv->flux(), m);
  // Old files are replaced only when all new ones are complete.
  const auto sorties = std::to_array<std::optional<Sortie>*>({&somme, &image, &csv});
  for (auto* sortie : sorties)
    if (*sortie) (*sortie)->fermer();
  for (auto* sortie : sorties)
    if (*sortie) (*sortie)->conclure();
}

}  // namespace

void ajouter_covariance(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("covariance", "Ecrit ou dessine la matrice de covariance");
  options_cible(*c, o->cible);
  for (const char* nom : {"CHEMIN", "MODE"}) c->get_option(nom)->required(false);
  option_avec(*c, o->cible);
  options_attributs(*c, o->table);
  c->add_flag("--centree", o->centree,
              "Retranche les moyennes ; TypeC et Classe comptent comme des nombres");
  c->add_flag("--correlation", o->correlation,
              "De -1 a 1, les moyennes retranchees et les ecarts-types divises ; de meme");
  c->add_flag("--brut", o->brut, "Ne ramene pas les attributs entre 0 et 1 d'abord");
  option_applique_echelle(*c, o->table);
  option_epsilon(*c, o->table);
  option_fichier(*c, "--sommes",
                 "Ecrit les sommes dont la matrice est faite, au lieu du csv sans -o", o->sommes);
  c->add_option("--depuis-sommes", o->depuis,
                "Au lieu de CHEMIN et MODE : ajoute les sommes de ces fichiers");
  option_sortie(*c, o->fichier);
  option_fichier(*c, "--image", "Image .png ou .svg a dessiner, au lieu du csv sans -o", o->image);
  c->footer(
      "Sans --centree ni --correlation les moyennes ne sont pas retranchees, comme dans "
      "global.cov.\n"
      "Exemples :\n"
      "  topodata covariance cas/ nrm -o covariance.csv --image covariance.png\n"
      "  topodata covariance cas/ nrm --correlation --garde erikson,vol_*,TypeC");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
