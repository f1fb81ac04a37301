#include "app/topodata/construction.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "app/filtre.h"
#include "app/topodata/console.h"
#include "app/topodata/options.h"
#include "base/base.h"
#include "base/lecture/chargement.h"
#include "dataset/csv.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

namespace topomine {

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

std::string en_texte(double valeur) {
  std::string texte;
  ajouter_nombre(texte, valeur);
  return texte;
}

std::vector<std::string> Cible::noms() const {
  if (bases) return decouper(*bases);
  return {bases_integrees.begin(), bases_integrees.end()};
}

void options_cible(CLI::App& commande, Cible& cible, bool plusieurs) {
  commande
      .add_option("CHEMIN", cible.chemin, "Dossier des cas : climite.cfg et un dossier par base")
      ->required();
  commande.add_option("MODE", cible.mode, "ext, nrm ou min")->required();
  if (plusieurs)
    commande.add_option("--bases", cible.bases,
                        "Noms de bases separes par des virgules (sinon mesh_case_1 a _8)");
}

void controler(Cible& cible, bool bases_absentes) {
  constexpr std::array<std::string_view, 3> modes{"ext", "nrm", "min"};
  if (std::ranges::find(modes, cible.mode) == modes.end())
    throw Erreur("mode inconnu : '" + cible.mode + "' (attendu : ext, nrm ou min)");
  std::error_code erreur;
  if (!std::filesystem::is_directory(cible.chemin, erreur))
    throw Erreur("dossier inconnu : '" + cible.chemin + "'");
  if (!cible.chemin.ends_with('/')) cible.chemin += '/';
  std::vector<std::string> noms = cible.noms();
  if (noms.empty()) throw Erreur("aucune base dans '" + *cible.bases + "'");
  for (const std::string& nom : noms)
    if (!bases_absentes && !std::filesystem::is_directory(cible.chemin + nom, erreur))
      throw Erreur("base inconnue : '" + nom + "' (pas de dossier " + (cible.chemin + nom) + ")");
  std::ranges::sort(noms);
  if (const auto repetee = std::ranges::adjacent_find(noms); repetee != noms.end())
    throw Erreur("base donnee deux fois : '" + *repetee + "'");
}

void charger_base(Base& base, Progres& progres) {
  progres.etape("lecture de " + base.nom);
  const Chargement c = charger(base);
  if (!c.fait) throw Erreur("base " + base.nom + " non chargee : " + c.dit);
  if (c.avertissements == 0) return;
  progres.effacer();
  dire("base " + base.nom + " : " + std::to_string(c.avertissements) +
       " avertissement(s) a la lecture ; topodata verifie dit ou");
}

void options_attributs(CLI::App& commande, OptionsTable& options) {
  auto* garde = commande.add_option("--garde", options.garde,
                                    "Attributs a montrer, separes par des virgules ; cache les "
                                    "autres");
  commande.add_option("--cache", options.cache, "Attributs a cacher, separes par des virgules")
      ->excludes(garde);
}

void options_table(CLI::App& commande, OptionsTable& options) {
  const std::map<std::string, Format> formats{
      {"weka", Format::weka}, {"torch", Format::torch}, {"csv", Format::csv}};
  option_mot(commande, "--format", "weka (ARFF, par defaut), torch (table de nombres) ou csv",
             formats, options.format);
  commande.add_flag("--normalise", options.normalise,
                    "Ramene chaque attribut numerique entre 0 et 1");
  options_attributs(commande, options);
  commande.add_option("--nom", options.nom, "Nom de la relation ARFF (topology par defaut)");
}

namespace {

/// The named columns of the table; throws at an unknown one, and when there is none.
std::vector<std::string> attributs(const BaseBuffer& table, const std::string& texte) {
  std::vector<std::string> noms = decouper(texte);
  if (noms.empty()) throw Erreur("aucun attribut dans '" + texte + "'");
  for (const std::string& nom : noms)
    if (table.num_attr(nom) < 0) throw Erreur("attribut inconnu : '" + nom + "'");
  return noms;
}

void choisir_attributs(BaseBuffer& table, const OptionsTable& options) {
  if (options.garde) {
    const std::vector<std::string> noms = attributs(table, *options.garde);
    filtre(table);
    for (const std::string& nom : noms) table.unhide_attr(nom);
  }
  if (options.cache)
    for (const std::string& nom : attributs(table, *options.cache)) table.hide_attr(nom);
}

constexpr std::string_view a_proteger = " \t\r\n'\"\\,%{}?";

/// An ARFF word: quoted when it is not plain.
std::string mot_arff(const std::string& texte) {
  if (!texte.empty() && texte.find_first_of(a_proteger) == std::string::npos) return texte;
  std::string mot = "'";
  for (const char c : texte) {
    if (c == '\'' || c == '\\') mot += '\\';
    mot += c == '\n' || c == '\r' ? ' ' : c;
  }
  return mot + "'";
}

}  // namespace

BaseBuffer construire(Cible& cible, const OptionsTable& options, Progres& progres,
                      const std::function<void(const Base&)>& voir) {
  BaseBuffer table(options.format == Format::weka ? mot_arff(options.nom) : options.nom);
  choisir_attributs(table, options);
  // The writers end every row with the class even when it is hidden. Named as the class column it
  // is declared all the same: header and rows agree.
  table._num_classe = col_Classe;
  controler(cible);
  for (const std::string& nom : cible.noms()) {
    // The other two forms write values as they stand.
    if (options.format != Format::csv && nom.find_first_of(a_proteger) != std::string::npos)
      throw Erreur("base '" + nom + "' : ce nom ne s'ecrit que dans le format csv");
    Base base(nom, cible.chemin, cible.mode);
    charger_base(base, progres);
    const std::size_t avant = table._expl.size();
    table.add_base(base);
    if (table._expl.size() - avant != base.blocs.size()) throw std::bad_alloc();
    if (voir) voir(base);
  }
  if (options.normalise) {
    progres.etape("normalisation");
    if (!table.normalize()) throw std::bad_alloc();
  }
  return table;
}

void ecrire(BaseBuffer& table, Format format, std::ostream& out) {
  switch (format) {
    case Format::weka:
      table.Print_weka(out);
      return;
    case Format::torch:
      table.Print_torch(out);
      return;
    case Format::csv:
      ecrire_csv(out, table);
      return;
  }
}

const char* extension(Format format) {
  return format == Format::weka ? ".arff" : format == Format::torch ? ".txt" : ".csv";
}

}  // namespace topomine
