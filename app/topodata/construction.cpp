#include "app/topodata/construction.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <string_view>

#include "app/topodata/attributs.h"
#include "app/topodata/console.h"
#include "app/topodata/endroit.h"
#include "app/topodata/options.h"
#include "base/base.h"
#include "base/lecture/fichier.h"
#include "dataset/arff.h"
#include "dataset/caracteristiques.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

std::string nom_de(std::size_t colonne) {
  return std::string(schema[colonne].nom);
}

std::vector<std::string> noms_des_attributs(const BaseBuffer& table) {
  std::vector<std::string> noms;
  for (const auto& [nom, type] : table._attr) noms.push_back(nom);
  return noms;
}

Echelle lire_fichier_echelle(const std::string& fichier) {
  inscrire_entree(fichier);
  std::string texte;
  if (lire_fichier(fichier, texte) != Lecture::faite)
    throw Erreur(fichier + " : echelle illisible");
  Echelle echelle;
  std::string faute;
  if (!lire_echelle(texte, echelle, faute))
    throw Erreur(fichier + " : " + faute + " ; --echelle ecrit un tel fichier");
  return echelle;
}

/// What --classe leaves out, and why.
struct Ecarte {
  std::string_view nom, raison;
};
constexpr std::string_view texte_qui_nomme = "texte, nomme l'exemple ou sa base";
constexpr Ecarte ecartes[]{{nom_collection, texte_qui_nomme},
                           {schema[col_base].nom, texte_qui_nomme},
                           {schema[col_ident].nom, texte_qui_nomme},
                           {schema[col_Num_Base].nom, "nomme la base"},
                           {schema[col_Classe].nom, "dit si l'exemple est reel"}};

/// What --classe may name.
const std::vector<std::string> classes{nom_de(col_TypeC), nom_de(col_Classe), nom_de(col_type)};

/// The words of the formats that have, or have not, a property.
std::vector<std::string> mots_des_formats(bool Format::*propriete, bool voulu) {
  std::vector<std::string> mots;
  for (const Format& f : formats)
    if (f.*propriete == voulu) mots.emplace_back(f.mot);
  return mots;
}

/// "weka (ARFF, par defaut), torch (table de nombres) ou csv".
std::string liste_des_formats() {
  std::vector<std::string> liste;
  for (const Format& f : formats) {
    std::vector<std::string> notes;
    if (!f.sens.empty()) notes.emplace_back(f.sens);
    if (&f == OptionsTable().format) notes.emplace_back("par defaut");
    liste.push_back(std::string(f.mot) + (notes.empty() ? "" : " (" + enumerer(notes) + ")"));
  }
  return enumerer(liste, " ou ");
}

}  // namespace

void options_attributs(CLI::App& commande, OptionsTable& options) {
  commande
      .add_option("--garde", options.garde,
                  "Attributs a montrer, noms ou motifs (BC_*) separes par des virgules ; cache les "
                  "autres ; se repete")
      ->allow_extra_args(false);
  commande.add_option("--cache", options.cache, "Attributs a cacher, de meme ; se repete")
      ->allow_extra_args(false);
}

void option_epsilon(CLI::App& commande, OptionsTable& options) {
  commande.add_option_function<std::string>(
      "--epsilon",
      [&options](const std::string& texte) {
        options.epsilon = reel_strict(texte);
        if (!options.epsilon || !(*options.epsilon >= 0))
          throw Erreur("--epsilon : '" + texte + "' (attendu : un nombre de 0 a 1.79769e+308)");
      },
      "Ecrit 0 pour les nombres plus petits que cela en valeur absolue");
}

void option_applique_echelle(CLI::App& commande, OptionsTable& options) {
  commande.add_option("--applique-echelle", options.applique_echelle,
                      "Ramene les attributs numeriques par les minimums et maximums de ce fichier");
}

void options_table(CLI::App& commande, OptionsTable& options) {
  std::map<std::string, const Format*> mots;
  for (const Format& f : formats) mots[std::string(f.mot)] = &f;
  option_mot(commande, "--format", liste_des_formats(), mots, options.format);
  commande.add_flag("--crlf", options.crlf, "Termine les lignes du csv par CR LF (RFC 4180)");
  options_attributs(commande, options);
  commande.add_option("--classe", options.classe,
                      "Table pour un apprentissage : " + enumerer(classes, " ou ") +
                          " vient en dernier, ce qui nomme l'exemple ou sa base reste de cote");
  commande.add_flag("--sans-constantes", options.sans_constantes,
                    "Laisse de cote les attributs qui n'ont qu'une valeur");
  option_epsilon(commande, options);
  commande.add_flag("--normalise", options.normalise,
                    "Ramene chaque attribut numerique entre 0 et 1");
  option_fichier(commande, "--echelle",
                 "Avec --normalise : ecrit les minimums et maximums dans ce fichier csv",
                 options.echelle);
  option_applique_echelle(commande, options);
  commande.add_option("--nom", options.nom, "Nom de la relation ARFF (topology par defaut)");
}

std::string extensions_des_formats() {
  std::vector<std::string> extensions;
  std::ranges::transform(formats, std::back_inserter(extensions),
                         [](const Format& f) { return std::string(f.extension); });
  return enumerer(extensions, " ou ");
}

std::string regle_de_la_classe() {
  const auto phrase = [](const std::vector<std::string>& mots, const char* un, const char* des,
                         const char* suite) {
    return enumerer(mots, " et ") + (mots.size() > 1 ? des : un) + suite;
  };
  return "Sans --classe, " +
         phrase(mots_des_formats(&Format::termine_par_la_classe, true), " termine", " terminent",
                " chaque exemple par Classe, meme cachee ; ") +
         phrase(mots_des_formats(&Format::termine_par_la_classe, false), " n'ecrit", " n'ecrivent",
                " que ce qui est montre.");
}

void montrer_les_voulus(BaseBuffer& table, const OptionsTable& options) {
  if (!options.garde.empty() && !options.cache.empty())
    throw Erreur("--garde et --cache s'excluent : --garde cache deja les autres");
  const std::vector<std::string> connus = noms_des_attributs(table);
  if (!options.garde.empty()) {
    const std::vector<std::string> noms = noms_voulus(options.garde, connus);
    table.hide_all();
    for (const std::string& nom : noms) table.unhide_attr(nom);
  }
  if (!options.cache.empty())
    for (const std::string& nom : noms_voulus(options.cache, connus)) table.hide_attr(nom);
}

Atelier::Atelier(const OptionsTable& options, const std::vector<Provenance>& liste)
    : options_(options),
      liste_(liste),
      plusieurs_(std::ranges::any_of(
          liste, [&](const Provenance& p) { return p.chemin != liste[0].chemin; })),
      cadre_(options.format->ecrire_mot(options.nom)) {
  controler_options();
  cadre_.change_type(nom_de(col_Num_Base), type_num_base(liste));
  // The writers end every row with the class even when it is hidden. Named as the class column it
  // is declared all the same: header and rows agree.
  cadre_._num_classe = col_Classe;
  if (plusieurs_ && options.format->dit_la_collection) ajouter_collection(cadre_, liste, tel_quel);
  montrer_les_voulus(cadre_, options);
  if (options.classe) choisir_classe();
  controler_noms();
  if (options.applique_echelle.empty()) return;
  echelle_ = lire_fichier_echelle(options.applique_echelle);
  if (const auto manquants = echelle_.manquants(cadre_); !manquants.empty())
    throw Erreur(options.applique_echelle + " : rien pour " + enumerer(manquants) +
                 " ; les y ajouter, ou les laisser de cote par --cache");
}

void Atelier::controler_options() const {
  if (options_.crlf && !options_.format->choisit_fin_de_ligne)
    throw Erreur("--crlf demande --format " +
                 enumerer(mots_des_formats(&Format::choisit_fin_de_ligne, true), " ou "));
  if (!options_.echelle.empty() && !options_.normalise)
    throw Erreur("--echelle demande --normalise : sans lui il n'y a pas d'echelle a ecrire");
  if (options_.normalise && !options_.applique_echelle.empty())
    throw Erreur("--normalise et --applique-echelle s'excluent : une seule echelle");
}

void Atelier::choisir_classe() {
  const std::string& classe = *options_.classe;
  if (std::ranges::find(classes, classe) == classes.end())
    throw Erreur("--classe : '" + classe + "' (attendu : " + enumerer(classes, " ou ") + ")");
  if (!options_.cache.empty() && !cadre_._aff.at(classe))
    throw Erreur("--cache cache " + classe + ", que --classe demande");
  std::string dit;
  const char* separation = "";
  for (std::size_t i = 0; i < std::size(ecartes); ++i) {
    const std::string nom(ecartes[i].nom);
    const auto montre = cadre_._aff.find(nom);
    if (nom == classe || montre == cadre_._aff.end() || !montre->second) continue;
    montre->second = false;
    dit += separation + nom;
    separation = ", ";
    // One reason for those that share it.
    if (i + 1 < std::size(ecartes) && ecartes[i + 1].raison == ecartes[i].raison) continue;
    dit += " (" + std::string(ecartes[i].raison) + ")";
  }
  cadre_.hide_attr(classe);
  if (cadre_.nb_attr_aff() == 0) throw Erreur("il ne reste aucun attribut pour predire " + classe);
  cadre_.unhide_attr(classe);
  cadre_._num_classe = cadre_.num_attr(classe);
  if (!dit.empty()) dire("--classe " + classe + " laisse de cote " + dit);
}

void Atelier::controler_noms() const {
  if (!options_.format->toute_valeur && cadre_._aff.at(nom_de(col_base)))
    for (const Provenance& p : liste_)
      if (p.base.find_first_of(a_proteger_arff) != std::string::npos)
        throw Erreur("base '" + p.base + "' : ce nom ne s'ecrit que dans le format " +
                     enumerer(mots_des_formats(&Format::toute_valeur, true), " ou "));
}

std::vector<Sommes::Attribut> Atelier::attributs_montres() const {
  std::vector<Sommes::Attribut> montres;
  for (const auto& [nom, type] : cadre_._attr)
    if (nom != nom_collection && cadre_._aff.at(nom)) montres.push_back({nom, type});
  return montres;
}

bool Atelier::au_fil() const {
  return !options_.format->veut_le_total && !options_.normalise && !options_.sans_constantes;
}

void Atelier::ajouter(BaseBuffer& exemples, Base& base, const Provenance& p) const {
  BaseBuffer ceux_ci = table_de(base);
  const std::string numero = std::to_string(p.numero);
  for (BaseBuffer::Exemple& exemple : ceux_ci._expl) exemple[col_Num_Base] = numero;
  if (options_.epsilon) annuler_poussieres(ceux_ci, *options_.epsilon);
  exemples._expl.insert(exemples._expl.end(), std::make_move_iterator(ceux_ci._expl.begin()),
                        std::make_move_iterator(ceux_ci._expl.end()));
}

BaseBuffer Atelier::construire(const std::string& mode, Progres& progres) const {
  BaseBuffer exemples;
  pour_chaque_base(liste_, mode, progres,
                   [&](Base& base, const Provenance& p) { ajouter(exemples, base, p); });
  return exemples;
}

void Atelier::mettre_a_l_echelle(BaseBuffer& exemples) {
  if (options_.normalise) echelle_ = Echelle::mesurer(exemples);
  appliquer_echelle(exemples);
}

void Atelier::appliquer_echelle(BaseBuffer& exemples) const {
  if (echelle_.bornes.empty()) return;
  echelle_.appliquer(exemples);
  // Scaling may bring values below epsilon.
  if (options_.epsilon) annuler_poussieres(exemples, *options_.epsilon);
}

void Atelier::cacher_constantes(const BaseBuffer& exemples) {
  if (!options_.sans_constantes) return;
  std::vector<std::string> caches;
  bool sans_classe = false;
  for (const std::string& nom : attributs_constants(exemples)) {
    if (nom == options_.classe) continue;
    if (cadre_._aff.at(nom)) caches.push_back(nom);
    cadre_.hide_attr(nom);
    // A hidden class column no longer ends the rows; the last shown column does.
    sans_classe = sans_classe || cadre_._num_classe == cadre_.num_attr(nom);
  }
  for (int col = 0; col < static_cast<int>(cadre_._attr.size()) && sans_classe; ++col)
    if (cadre_._aff.at(cadre_.nom_attr(col))) cadre_._num_classe = col;
  if (cadre_.nb_attr_aff() == (options_.classe ? 1 : 0))
    throw Erreur("--sans-constantes : tous les attributs sont constants, il n'en reste aucun");
  if (!caches.empty()) dire("--sans-constantes laisse de cote " + enumerer(caches));
}

BaseBuffer Atelier::habiller(BaseBuffer& exemples) const {
  BaseBuffer habille;
  habille._nom = cadre_._nom;
  habille._expl = std::move(exemples._expl);
  exemples._expl.clear();
  if (cadre_._attr.size() > habille._attr.size())
    ajouter_collection(habille, liste_, options_.format->ecrire_mot);
  habille._attr = cadre_._attr;
  habille._aff = cadre_._aff;
  habille._num_classe = cadre_._num_classe;
  if (options_.classe && options_.format->marque_absents) marquer_absents(habille);
  return habille;
}

void Atelier::ecrire(std::ostream& out, BaseBuffer& habille, Morceau morceau) const {
  morceau.fin = options_.crlf ? FinDeLigne::crlf : FinDeLigne::lf;
  options_.format->ecrire(out, habille, morceau);
}

void Atelier::ecrire_echelle(std::ostream& out) const {
  topomine::ecrire_echelle(out, echelle_, cadre_);
}

void Atelier::ecrire_tout(std::ostream& out, BaseBuffer& exemples) const {
  BaseBuffer habille = habiller(exemples);
  ecrire(out, habille, {true, true, habille._expl.size(), {}});
}

}  // namespace topomine
