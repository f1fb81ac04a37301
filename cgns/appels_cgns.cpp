#include "cgns/appels_cgns.h"

#include <cgnslib.h>

#include "cgns/structure.h"

namespace topomine {

void refuser_fichier() {
  std::string texte = cg_get_error();
  for (char& c : texte)
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  constexpr std::size_t assez = 200;
  throw MaillageRefuse("fichier CGNS illisible (" + texte.substr(0, assez) + ")");
}

void exiger_reussite(int statut) {
  if (statut != CG_OK) refuser_fichier();
}

std::map<std::string, int> types_des_familles(int fichier, int base) {
  std::map<std::string, int> types;
  int nb{};
  exiger_reussite(cg_nfamilies(fichier, base, &nb));
  for (int f = 1; f <= nb; ++f) {
    NomCgns nom;
    NomCgns condition;
    int conditions{}, geometries{};
    exiger_reussite(cg_family_read(fichier, base, f, nom.place(), &conditions, &geometries));
    if (conditions < 1) continue;
    CGNS_ENUMT(BCType_t) type{};
    exiger_reussite(cg_fambc_read(fichier, base, f, 1, condition.place(), &type));
    types.emplace(nom.texte(), static_cast<int>(type));
  }
  return types;
}

}  // namespace topomine
