#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/base.h"
#include "base/configuration.h"
#include "base/lecture/climite.h"
#include "fuzz/cibles.h"
#include "fuzz/outils.h"
#include "verifie/catalogue.h"
#include "verifie/journal_constats.h"

using namespace topomine;

namespace {

using Rangee = std::map<std::string, std::string>;

enum class Fin { lue, entete_incomplete, ligne_fautive, demesure };

/// The reading in its slow and literal form: stream, getline, positions.
struct ModeleClimite {
  std::vector<std::string> colonnes;
  std::map<int, Rangee> table;
  std::int64_t octets = 0;  // of the rows, each with all its columns

  static bool couper(const std::string& ligne, std::vector<std::string>& champs) {
    champs.clear();
    std::size_t place = 0;
    while (place < ligne.size()) {
      const std::size_t fin = ligne.find(';', place);
      if (fin == std::string::npos)
        return ligne.find_first_not_of(" \t\r", place) == std::string::npos;
      std::string champ = ligne.substr(place, fin - place);
      while (!champ.empty() && (champ[0] == ' ' || champ[0] == '\t')) champ.erase(0, 1);
      champs.push_back(champ);
      place = fin + 1;
    }
    return true;
  }

  Fin lire(std::string_view texte) {
    std::stringstream flux{std::string(texte)};
    std::string ligne;
    std::getline(flux, ligne);
    if (flux.eof()) return Fin::entete_incomplete;
    std::vector<std::string> champs;
    if (!couper(ligne, colonnes)) {
      colonnes.clear();
      return Fin::ligne_fautive;
    }
    Rangee rangee;
    Modele nombres;
    while (flux.good()) {
      std::getline(flux, ligne);
      if (flux.eof()) break;
      if (!couper(ligne, champs) || champs.size() > colonnes.size()) return Fin::ligne_fautive;
      for (std::size_t n = 0; n < champs.size(); ++n) rangee[colonnes[n]] = champs[n];
      for (const std::string& nom : colonnes) {
        const auto valeur = rangee.find(nom);
        octets += static_cast<std::int64_t>(100 + nom.size() +
                                            (valeur == rangee.end() ? 0 : valeur->second.size()));
      }
      table[nombres.entier(rangee["Damas code"])] = rangee;
    }
    return Fin::lue;
  }
};

/// What the strict reading has no error about, the run reads, and reads alike.
void comparer_strict(std::string_view entree, Fin fin) {
  ConfigLue cas;
  lire_config_strict(cas, entree);
  for (const Constat& c : cas.constats)
    if (fiche(c.code).gravite == Gravite::erreur) return;
  PROMET(fin == Fin::lue);
  const Base base;
  for (const auto& [code, ligne] : cas.codes) {
    PROMET(base._CL(code, "Family") == ligne.famille);
    PROMET(base.DAM2BCCODE({code}) == std::vector<int>{ligne.bccode.value()});
  }
  // An empty line before any other gives code 0, with nothing.
  for (const auto& [code, rangee] : Base::list_CLim)
    PROMET(cas.codes.contains(code) || (code == 0 && base._CL(0, "Damas code").empty()));
}

}  // namespace

void cible_climite(std::string_view entree) {
  oublier_configuration();
  JournalEssai journal;
  Fin fin = Fin::lue;
  try {
    if (!parcourir_climite(entree, journal)) fin = Fin::entete_incomplete;
  } catch (const ClimiteDemesure&) {
    fin = Fin::demesure;
  } catch (const std::exception&) {
    fin = Fin::ligne_fautive;
  }
  ModeleClimite modele;
  if (fin == Fin::demesure) {
    modele.lire(entree);
    PROMET(modele.octets > configuration_max);
    return comparer_strict(entree, fin);
  }
  PROMET(modele.lire(entree) == fin);
  PROMET(modele.colonnes == Base::list_attr);
  PROMET(modele.table == Base::list_CLim);
  comparer_strict(entree, fin);
  if (fin != Fin::lue) return;

  const Base base;
  std::vector<int> codes{7};
  for (const auto& [code, rangee] : modele.table) {
    codes.push_back(code);
    if (code % 3 == 0) codes.push_back(code / 3);  // most likely an unknown one
    for (const auto& [colonne, valeur] : rangee) PROMET(base._CL(code, colonne) == valeur);
  }
  PROMET(base._CL(7, "Family") == (modele.table.contains(7) && modele.table[7].contains("Family")
                                       ? modele.table[7]["Family"]
                                       : ""));
  const std::vector<int> bccodes = base.DAM2BCCODE(codes);
  PROMET(bccodes.size() == codes.size());
  Modele nombres;
  for (std::size_t i = 0; i < codes.size(); ++i)
    PROMET(bccodes[i] == nombres.entier(base._CL(codes[i], "BCCODE")));
}
