#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <tuple>

#include "app/topodata/cible.h"
#include "app/topodata/commandes.h"
#include "app/topodata/console.h"
#include "app/topodata/options.h"
#include "app/topodata/rapport.h"
#include "base/modes.h"
#include "verifie/regles.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  std::string fichier;
  std::vector<std::string> modes;  // of --modes; without, the one of the command line
  std::string explique;
  bool json = false;
  Choix choix;
};

/// What was looked at.
struct Regarde {
  std::size_t bases = 0, fichiers = 0, entites = 0;

  void compter(const CasLu& r) {
    fichiers += static_cast<std::size_t>(std::ranges::count(r.lus, true));
    const Base& b = r.base;
    entites += b.blocs.size() + b.faces.size() + b.edges.size() + b.vrtxs.size() + b.pieces.size() +
               b.raccords.size();
  }
};

int expliquer_code(const std::string& texte) {
  const auto code = code_nomme(texte);
  if (texte != "docs" && texte != "tout" && !code)
    throw CLI::ValidationError("--explique", "code inconnu : '" + texte + "'");
  lister([&](std::ostream& listing) {
    if (texte == "docs") ecrire_catalogue(listing);
    if (texte == "tout")
      for (const Fiche& f : catalogue()) expliquer(listing, f);
    if (code) expliquer(listing, fiche(*code));
  });
  return 0;
}

std::vector<std::string> dossiers(const std::string& chemin) {
  std::vector<std::string> noms;
  std::error_code erreur;
  for (std::filesystem::directory_iterator ici(chemin, erreur), fin; !erreur && ici != fin;
       ici.increment(erreur))
    if (ici->is_directory(erreur)) noms.push_back(ici->path().filename().string());
  return noms;
}

/// One base, in one mode or in several that must agree.
std::vector<Constat> verifier_base(const Options& o, const std::string& nom, Voisinage& voisinage,
                                   Regarde& regarde) {
  std::vector<Constat> constats;
  std::vector<CasLu> cas_lus;
  std::set<std::tuple<std::string, int, Code, std::string>> de_scene;  // the same for all modes
  for (const std::string& mode : o.modes) {
    CasLu r = lire_cas(nom, o.cible.chemin, mode);
    regarde.compter(r);
    for (Constat& c : verifier(r, voisinage))
      if (c.fichier != r.noms[fic_def] ||
          de_scene.emplace(c.fichier, c.ligne, c.code, c.quoi).second)
        constats.push_back(std::move(c));
    if (o.modes.size() > 1) cas_lus.push_back(std::move(r));
  }
  if (o.modes.size() > 1)
    std::ranges::move(comparer_modes(cas_lus, constats), std::back_inserter(constats));
  return constats;
}

void resumer(const Rapport& rapport, const Regarde& regarde) {
  const auto dits = [](std::size_t n, const char* quoi) { return std::to_string(n) + quoi; };
  dire(dits(rapport.nb(Gravite::erreur), " erreur(s), ") +
       dits(rapport.nb(Gravite::avertissement), " avertissement(s), ") +
       dits(rapport.nb(Gravite::avis), " avis ; ") + dits(regarde.bases, " base(s), ") +
       dits(regarde.fichiers, " fichier(s), ") + dits(regarde.entites, " entite(s) lus"));
}

/// climite.cfg, then base by base.
void verifier_collection(const Options& o, Rapport& rapport, Regarde& regarde) {
  const std::string& chemin = o.cible.chemin;
  Voisinage voisinage{lire_config(chemin), dossiers(chemin), {}};
  regarde.fichiers += voisinage.config.lue;
  rapport.ajouter(verifier(voisinage.config));
  const auto absente = [&](const std::string& nom) {
    std::error_code erreur;
    return !std::filesystem::is_directory(chemin + nom, erreur);
  };
  const std::vector<std::string> noms = o.cible.noms();
  if (std::ranges::all_of(noms, absente))
    return rapport.ajouter({{Code::base_absente, chemin, 1, "dossier", "",
                             "aucune des bases n'y est (" + noms.front() + " ...)"}});
  Progres progres;
  for (const std::string& nom : noms) {
    if (absente(nom)) {
      rapport.ajouter({{Code::base_absente, chemin + nom, 1, "base", nom, "absente"}});
      continue;
    }
    progres.etape("verification de " + nom);
    ++regarde.bases;
    std::vector<Constat> constats = verifier_base(o, nom, voisinage, regarde);
    progres.effacer();
    rapport.ajouter(std::move(constats));
  }
}

int executer(Options& o) {
  if (!o.explique.empty()) return expliquer_code(o.explique);
  if (o.cible.chemin.empty()) throw CLI::RequiredError("CHEMIN");
  if (o.modes.empty() && o.cible.mode.empty()) throw CLI::RequiredError("MODE");
  if (o.modes.empty()) o.modes.push_back(o.cible.mode);
  if (o.cible.mode.empty()) o.cible.mode = o.modes.front();
  controler(o.cible, !o.cible.bases);
  Sortie sortie(o.fichier);
  std::unique_ptr<Rapport> rapport;
  if (o.json)
    rapport = std::make_unique<RapportJson>(sortie.flux(), o.choix);
  else
    rapport = std::make_unique<RapportTexte>(sortie.flux(), o.choix);
  Regarde regarde;
  verifier_collection(o, *rapport, regarde);
  rapport->finir();
  sortie.conclure();
  resumer(*rapport, regarde);
  return rapport->statut();
}

void lire_modes(const std::string& texte, std::vector<std::string>& modes) {
  modes = texte == "toutes" ? std::vector<std::string>(noms_des_modes.begin(), noms_des_modes.end())
                            : decouper(texte);
  const bool connus = std::ranges::all_of(modes, [](const std::string& mode) {
    return std::ranges::find(noms_des_modes, mode) != noms_des_modes.end();
  });
  if (modes.empty() || !connus)
    throw CLI::ValidationError("--modes",
                               "attendu : toutes, ou des modes separes par des virgules");
}

void lire_ignores(const std::string& texte, Choix& choix) {
  for (const std::string& nom : decouper(texte)) {
    const auto code = code_nomme(nom);
    if (!code) throw CLI::ValidationError("--ignore", "code inconnu : '" + nom + "'");
    choix.ignores.insert(*code);
  }
}

void lire_gravites(const std::string& texte, Choix& choix) {
  choix.gravites.clear();
  for (const std::string& mot : decouper(texte)) {
    const std::size_t avant = choix.gravites.size();
    for (const Gravite g : {Gravite::avis, Gravite::avertissement, Gravite::erreur})
      if (mot == nom(g)) choix.gravites.insert(g);
    if (choix.gravites.size() == avant)
      throw CLI::ValidationError("--seulement", "attendu : erreur, avertissement ou avis");
  }
}

}  // namespace

void ajouter_verifie(CLI::App& app, int& statut) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("verifie", "Dit tout ce qui ne va pas dans les cas");
  options_cible(*c, o->cible);
  for (const char* nom : {"CHEMIN", "MODE"}) c->get_option(nom)->required(false);
  c->add_option_function<std::string>(
      "--modes", [o](const std::string& texte) { lire_modes(texte, o->modes); },
      "toutes, ou des modes separes par des virgules : chacun, et s'ils s'accordent");
  c->add_option("--explique", o->explique, "Ce que veut dire un code, V012 (ou tout)");
  c->add_option_function<std::vector<std::string>>(
       "--ignore",
       [o](const std::vector<std::string>& textes) {
         for (const std::string& texte : textes) lire_ignores(texte, o->choix);
       },
       "Codes a taire, separes par des virgules ; se repete")
      ->allow_extra_args(false);
  c->add_option_function<std::string>(
      "--seulement", [o](const std::string& texte) { lire_gravites(texte, o->choix); },
      "Gravites a garder : erreur, avertissement, avis");
  c->add_flag("--tout", o->choix.tout, "Tous les constats, sans les grouper");
  option_mot(*c, "--format", "texte (par defaut) ou json, un objet par constat",
             {{"texte", false}, {"json", true}}, o->json);
  option_sortie(*c, o->fichier);
  c->footer(
      "Un constat : fichier:ligne: sorte numero: quoi; remede [gravite] [code]\n\n"
      "Code de retour : 0 rien ou des avis, 1 des avertissements, 2 des erreurs.\n"
      "Exemple :\n"
      "  topodata verifie cas/ nrm --bases mesh_case_2 --ignore V037");
  c->callback([o, &statut] { statut = executer(*o); });
}

}  // namespace topomine
