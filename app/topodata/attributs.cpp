#include "app/topodata/attributs.h"

#include <algorithm>

#include "app/topodata/cible.h"
#include "dataset/motifs.h"

namespace topomine {

namespace {

[[noreturn]] void attribut_inconnu(const std::string& nom, const std::vector<std::string>& connus) {
  throw Erreur("attribut inconnu : '" + nom + "' (le plus proche : " +
               nom_le_plus_proche(nom, connus) + " ; topodata attributs les dit tous)");
}

}  // namespace

std::vector<std::string> noms_voulus(const std::vector<std::string>& listes,
                                     const std::vector<std::string>& connus) {
  std::vector<std::string> noms;
  for (const std::string& liste : listes) {
    const std::vector<std::string> motifs = decouper(liste);
    if (motifs.empty()) throw Erreur("aucun attribut dans '" + liste + "'");
    for (const std::string& motif : motifs) {
      const auto avant = noms.size();
      std::ranges::copy_if(connus, std::back_inserter(noms),
                           [&](const std::string& nom) { return correspond(motif, nom); });
      if (noms.size() == avant) attribut_inconnu(motif, connus);
    }
  }
  return noms;
}

void exiger_attribut(const std::string& nom, const std::vector<std::string>& connus) {
  if (std::ranges::find(connus, nom) == connus.end()) attribut_inconnu(nom, connus);
}

std::string enumerer(const std::vector<std::string>& textes, const std::string& avant_le_dernier) {
  std::string tous;
  for (const std::string& t : textes) {
    if (!tous.empty()) tous += &t == &textes.back() ? avant_le_dernier : ", ";
    tous += t;
  }
  return tous;
}

}  // namespace topomine
