#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/topodata/progres.h"
#include "app/topodata/sortie.h"
#include "dataset/collection.h"

class Base;
namespace CLI {
class App;
}

namespace topomine {

/// The cases that a command reads.
struct Cible {
  std::string chemin;                ///< data directory, ending in its separator once checked
  std::string mode;                  ///< "ext", "nrm" or "min" once checked
  std::vector<std::string> avec;     ///< directories of further collections
  std::optional<std::string> bases;  ///< names separated by commas, or "toutes"; without, the
                                     ///< built-in ones

  /// Names of the bases of the first collection.
  std::vector<std::string> noms() const { return noms_dans(chemin); }
  /// Those of the collection in this directory.
  std::vector<std::string> noms_dans(const std::string& dossier) const;
  /// The bases of all collections, with their numbers.
  std::vector<Provenance> liste() const;
};

/// Adds CHEMIN and MODE, and --bases where a command takes several bases.
void options_cible(CLI::App& commande, Cible& cible, bool plusieurs = true);
/// Adds --avec.
void option_avec(CLI::App& commande, Cible& cible);
/// Completes the directories' names; from now on the files of these bases are no outputs. Throws
/// Erreur for an unknown directory or mode, a collection or base that is named twice, or a base
/// without a folder, unless they may be missing.
void controler(Cible& cible, bool bases_absentes = false);

/// Loads a base; throws Erreur, with what the reader said, when it does not load.
void charger_base(Base& base, Progres& progres);

/// Loads the bases of a list, each collection's with its own climite.cfg, and shows each to `voir`
/// before it is released.
void pour_chaque_base(const std::vector<Provenance>& liste, const std::string& mode,
                      Progres& progres, const std::function<void(Base&, const Provenance&)>& voir);

/// The name of a base without the final / that completion types.
std::string sans_barre(std::string nom);

/// The parts of a text between commas, without blanks around them and without empty ones.
std::vector<std::string> decouper(const std::string& texte);

}  // namespace topomine
