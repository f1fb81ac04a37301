#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "app/topodata/progres.h"
#include "app/topodata/sortie.h"
#include "dataset/basebuffer.h"

class Base;
namespace CLI {
class App;
}

namespace topomine {

// What the sub-commands share: the cases they read, the table they make of them, its three forms.

/// The cases that a command reads.
struct Cible {
  std::string chemin;  ///< data directory, ending in its separator once checked
  std::string mode;
  std::optional<std::string> bases;  ///< names separated by commas; without, the built-in ones

  std::vector<std::string> noms() const;
};

/// Adds CHEMIN and MODE, and --bases where a command takes several bases.
void options_cible(CLI::App& commande, Cible& cible, bool plusieurs = true);
/// Completes the directory's name. Throws Erreur for an unknown directory or mode, a base that is
/// named twice, or one without a folder, unless they may be missing.
void controler(Cible& cible, bool bases_absentes = false);
/// Loads a base; throws Erreur, with what the reader said, when it does not load.
void charger_base(Base& base, Progres& progres);

enum class Format { weka, torch, csv };

/// How a table is made and written.
struct OptionsTable {
  Format format = Format::weka;
  bool normalise = false;
  std::optional<std::string> garde, cache;  ///< attribute names separated by commas
  std::string nom = "topology";
};

/// --garde and --cache.
void options_attributs(CLI::App& commande, OptionsTable& options);
/// All of them.
void options_table(CLI::App& commande, OptionsTable& options);

/// The table of the bases, with its attributes hidden and its numbers normalised as asked. Each
/// base is shown to `voir`, when there is one, while it is loaded.
BaseBuffer construire(Cible& cible, const OptionsTable& options, Progres& progres,
                      const std::function<void(const Base&)>& voir = {});

void ecrire(BaseBuffer& table, Format format, std::ostream& out);
const char* extension(Format format);

/// The parts of a text between commas, without blanks around them and without empty ones.
std::vector<std::string> decouper(const std::string& texte);

/// A number as the table writes it.
std::string en_texte(double valeur);

}  // namespace topomine
