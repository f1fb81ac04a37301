#include <cgnslib.h>

#include <algorithm>

#include "cgns/appels_cgns.h"
#include "cgns/codes.h"
#include "cgns/lecture_zone.h"

namespace topomine {

namespace {

constexpr auto type_indice = sizeof(cgsize_t) == 8 ? CGNS_ENUMV(LongInteger) : CGNS_ENUMV(Integer);

Ijk triplet(const cgsize_t* v) {
  return {v[0], v[1], v[2]};
}

class Raccords {
 public:
  Raccords(Structure& s, const Repertoire& r, const PlaceZone& p)
      : s_(s), r_(r), p_(p), zone_(p.rang) {}

  void lire_tout() {
    int groupes{}, nb{};
    exiger_reussite(cg_nzconns(p_.fichier, p_.base, p_.zone, &groupes));
    if (groupes > 1) dire(std::to_string(groupes) + " groupes de raccords, seul le premier est lu");
    exiger_reussite(cg_n1to1(p_.fichier, p_.base, p_.zone, &nb));
    for (int n = 1; n <= nb; ++n) un_a_un(n);
    exiger_reussite(cg_nconns(p_.fichier, p_.base, p_.zone, &nb));
    for (int n = 1; n <= nb; ++n) general(n);
    exiger_reussite(cg_nholes(p_.fichier, p_.base, p_.zone, &nb));
    if (nb > 0) dire(std::to_string(nb) + " trou(s) de recouvrement, sans place dans un cas");
  }

 private:
  void dire(const std::string& texte) {
    s_.dits.push_back("zone '" + s_.zones[zone_].nom + "' : " + texte);
  }

  std::size_t voisine(std::string nom, const std::string& raccord) const {
    if (const std::size_t base = nom.rfind('/'); base != std::string::npos) nom.erase(0, base + 1);
    const auto trouvee = r_.zones.find(nom);
    if (trouvee == r_.zones.end())
      throw MaillageRefuse("zone '" + s_.zones[zone_].nom + "', raccord '" + raccord +
                           "' : zone voisine '" + nom + "' inconnue");
    return trouvee->second;
  }

  void un_a_un(int n) {
    NomCgns nom, nom_voisine;
    std::array<cgsize_t, 6> ici{}, la{};
    std::array<int, 3> t{};
    exiger_reussite(cg_1to1_read(p_.fichier, p_.base, p_.zone, n, nom.place(), nom_voisine.place(),
                                 ici.data(), la.data(), t.data()));
    Jonction j{nom.texte(),
               zone_,
               voisine(nom_voisine.texte(), nom.texte()),
               plage_entre(triplet(ici.data()), triplet(ici.data() + 3)),
               {triplet(ici.data()), triplet(la.data()), t}};
    std::array<float, 3> centre{}, angle{}, translation{};
    const bool periodique = cg_1to1_periodic_read(p_.fichier, p_.base, p_.zone, n, centre.data(),
                                                  angle.data(), translation.data()) == CG_OK;
    if (refuser(j, triplet(la.data()), triplet(la.data() + 3), triplet(ici.data() + 3))) return;
    ajouter(j, periodique);
  }

  /// True, once said, for a join of lines or points. Throws for one whose numbers do not fit.
  bool refuser(const Jonction& j, const Ijk& debut_la, const Ijk& fin_la, const Ijk& fin_ici) {
    const Plage la = plage_entre(debut_la, fin_la);
    const bool dedans = zone_entiere(s_.zones[zone_].taille).contient(j.plage) &&
                        zone_entiere(s_.zones[j.voisine].taille).contient(la);
    if (!dedans || !transformation_valide(j.passage.t) || j.passage(fin_ici) != fin_la)
      throw MaillageRefuse("zone '" + s_.zones[zone_].nom + "', raccord '" + j.nom +
                           "' : " + texte_plage(j.plage) + " et " + texte_plage(la) +
                           " de la zone '" + s_.zones[j.voisine].nom + "' ne se correspondent pas");
    if (place_de(s_.zones[zone_].taille, j.plage) >= 0 &&
        place_de(s_.zones[j.voisine].taille, la) >= 0 && !sur_place(j))
      return false;
    dire("raccord '" + j.nom + "' " + texte_plage(j.plage) +
         " ne joint pas deux faces, laisse de cote");
    return true;
  }

  void ajouter(const Jonction& j, bool periodique) {
    if (!periodique) return s_.jonctions.push_back(moitie(j));
    ajouter_bord(j.nom, famille_periodique, bccode_periodique, zone_, j.plage);
    ajouter_bord(j.nom, famille_periodique, bccode_periodique, j.voisine, j.passage(j.plage));
  }

  /// Each node is joined to itself.
  static bool sur_place(const Jonction& j) {
    if (j.zone != j.voisine || j.passage(j.plage.min) != j.plage.min) return false;
    return std::ranges::all_of(axes_ijk, [&](std::size_t a) {
      return j.plage.min[a] == j.plage.max[a] || j.passage.t[a] == static_cast<int>(a) + 1;
    });
  }

  /// Of a face that is folded onto itself, one half, which is joined to the other.
  static Jonction moitie(const Jonction& j) {
    if (j.zone != j.voisine || j.passage(j.plage) != j.plage) return j;
    for (const std::size_t a : axes_ijk) {
      const Indice milieu = (j.plage.min[a] + j.plage.max[a]) / 2;
      Jonction r = j;
      r.plage.max[a] = milieu;
      Plage reste = j.plage;
      reste.min[a] = milieu;
      if (j.plage.min[a] == j.plage.max[a] || r.plage.nb_axes_plats() != 1 ||
          j.passage(r.plage) != reste)
        continue;
      r.passage.depuis = r.plage.min;
      r.passage.vers = j.passage(r.plage.min);
      return r;
    }
    return j;
  }

  void ajouter_bord(const std::string& nom, const char* famille, int bccode, std::size_t zone,
                    const Plage& plage) {
    Condition c;
    c.nom = nom;
    c.famille = famille;
    c.bccode = bccode;
    c.de_raccord = true;
    c.zone = zone;
    c.plage = plage;
    s_.conditions.push_back(c);
  }

  void general(int n) {
    NomCgns nom, nom_voisine;
    CGNS_ENUMT(GridLocation_t) lieu{};
    CGNS_ENUMT(GridConnectivityType_t) type{};
    CGNS_ENUMT(PointSetType_t) points{}, points_la{};
    CGNS_ENUMT(ZoneType_t) type_la{};
    CGNS_ENUMT(DataType_t) donnees{};
    cgsize_t nb{}, nb_la{};
    exiger_reussite(cg_conn_info(p_.fichier, p_.base, p_.zone, n, nom.place(), &lieu, &type,
                                 &points, &nb, nom_voisine.place(), &type_la, &points_la, &donnees,
                                 &nb_la));
    const Zone& zone = s_.zones[zone_];
    const std::string quoi = "raccord '" + nom.texte() + "'";
    const bool plage_donnee = points == CGNS_ENUMV(PointRange);
    controler_nombre(zone, quoi, nb, plage_donnee);
    if (nb_la > 0) controler_nombre(zone, quoi, nb_la, false);
    std::vector<cgsize_t> lus(3 * static_cast<std::size_t>(nb));
    std::vector<cgsize_t> lus_la(3 * static_cast<std::size_t>(nb_la) + 3);
    exiger_reussite(
        cg_conn_read(p_.fichier, p_.base, p_.zone, n, lus.data(), type_indice, lus_la.data()));
    lus_la.resize(3 * static_cast<std::size_t>(nb_la));
    const std::vector<Ijk> ici = triplets(lus);
    std::optional<Plage> plage;
    if (lieu != CGNS_ENUMV(CellCenter) && lieu != CGNS_ENUMV(EdgeCenter))
      plage = plage_des_points(
          zone.taille,
          {!plage_donnee, lieu == CGNS_ENUMV(Vertex) ? Points::noeuds : Points::inconnu, ici});
    const std::string type_lu = quoi + " (" + GridConnectivityTypeName[type] + ") : ";
    if (!plage)
      return dire(type_lu +
                  "ses points ne designent pas une partie d'une seule face, il est "
                  "laisse de cote");
    std::array<float, 3> centre{}, angle{}, translation{};
    if (cg_conn_periodic_read(p_.fichier, p_.base, p_.zone, n, centre.data(), angle.data(),
                              translation.data()) == CG_OK)
      return ajouter_bord(nom.texte(), famille_periodique, bccode_periodique, zone_, *plage);
    std::optional<Passage> passage;
    if (type == CGNS_ENUMV(Abutting1to1) && lieu == CGNS_ENUMV(Vertex) &&
        type_la == CGNS_ENUMV(Structured))
      passage = passage_vers(
          *plage, plage_donnee ? triplets(lus_la) : images_en_ordre(ici, triplets(lus_la)));
    if (!passage) {
      dire(type_lu +
           "sans correspondance noeud a noeud, il devient un bord de la famille interface");
      return ajouter_bord(nom.texte(), famille_interface, bccode_interface, zone_, *plage);
    }
    const Jonction j{nom.texte(), zone_, voisine(nom_voisine.texte(), nom.texte()), *plage,
                     *passage};
    if (!refuser(j, j.passage(plage->min), j.passage(plage->max), plage->max)) ajouter(j, false);
  }

  Structure& s_;
  const Repertoire& r_;
  PlaceZone p_;
  std::size_t zone_;
};

}  // namespace

void lire_raccords(Structure& s, const Repertoire& r, const PlaceZone& place) {
  Raccords(s, r, place).lire_tout();
}

}  // namespace topomine
