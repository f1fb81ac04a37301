#include "cgns/structure.h"

namespace topomine {

namespace {

[[noreturn]] void refuser(const std::string& quoi) {
  throw MaillageRefuse(quoi);
}

void valider_zone(const Zone& z) {
  Indice noeuds = 1;
  for (const Indice n : z.taille) {
    if (n < 2)
      refuser("zone '" + z.nom +
              "' : une zone de moins de deux noeuds dans un sens n'a pas de cellules");
    if (n > axe_max || n > noeuds_max / noeuds) refuser("zone '" + z.nom + "' : trop grande");
    noeuds *= n;
  }
}

}  // namespace

void valider(const Structure& s) {
  if (s.zones.empty()) refuser("aucune zone dans la base '" + s.base + "'");
  if (s.zones.size() > zones_max) refuser("plus de " + std::to_string(zones_max) + " zones");
  if (s.jonctions.size() + s.conditions.size() > plages_max)
    refuser("plus de " + std::to_string(plages_max) + " raccords et conditions");
  for (const Zone& z : s.zones) valider_zone(z);
  for (const Condition& c : s.conditions)
    if (c.zone >= s.zones.size() || place_de(s.zones[c.zone].taille, c.plage) < 0)
      refuser("condition '" + c.nom + "' : " + texte_plage(c.plage) + " n'est pas sur une face");
  for (const Jonction& j : s.jonctions) {
    const bool zones = j.zone < s.zones.size() && j.voisine < s.zones.size();
    if (!zones || !transformation_valide(j.passage.t) ||
        place_de(s.zones[j.zone].taille, j.plage) < 0 || !j.plage.contient(j.passage.depuis) ||
        !zone_entiere(s.zones[j.voisine].taille).contient(j.passage.vers) ||
        place_de(s.zones[j.voisine].taille, j.passage(j.plage)) < 0)
      refuser("raccord '" + j.nom + "' : " + texte_plage(j.plage) +
              " ne va pas d'une face a une face");
  }
}

}  // namespace topomine
