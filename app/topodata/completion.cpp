#include "app/topodata/completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <ostream>
#include <system_error>

#include "base/fichiers.h"
#include "base/modes.h"
#include "dataset/schema.h"
#include "verifie/catalogue.h"

namespace fs = std::filesystem;

namespace topomine {

namespace {

using Textes = std::vector<std::string>;

const Textes modes(noms_des_modes.begin(), noms_des_modes.end());

/// What is already on the command line.
struct Ligne {
  const CLI::App* commande = nullptr;
  const CLI::Option* attend_valeur = nullptr;  ///< option whose value comes next
  Textes arguments;                            ///< values of the positional ones
};

const CLI::App* commande_nommee(const CLI::App& app, const std::string& nom) {
  for (const CLI::App* c : app.get_subcommands({}))
    if (c->check_name(nom)) return c;
  return nullptr;
}

Ligne lire_ligne(const CLI::App& app, const Textes& mots) {
  Ligne l;
  for (std::size_t i = 0; i + 1 < mots.size(); ++i) {
    const std::string& mot = mots[i];
    if (!l.commande) {
      l.commande = commande_nommee(app, mot);
    } else if (l.attend_valeur) {
      l.attend_valeur = nullptr;
    } else if (mot.starts_with('-') && mot.size() > 1) {
      const CLI::Option* option = l.commande->get_option_no_throw(mot);
      if (option && option->get_type_size() != 0) l.attend_valeur = option;
    } else {
      l.arguments.push_back(mot);
    }
  }
  return l;
}

/// Folders that hold files of a base: named after the folder.
Textes bases_du_dossier(const std::string& chemin) {
  Textes noms;
  std::error_code erreur;
  for (fs::directory_iterator d(chemin, erreur), fin; !erreur && d != fin; d.increment(erreur)) {
    const std::string nom = d->path().filename().string();
    std::error_code refus;
    for (fs::directory_iterator f(d->path(), refus); !refus && f != fin; f.increment(refus)) {
      const std::string fichier = f->path().filename().string();
      if (!fichier.starts_with(nom + '_') && fichier != nom + fin_de_nom(fic_def)) continue;
      noms.push_back(nom);
      break;
    }
  }
  std::ranges::sort(noms);
  return noms;
}

Textes attributs() {
  Textes noms;
  for (const Attribut& a : schema) noms.emplace_back(a.nom);
  return noms;
}

Textes codes() {
  Textes noms;
  for (const Fiche& f : catalogue()) noms.push_back(nom(f.code));
  return noms;
}

Textes plus(Textes mots, const char* un_autre) {
  mots.emplace_back(un_autre);
  return mots;
}

/// The words in a type like "MOT:{weka,torch}".
Textes mots_du_type(const std::string& type) {
  const std::size_t debut = type.find('{'), fin = type.rfind('}');
  if (debut == std::string::npos) return {};
  return CLI::detail::split(type.substr(debut + 1, fin - debut - 1), ',');
}

Textes valeurs(const CLI::Option& option, const Ligne& ligne) {
  const std::string type = option.get_type_name();
  if (type == "MODE") return modes;
  if (type == "MODES") return plus(modes, "toutes");
  if (type == "BASE" || type == "BASES") {
    const Textes noms = ligne.arguments.empty() ? Textes() : bases_du_dossier(ligne.arguments[0]);
    return type == "BASE" ? noms : plus(noms, "toutes");
  }
  if (type.starts_with("ATTRIBUT")) return attributs();
  if (type == "COULEUR") return plus(attributs(), "famille");
  if (type == "CODE") return plus(codes(), "tout");
  if (type == "CODES") return codes();
  if (type == "GRAVITES")
    return {std::string(nom(Gravite::erreur)), std::string(nom(Gravite::avertissement)),
            std::string(nom(Gravite::avis))};
  if (type == "K|bases") return {"bases"};
  if (type == "DOSSIER") return {":dossiers"};
  if (type == "FICHIER") return {":fichiers"};
  return mots_du_type(type);
}

Textes options(const CLI::App& commande) {
  Textes noms;
  for (const CLI::Option* o : commande.get_options())
    for (const std::string& nom : o->get_lnames()) noms.push_back("--" + nom);
  return noms;
}

Textes commandes(const CLI::App& app) {
  Textes noms;
  for (const CLI::App* c : app.get_subcommands({})) noms.push_back(c->get_name());
  return noms;
}

Textes candidats(const CLI::App& app, const Ligne& l, const std::string& mot) {
  if (!l.commande) return mot.starts_with('-') ? options(app) : commandes(app);
  if (l.attend_valeur) return valeurs(*l.attend_valeur, l);
  if (mot.starts_with('-')) return options(*l.commande);
  if (l.commande->get_name() == "help") return l.arguments.empty() ? commandes(app) : Textes();
  std::size_t rang = 0;
  for (const CLI::Option* o : l.commande->get_options())
    if (o->get_positional() && rang++ == l.arguments.size()) return valeurs(*o, l);
  return {};
}

/// A list of names is completed at its last one, and the others stay in front of it.
std::string debut_de_liste(const Ligne& l, const std::string& mot) {
  if (!l.attend_valeur || !l.attend_valeur->get_type_name().ends_with('S')) return "";
  return mot.substr(0, mot.rfind(',') + 1);
}

}  // namespace

void proposer(const CLI::App& app, const std::vector<std::string>& mots, std::ostream& out) {
  const std::string mot = mots.empty() ? std::string() : mots.back();
  const Ligne l = lire_ligne(app, mots);
  const std::string debut = debut_de_liste(l, mot);
  for (const std::string& c : candidats(app, l, mot)) {
    const bool deja = (',' + debut).find(',' + c + ',') != std::string::npos;
    if (c.starts_with(':') || (!deja && (debut + c).starts_with(mot))) out << debut << c << '\n';
  }
}

}  // namespace topomine
