#include <cgnslib.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "tests/cgns/modele.h"

namespace topomine {

namespace {

void verifier_appel(int statut) {
  if (statut != CG_OK) throw std::runtime_error(cg_get_error());
}

CGNS_ENUMT(BCType_t) type_du_bccode(int bccode) {
  switch (bccode) {
    case 1:
      return CGNS_ENUMV(BCWallViscous);
    case 2:
      return CGNS_ENUMV(BCInflow);
    case 3:
      return CGNS_ENUMV(BCOutflowSubsonic);
    case 4:
      return CGNS_ENUMV(BCFarfield);
    case 5:
      return CGNS_ENUMV(BCSymmetryPlane);
    case 7:
      return CGNS_ENUMV(BCAxisymmetricWedge);
    default:
      return CGNS_ENUMV(BCTypeUserDefined);
  }
}

std::array<cgsize_t, 6> bornes(const Ijk& a, const Ijk& b) {
  return {static_cast<cgsize_t>(a[0]), static_cast<cgsize_t>(a[1]), static_cast<cgsize_t>(a[2]),
          static_cast<cgsize_t>(b[0]), static_cast<cgsize_t>(b[1]), static_cast<cgsize_t>(b[2])};
}

/// Can a node have that name?
bool nom_de_noeud(const std::string& nom) {
  return std::ranges::all_of(nom, [](char c) { return c >= ' ' && c <= '~' && c != '/'; });
}

class Ecrivain {
 public:
  Ecrivain(const Modele& m, const std::string& fichier, Fichiers genre) : m_(m) {
    verifier_appel(cg_set_file_type(genre == Fichiers::adf ? CG_FILE_ADF : CG_FILE_HDF5));
    verifier_appel(cg_open(fichier.c_str(), CG_MODE_WRITE, &f_));
    verifier_appel(cg_base_write(f_, m.s.base.c_str(), 3, 3, &b_));
  }
  ~Ecrivain() { cg_close(f_); }

  void executer() {
    for (std::size_t z = 0; z < m_.s.zones.size(); ++z) zone(z);
    for (std::size_t n = 0; n < m_.s.jonctions.size(); ++n)
      jonction(m_.s.jonctions[n], n % 3, n % 2);
    for (std::size_t n = 0; n < m_.s.conditions.size(); ++n) condition(m_.s.conditions[n], n % 4);
  }

 private:
  void zone(std::size_t z) {
    const Ijk& t = m_.taille(z);
    const auto n = bornes(t, {t[0] - 1, t[1] - 1, t[2] - 1});
    const std::array<cgsize_t, 9> tailles{n[0], n[1], n[2], n[3], n[4], n[5], 0, 0, 0};
    int numero = 0, c = 0;
    verifier_appel(cg_zone_write(f_, b_, m_.s.zones[z].nom.c_str(), tailles.data(),
                                 CGNS_ENUMV(Structured), &numero));
    for (std::size_t a = 0; a < 3; ++a)
      verifier_appel(cg_coord_write(f_, b_, numero, CGNS_ENUMV(RealDouble),
                                    std::array{"CoordinateX", "CoordinateY", "CoordinateZ"}[a],
                                    m_.xyz[z][a].data(), &c));
  }

  /// Every third one by its points, from a range or, in turn, from a list.
  void jonction(const Jonction& j, std::size_t tiers, bool liste) {
    if (j.nom.starts_with("seul")) return un_a_un(j, m_.s.base + "/");
    const Jonction retour{j.nom + "b", j.voisine, j.zone, j.passage(j.plage), j.passage.inverse()};
    for (const Jonction* cote : {&j, &retour})
      tiers == 2 ? par_points(*cote, liste) : un_a_un(*cote);
  }

  void un_a_un(const Jonction& j, const std::string& chemin = "") {
    const auto ici = bornes(j.plage.min, j.plage.max);
    const auto la = bornes(j.passage(j.plage.min), j.passage(j.plage.max));
    int n = 0;
    verifier_appel(cg_1to1_write(f_, b_, static_cast<int>(j.zone) + 1, j.nom.c_str(),
                                 (chemin + m_.s.zones[j.voisine].nom).c_str(), ici.data(),
                                 la.data(), j.passage.t.data(), &n));
  }

  void par_points(const Jonction& j, bool liste) {
    std::vector<cgsize_t> ici, la;
    const auto ajouter = [&](const Ijk& p) {
      for (const Indice v : p) ici.push_back(static_cast<cgsize_t>(v));
      for (const Indice v : j.passage(p)) la.push_back(static_cast<cgsize_t>(v));
    };
    // Of a list, any order will do.
    const Plage& p = j.plage;
    const Ijk n{p.max[0] - p.min[0] + 1, p.max[1] - p.min[1] + 1, p.max[2] - p.min[2] + 1};
    for (Indice r = 0; r < p.nb_noeuds(); ++r)
      ajouter(
          liste ? Ijk{p.max[0] - r / n[2] / n[1], p.min[1] + r / n[2] % n[1], p.min[2] + r % n[2]}
                : Ijk{p.min[0] + r % n[0], p.min[1] + r / n[0] % n[1], p.min[2] + r / n[0] / n[1]});
    if (!liste) {
      const auto b = bornes(p.min, p.max);
      ici.assign(b.begin(), b.end());
    }
    int numero = 0;
    verifier_appel(cg_conn_write(
        f_, b_, static_cast<int>(j.zone) + 1, j.nom.c_str(), CGNS_ENUMV(Vertex),
        CGNS_ENUMV(Abutting1to1), liste ? CGNS_ENUMV(PointList) : CGNS_ENUMV(PointRange),
        static_cast<cgsize_t>(ici.size() / 3), ici.data(), m_.s.zones[j.voisine].nom.c_str(),
        CGNS_ENUMV(Structured), CGNS_ENUMV(PointListDonor), CGNS_ENUMV(LongInteger),
        static_cast<cgsize_t>(la.size() / 3), la.data(), &numero));
  }

  /// forme & 1: cell faces instead of nodes; forme & 2: a list instead of a range.
  void condition(const Condition& c, std::size_t forme) {
    const int z = static_cast<int>(c.zone) + 1;
    Plage p = c.plage;
    const int axe = place_de(m_.taille(c.zone), c.plage) % 3;
    if (forme & 1)
      for (int a = 0; a < 3; ++a)
        if (a != axe) --p.max[static_cast<std::size_t>(a)];
    std::vector<cgsize_t> points;
    if (forme & 2) {
      for (Indice k = p.min[2]; k <= p.max[2]; ++k)
        for (Indice j = p.min[1]; j <= p.max[1]; ++j)
          for (Indice i = p.min[0]; i <= p.max[0]; ++i)
            for (const Indice v : {i, j, k}) points.push_back(static_cast<cgsize_t>(v));
    } else {
      const auto b = bornes(p.min, p.max);
      points.assign(b.begin(), b.end());
    }
    const bool type_de_famille = familles_.size() % 2 == 0 && nom_de_noeud(c.famille);
    int n = 0;
    verifier_appel(
        cg_boco_write(f_, b_, z, c.nom.c_str(),
                      type_de_famille ? CGNS_ENUMV(FamilySpecified) : type_du_bccode(c.bccode),
                      forme & 2 ? CGNS_ENUMV(PointList) : CGNS_ENUMV(PointRange),
                      static_cast<cgsize_t>(points.size() / 3), points.data(), &n));
    if (forme & 1)
      verifier_appel(cg_boco_gridlocation_write(
          f_, b_, z, n,
          std::array{CGNS_ENUMV(IFaceCenter), CGNS_ENUMV(JFaceCenter),
                     CGNS_ENUMV(KFaceCenter)}[static_cast<std::size_t>(axe)]));
    verifier_appel(cg_goto(f_, b_, "Zone_t", z, "ZoneBC_t", 1, "BC_t", n, "end"));
    verifier_appel(cg_famname_write(c.famille.c_str()));
    if (!familles_.insert(c.famille).second || !nom_de_noeud(c.famille)) return;
    int f = 0, bc = 0;
    verifier_appel(cg_family_write(f_, b_, c.famille.c_str(), &f));
    verifier_appel(cg_fambc_write(f_, b_, f, "FamBC", type_du_bccode(c.bccode), &bc));
  }

  const Modele& m_;
  int f_ = 0, b_ = 0;
  std::set<std::string> familles_;
};

}  // namespace

void ecrire_cgns(const Modele& m, const std::string& fichier, Fichiers genre) {
  Ecrivain(m, fichier, genre).executer();
}

}  // namespace topomine
