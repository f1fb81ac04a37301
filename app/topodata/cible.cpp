#include "app/topodata/cible.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <string_view>

#include "app/topodata/console.h"
#include "base/base.h"
#include "base/configuration.h"
#include "base/fichiers.h"
#include "base/lecture/chargement.h"
#include "base/modes.h"
#include "dataset/schema.h"

namespace topomine {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view toutes = "toutes";

/// Files of every mode: no output may overwrite any file of a base.
void inscrire_entrees(const std::string& dossier, const std::vector<std::string>& noms) {
  inscrire_entree(dossier + "climite.cfg");
  for (const std::string& nom : noms) {
    std::string debut = dossier;
    debut.append(nom).append("/").append(nom);
    inscrire_entree(debut + fin_de_nom(fic_def));
    for (const std::string_view mode : noms_des_modes)
      for (const Fichier f : {fic_blck, fic_face, fic_edge, fic_vrtx})
        inscrire_entree(debut + fin_de_nom(f, mode));
  }
}

void completer(std::string& dossier) {
  std::error_code erreur;
  if (!fs::is_directory(dossier, erreur)) throw Erreur("dossier inconnu : '" + dossier + "'");
  if (!dossier.ends_with('/')) dossier += '/';
}

void controler_bases(const Cible& cible, const std::string& dossier, bool bases_absentes) {
  std::vector<std::string> noms = cible.noms_dans(dossier);
  if (noms.empty())
    throw Erreur(cible.bases == toutes
                     ? "aucune base dans " + dossier + " (attendu : des dossiers NOM avec NOM.def)"
                     : "aucune base dans '" + *cible.bases + "'");
  std::error_code erreur;
  for (const std::string& nom : noms)
    if (!bases_absentes && !fs::is_directory(dossier + nom, erreur))
      throw Erreur("base inconnue : '" + nom + "' (pas de dossier " + (dossier + nom) + ")" +
                   (cible.bases ? "" : " ; --bases toutes prend celles qui y sont"));
  std::ranges::sort(noms);
  if (const auto repetee = std::ranges::adjacent_find(noms); repetee != noms.end())
    throw Erreur("base donnee deux fois : '" + *repetee + "'");
  inscrire_entrees(dossier, noms);
  inscrire_entrees(dossier, bases_presentes(dossier));  // files of the folder's other bases too
}

/// The built-in bases: "mesh_case_1 a _8".
std::string de_la_premiere_a_la_derniere() {
  const std::string_view premiere = bases_integrees.front(), derniere = bases_integrees.back();
  return std::string(premiere) + " a " + std::string(derniere.substr(derniere.rfind('_')));
}

}  // namespace

std::string sans_barre(std::string nom) {
  nom.erase(nom.find_last_not_of('/') + 1);
  return nom;
}

std::vector<std::string> decouper(const std::string& texte) {
  std::vector<std::string> parts;
  std::size_t debut = 0;
  while (debut <= texte.size()) {
    const std::size_t fin = std::min(texte.find(',', debut), texte.size());
    std::string part = texte.substr(debut, fin - debut);
    part.erase(part.find_last_not_of(" \t") + 1);
    part.erase(0, part.find_first_not_of(" \t"));
    if (!part.empty()) parts.push_back(part);
    debut = fin + 1;
  }
  return parts;
}

std::vector<std::string> Cible::noms_dans(const std::string& dossier) const {
  if (bases == toutes) return bases_presentes(dossier);
  if (bases) {
    std::vector<std::string> donnes = decouper(*bases);
    for (std::string& nom : donnes) nom = sans_barre(nom);
    std::erase(donnes, "");
    return donnes;
  }
  return {bases_integrees.begin(), bases_integrees.end()};
}

std::vector<Provenance> Cible::liste() const {
  std::vector<std::string> dossiers{chemin};
  dossiers.insert(dossiers.end(), avec.begin(), avec.end());
  const std::vector<std::string> collections = noms_des_collections(dossiers);
  std::vector<Provenance> liste;
  for (std::size_t i = 0; i < dossiers.size(); ++i)
    for (const std::string& base : noms_dans(dossiers[i]))
      liste.push_back({collections[i], dossiers[i], base, 0});
  numeroter(liste);
  return liste;
}

void options_cible(CLI::App& commande, Cible& cible, bool plusieurs) {
  commande
      .add_option("CHEMIN", cible.chemin, "Dossier des cas : climite.cfg et un dossier par base")
      ->required();
  commande.add_option("MODE", cible.mode, "ext, nrm ou min")->required();
  if (plusieurs)
    commande.add_option("--bases", cible.bases,
                        "Noms de bases separes par des virgules, ou toutes : chaque dossier NOM "
                        "qui tient NOM.def (sinon " +
                            de_la_premiere_a_la_derniere() + ")");
}

void option_avec(CLI::App& commande, Cible& cible) {
  commande
      .add_option("--avec", cible.avec,
                  "Dossier d'une collection de plus, lue avec son climite.cfg ; se repete. La "
                  "table dit la collection, et Num_Base compte de 0 sur toute la liste des bases")
      ->allow_extra_args(false);
}

void controler(Cible& cible, bool bases_absentes) {
  if (std::ranges::find(noms_des_modes, cible.mode) == noms_des_modes.end())
    throw Erreur("mode inconnu : '" + cible.mode + "' (attendu : ext, nrm ou min)");
  std::vector<fs::path> vus;
  const auto controler_dossier = [&](std::string& dossier) {
    completer(dossier);
    std::error_code erreur;
    vus.push_back(fs::canonical(dossier, erreur));
    if (std::ranges::count(vus, vus.back()) > 1)
      throw Erreur("collection donnee deux fois : '" + dossier + "'");
    controler_bases(cible, dossier, bases_absentes);
  };
  controler_dossier(cible.chemin);
  for (std::string& dossier : cible.avec) controler_dossier(dossier);
}

void charger_base(Base& base, Progres& progres) {
  progres.etape("lecture de " + base.nom);
  const Chargement c = charger(base);
  if (!c.fait)
    throw Erreur("base " + base.nom + " non chargee : " + c.raison +
                 " ; topodata verifie dit tout ce qui n'y va pas");
  if (c.avertissements.empty()) return;
  progres.effacer();
  dire("base " + base.nom + " : " + std::to_string(c.avertissements.size()) +
       " avertissement(s) a la lecture ; topodata verifie dit ou");
}

void pour_chaque_base(const std::vector<Provenance>& liste, const std::string& mode,
                      Progres& progres, const std::function<void(Base&, const Provenance&)>& voir) {
  const std::string* chemin = nullptr;
  for (const Provenance& p : liste) {
    if (chemin && *chemin != p.chemin) oublier_configuration();
    chemin = &p.chemin;
    Base base(p.base, p.chemin, mode);
    charger_base(base, progres);
    voir(base, p);
  }
}

}  // namespace topomine
