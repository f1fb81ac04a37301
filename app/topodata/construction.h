#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "app/topodata/cible.h"
#include "dataset/basebuffer.h"
#include "dataset/echelle.h"
#include "dataset/formats.h"
#include "dataset/matrice.h"

namespace topomine {

// From bases to a table in its form: what table, partage and faux share.

/// How a table is made and written.
struct OptionsTable {
  const Format* format = formats.data();
  bool crlf = false, normalise = false, sans_constantes = false;
  std::vector<std::string> garde, cache;  ///< names or patterns, separated by commas
  std::optional<std::string> classe;      ///< TypeC, Classe or type
  std::optional<double> epsilon;          ///< 0 or more
  std::string echelle, applique_echelle;  ///< files; empty for none
  std::string nom = "topology";
};

/// --garde and --cache.
void options_attributs(CLI::App& commande, OptionsTable& options);
void option_epsilon(CLI::App& commande, OptionsTable& options);
void option_applique_echelle(CLI::App& commande, OptionsTable& options);
/// All of them.
void options_table(CLI::App& commande, OptionsTable& options);

/// ".arff, .txt ou .csv".
std::string extensions_des_formats();
/// Which formats end a row with the class even when it is hidden, for the help.
std::string regle_de_la_classe();

/// Shows the attributes of a table that --garde and --cache leave.
void montrer_les_voulus(BaseBuffer& table, const OptionsTable& options);

/// Tables as the options want them, for a list of bases. Making one throws Erreur at options that
/// contradict each other or do not fit the list, and says on standard error what --classe leaves
/// out: before anything is read.
class Atelier {
 public:
  Atelier(const OptionsTable& options, const std::vector<Provenance>& liste);

  /// Attributes that are shown, without that of the collection.
  std::vector<Sommes::Attribut> attributs_montres() const;
  /// The scale that is in use.
  const Echelle& echelle() const { return echelle_; }

  /// True when rows can be written base by base, without knowing later ones.
  bool au_fil() const;
  bool plusieurs_collections() const { return plusieurs_; }

  /// Appends the examples of a loaded base, to a table with the attributes of the schema.
  void ajouter(BaseBuffer& exemples, Base& base, const Provenance& p) const;
  /// The examples of all bases.
  BaseBuffer construire(const std::string& mode, Progres& progres) const;
  /// Scales a table: by its own bounds with --normalise, or by the file's.
  void mettre_a_l_echelle(BaseBuffer& exemples);
  /// The same for another table, without measuring.
  void appliquer_echelle(BaseBuffer& exemples) const;
  /// Hides what is constant in this table, from now on, and says so.
  void cacher_constantes(const BaseBuffer& exemples);
  /// The examples moved into a table that is ready to be written.
  BaseBuffer habiller(BaseBuffer& exemples) const;

  /// One piece of the table; `habille` is what habiller made.
  void ecrire(std::ostream& out, BaseBuffer& habille, Morceau morceau = {}) const;
  /// A whole table.
  void ecrire_tout(std::ostream& out, BaseBuffer& exemples) const;
  /// The scale measured last.
  void ecrire_echelle(std::ostream& out) const;

 private:
  void controler_options() const;
  void choisir_classe();
  void controler_noms() const;

  const OptionsTable& options_;
  const std::vector<Provenance>& liste_;
  bool plusieurs_;    // collections
  BaseBuffer cadre_;  // attributes, flags, class; no examples
  Echelle echelle_;
};

}  // namespace topomine
