#include <cgnslib.h>

#include "cgns/appels_cgns.h"
#include "cgns/lecture_zone.h"
#include "cgns/types_conditions.h"

namespace topomine {

namespace {

/// What the library's location of a condition's points is to plage_des_points; `normale` is the
/// file's own hint.
int axe_des_points(CGNS_ENUMT(GridLocation_t) lieu, const std::array<int, 3>& normale) {
  switch (lieu) {
    case CGNS_ENUMV(IFaceCenter):
      return 0;
    case CGNS_ENUMV(JFaceCenter):
      return 1;
    case CGNS_ENUMV(KFaceCenter):
      return 2;
    case CGNS_ENUMV(FaceCenter):
      break;
    default:
      return Points::noeuds;
  }
  int axe = Points::inconnu, nb = 0;
  for (int a = 0; a < 3; ++a)
    if (normale[static_cast<std::size_t>(a)] != 0) {
      axe = a;
      ++nb;
    }
  return nb == 1 ? axe : Points::inconnu;
}

class Conditions {
 public:
  Conditions(Structure& s, const Repertoire& r, const PlaceZone& p)
      : s_(s), r_(r), p_(p), zone_(p.rang) {}

  void lire_tout() {
    int nb{};
    exiger_reussite(cg_nbocos(p_.fichier, p_.base, p_.zone, &nb));
    for (int n = 1; n <= nb; ++n) condition(n);
  }

 private:
  void dire(const std::string& nom, const std::string& quoi) {
    s_.dits.push_back("zone '" + s_.zones[zone_].nom + "' : condition '" + nom + "' " + quoi);
  }
  void laisser(const std::string& nom, const std::string& pourquoi) {
    dire(nom, "laissee de cote, " + pourquoi);
  }

  void condition(int n) {
    NomCgns nom;
    CGNS_ENUMT(BCType_t) type{};
    CGNS_ENUMT(PointSetType_t) genre{};
    CGNS_ENUMT(DataType_t) donnees{};
    cgsize_t nb{}, normales{};
    std::array<int, 3> normale{};
    int jeux{};
    exiger_reussite(cg_boco_info(p_.fichier, p_.base, p_.zone, n, nom.place(), &type, &genre, &nb,
                                 normale.data(), &normales, &donnees, &jeux));
    Condition c;
    c.nom = nom.texte();
    c.zone = zone_;
    const bool plage = genre == CGNS_ENUMV(PointRange), liste = genre == CGNS_ENUMV(PointList);
    if (!plage && !liste) return laisser(c.nom, "donnee par elements");
    controler_nombre(s_.zones[zone_], "condition '" + c.nom + "'", nb, plage);
    CGNS_ENUMT(GridLocation_t) lieu = CGNS_ENUMV(Vertex);
    exiger_reussite(cg_boco_gridlocation_read(p_.fichier, p_.base, p_.zone, n, &lieu));
    if (lieu == CGNS_ENUMV(CellCenter) || lieu == CGNS_ENUMV(EdgeCenter))
      return laisser(c.nom, "donnee par cellules ou par aretes");
    std::vector<cgsize_t> lus(3 * static_cast<std::size_t>(nb));
    exiger_reussite(cg_boco_read(p_.fichier, p_.base, p_.zone, n, lus.data(), nullptr));
    const auto trouvee = plage_des_points(s_.zones[zone_].taille,
                                          {liste, axe_des_points(lieu, normale), triplets(lus)});
    if (!trouvee) return laisser(c.nom, "ses points ne designent pas une partie d'une seule face");
    c.plage = *trouvee;
    c.famille = famille(n, c.nom);
    typer(c, type);
    s_.conditions.push_back(c);
  }

  std::string famille(int n, const std::string& nom) {
    NomCgns lue;
    if (cg_goto(p_.fichier, p_.base, "Zone_t", p_.zone, "ZoneBC_t", 1, "BC_t", n, "end") != CG_OK)
      return nom;
    if (int autres = 0; cg_nmultifam(&autres) == CG_OK && autres > 0)
      dire(nom, "avec " + std::to_string(autres) + " AdditionalFamilyName, qui ne compte(nt) pas");
    if (cg_famname_read(lue.place()) != CG_OK || lue.texte().empty()) return nom;
    // A family may be named with the path to it.
    const std::string texte = lue.texte();
    const std::size_t base = texte.rfind('/');
    return base == std::string::npos || base + 1 == texte.size() ? texte : texte.substr(base + 1);
  }

  void typer(Condition& c, CGNS_ENUMT(BCType_t) type) {
    int numero = static_cast<int>(type);
    if (type == CGNS_ENUMV(FamilySpecified) || type == CGNS_ENUMV(BCTypeNull)) {
      const auto f = r_.familles.find(c.famille);
      numero = f != r_.familles.end() ? f->second : 0;
      if (numero == 0)
        dire(c.nom, "sans type, la famille '" + c.famille + "' n'en donne pas non plus");
    }
    const TypeCondition t =
        type_condition(cg_BCTypeName(static_cast<CGNS_ENUMT(BCType_t)>(numero)));
    c.bccode = t.bccode;
    c.degeneree = t.degeneree;
  }

  Structure& s_;
  const Repertoire& r_;
  PlaceZone p_;
  std::size_t zone_;
};

}  // namespace

void lire_conditions(Structure& s, const Repertoire& r, const PlaceZone& place) {
  Conditions(s, r, place).lire_tout();
}

}  // namespace topomine
