#include "base/lecture/climite.h"

#include <algorithm>
#include <map>
#include <string>

#include "base/base.h"
#include "base/configuration.h"
#include "base/lecture/fichier.h"
#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

constexpr std::int64_t octets_par_champ = 100;

/// What the rows leave in Base::list_CLim. One row map and one conversion for all of them: a short
/// row keeps the values of the row above, and what a code leaves unread spoils the codes below.
class Rangees {
 public:
  explicit Rangees(const std::vector<std::string_view>& colonnes)
      : colonnes_(colonnes.begin(), colonnes.end()) {
    rangee_.try_emplace(std::string(colonne_code));
  }

  void ajouter(LignesClimite& lignes) {
    const std::vector<std::string_view>& champs = lignes.champs();
    if (champs.size() > colonnes_.size()) throw ClimiteFautif{};
    if (champs.empty() && repetable_) return;
    lignes.compter();
    if (lignes.demesure()) throw ClimiteDemesure{};
    for (std::size_t n = 0; n < champs.size(); ++n) {
      rangee_[colonnes_[n]] = champs[n];
      if (colonnes_[n] == colonne_code) texte_code_ = champs[n];
    }
    const bool sans_reste = nombres_.sans_reste();
    const int code = nombres_.entier(texte_code_);
    repetable_ = (sans_reste && nombres_.sans_reste()) || nombres_.bouche();
    Base::list_CLim[code] = rangee_;
  }

 private:
  const std::vector<std::string> colonnes_;
  std::map<std::string, std::string> rangee_;
  std::string_view texte_code_;
  FluxNombres nombres_;
  bool repetable_ = false;  // the same row once more would change nothing
};

}  // namespace

bool LignesClimite::suivante() {
  if (reste_.empty()) return false;
  const std::size_t fin = reste_.find('\n');
  std::string_view ligne = reste_.substr(0, fin);
  finie_ = fin != std::string_view::npos;
  reste_.remove_prefix(finie_ ? fin + 1 : reste_.size());
  ++numero_;
  constexpr std::string_view blancs = " \t\r";
  blanche_ = ligne.find_first_not_of(blancs) == std::string_view::npos;
  champs_.clear();
  for (std::size_t n; (n = ligne.find(';')) != std::string_view::npos;) {
    std::string_view& champ = champs_.emplace_back(ligne.substr(0, n));
    champ.remove_prefix(std::min(champ.find_first_not_of(" \t"), champ.size()));
    ligne.remove_prefix(n + 1);
  }
  terminee_ = ligne.find_first_not_of(blancs) == std::string_view::npos;
  if (numero_ > 1) return true;
  tailles_.assign(champs_.size(), 0);
  for (const std::string_view nom : champs_)
    octets_rangee_ += octets_par_champ + static_cast<std::int64_t>(nom.size());
  return true;
}

void LignesClimite::compter() {
  for (std::size_t n = 0; n < std::min(champs_.size(), tailles_.size()); ++n) {
    octets_rangee_ += static_cast<std::int64_t>(champs_[n].size());
    octets_rangee_ -= static_cast<std::int64_t>(tailles_[n]);
    tailles_[n] = champs_[n].size();
  }
  octets_ += octets_rangee_;
}

bool parcourir_climite(std::string_view texte, Journal& journal) {
  LignesClimite lignes(texte);
  const auto prendre = [&] {
    if (!lignes.suivante() || !lignes.finie()) return false;
    if (!lignes.terminee()) throw ClimiteFautif{};
    return true;
  };
  if (!prendre()) {
    journal.echec("Fichier non_valide...");
    return false;
  }
  // Rows use this file's header, not list_attr, which may begin with the names of an earlier
  // reading that failed.
  Base::list_attr.insert(Base::list_attr.end(), lignes.champs().begin(), lignes.champs().end());
  Rangees rangees(lignes.champs());
  while (prendre()) rangees.ajouter(lignes);
  return true;
}

bool lire_climite(const std::string& repertoire, Journal& journal) {
  if (Base::init_cl_cfg) return true;
  try {
    std::string texte;
    switch (lire_fichier(repertoire + "climite.cfg", texte)) {
      case Lecture::faite:
        if (!parcourir_climite(texte, journal)) return false;
        break;
      case Lecture::interrompue:
        throw ClimiteFautif{};
      default:
        break;  // accepted in silence: no boundary condition is known
    }
    return Base::init_cl_cfg = true;
  } catch (const ClimiteDemesure&) {
    journal.avertissement(
        "climite.cfg trop grand : ses rang\351es, compl\351t\351es, d\351passent " +
        std::to_string(configuration_max >> 20) + " Mio");
  } catch (const std::exception&) {
    // A faulty line, a reading that broke off, or no memory.
  }
  journal.echec("Erreur acquisition climite.cfg.... ");
  return false;
}

}  // namespace topomine
