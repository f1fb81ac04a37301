#include "tests/cgns/alterations.h"

#include <cgns_io.h>
#include <cgnslib.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace topomine {

namespace {

/// The file, open for changes, and its first base.
class Ouvert {
 public:
  explicit Ouvert(const std::string& fichier, int mode = CG_MODE_MODIFY) {
    appel(cg_open(fichier.c_str(), mode, &f));
  }
  ~Ouvert() { cg_close(f); }
  static void appel(int statut) {
    if (statut != CG_OK) throw std::runtime_error(cg_get_error());
  }
  int f = 0, b = 1, n = 0;
};

/// An empty file of one base.
struct Neuf : Ouvert {
  Neuf(const std::string& fichier, int cellules, int espace) : Ouvert(fichier, CG_MODE_WRITE) {
    appel(cg_base_write(f, "base", cellules, espace, &b));
  }
  void zone(const std::vector<cgsize_t>& tailles, CGNS_ENUMT(ZoneType_t) type) {
    appel(cg_zone_write(f, b, "zone", tailles.data(), type, &n));
  }
};

constexpr std::array<cgsize_t, 6> ici{3, 1, 1, 3, 3, 3}, la{1, 1, 1, 1, 3, 3};
constexpr std::array<int, 3> droit{1, 2, 3};

void un_a_un(const std::string& fichier, const char* nom, const char* voisine,
             const std::array<cgsize_t, 6>& depuis, const std::array<cgsize_t, 6>& vers,
             const std::array<int, 3>& t, int zone = 1) {
  Ouvert o(fichier);
  o.appel(cg_1to1_write(o.f, o.b, zone, nom, voisine, depuis.data(), vers.data(), t.data(), &o.n));
}

/// One coordinate of zone 2 replaced.
void changer_coordonnee(const std::string& fichier, std::size_t noeud, double valeur) {
  Ouvert o(fichier);
  const std::array<cgsize_t, 3> debut{1, 1, 1}, fin{3, 3, 3};
  std::vector<double> x(27);
  o.appel(cg_coord_read(o.f, o.b, 2, "CoordinateX", CGNS_ENUMV(RealDouble), debut.data(),
                        fin.data(), x.data()));
  x[noeud] = valeur;
  o.appel(cg_coord_write(o.f, o.b, 2, CGNS_ENUMV(RealDouble), "CoordinateX", x.data(), &o.n));
}

}  // namespace

void base_plane(const std::string& fichier) {
  Neuf(fichier, 2, 3).zone({3, 3, 2, 2, 0, 0}, CGNS_ENUMV(Structured));
}

void zone_non_structuree(const std::string& fichier) {
  Neuf(fichier, 3, 3).zone({8, 1, 0}, CGNS_ENUMV(Unstructured));
}

void deux_bases(const std::string& fichier) {
  Ouvert o(fichier);
  o.appel(cg_base_write(o.f, "autre", 3, 3, &o.b));
}

void aucune_base(const std::string& fichier) {
  const Ouvert o(fichier, CG_MODE_WRITE);
}

void aucune_zone(const std::string& fichier) {
  const Neuf n(fichier, 3, 3);
}

void zone_plate(const std::string& fichier) {
  Neuf(fichier, 3, 3).zone({3, 1, 3, 2, 0, 2, 0, 0, 0}, CGNS_ENUMV(Structured));
}

void sans_coordonnees(const std::string& fichier) {
  Neuf(fichier, 3, 3).zone({3, 3, 3, 2, 2, 2, 0, 0, 0}, CGNS_ENUMV(Structured));
}

void coordonnees_polaires(const std::string& fichier) {
  Neuf o(fichier, 3, 3);
  o.zone({2, 2, 2, 1, 1, 1, 0, 0, 0}, CGNS_ENUMV(Structured));
  const std::vector<double> r(8, 1.0);
  o.appel(cg_coord_write(o.f, o.b, 1, CGNS_ENUMV(RealDouble), "CoordinateR", r.data(), &o.n));
}

void coordonnee_infinie(const std::string& fichier) {
  changer_coordonnee(fichier, 13, INFINITY);
}

void noeud_ecarte(const std::string& fichier) {
  changer_coordonnee(fichier, 24, 2.01);
}

void voisine_inconnue(const std::string& fichier) {
  un_a_un(fichier, "perdu", "nulle part", ici, la, droit);
}

void raccord_boiteux(const std::string& fichier) {
  un_a_un(fichier, "boiteux", "zone 2", ici, la, {1, -2, 3});
}

void raccord_double(const std::string& fichier) {
  un_a_un(fichier, "double", "zone 1", ici, {1, 1, 1, 1, 3, 3}, droit);
}

void raccord_contraire(const std::string& fichier) {
  un_a_un(fichier, "contraire", "zone 2", ici, {1, 3, 3, 1, 1, 1}, {1, -2, -3});
}

void raccord_transpose(const std::string& fichier) {
  un_a_un(fichier, "transpose", "zone 2", ici, la, {1, 3, 2});
}

namespace {

/// A join by lists of nine points each, one of which is then made longer than the zone: the library
/// writes no such file, but reads it.
void raccord_par_points(const std::string& fichier, const char* allonge) {
  std::vector<cgsize_t> points, images;
  for (cgsize_t k = 1; k <= 3; ++k)
    for (cgsize_t j = 1; j <= 3; ++j) {
      points.insert(points.end(), {3, j, k});
      images.insert(images.end(), {1, j, k});
    }
  {
    Ouvert o(fichier);
    o.appel(cg_conn_write(o.f, o.b, 1, "long", CGNS_ENUMV(Vertex), CGNS_ENUMV(Abutting1to1),
                          CGNS_ENUMV(PointList), 9, points.data(), "zone 2", CGNS_ENUMV(Structured),
                          CGNS_ENUMV(PointListDonor), CGNS_ENUMV(LongInteger), 9, images.data(),
                          &o.n));
  }
  int f = 0;
  double racine = 0, noeud = 0;
  std::array<char, 33> type{};
  const std::array<cgsize_t, 2> taille{3, 28};
  const std::vector<std::int64_t> uns(3 * 28, 1);
  const std::string chemin = std::string("/deux/zone 1/ZoneGridConnectivity/long/") + allonge;
  if (cgio_open_file(fichier.c_str(), 'm', CGIO_FILE_NONE, &f) != 0 ||
      cgio_get_root_id(f, &racine) != 0 ||
      cgio_get_node_id(f, racine, chemin.c_str(), &noeud) != 0 ||
      cgio_get_data_type(f, noeud, type.data()) != 0 ||
      cgio_set_dimensions(f, noeud, type.data(), 2, taille.data()) != 0 ||
      cgio_write_all_data(f, noeud, uns.data()) != 0 || cgio_close_file(f) != 0)
    throw std::runtime_error("cgio");
}

}  // namespace

void raccord_trop_long(const std::string& fichier) {
  raccord_par_points(fichier, "PointList");
}

void raccord_aux_images_de_trop(const std::string& fichier) {
  raccord_par_points(fichier, "PointListDonor");
}

void condition_trop_longue(const std::string& fichier) {
  Ouvert o(fichier);
  const std::vector<cgsize_t> points(28 * 3, 1);  // one more than the zone has
  o.appel(cg_boco_write(o.f, o.b, 1, "longue", CGNS_ENUMV(BCWall), CGNS_ENUMV(PointList), 28,
                        points.data(), &o.n));
}

void tronque(const std::string& fichier) {
  std::filesystem::resize_file(fichier, std::filesystem::file_size(fichier) / 2);
}

void un_texte(const std::string& fichier) {
  std::ofstream(fichier) << "Damas code;BCCODE;Family;\n";
}

void ajouts_a_dire(const std::string& fichier) {
  Ouvert o(fichier);
  const auto condition = [&o](const char* nom, const std::vector<cgsize_t>& points,
                              CGNS_ENUMT(PointSetType_t) genre, CGNS_ENUMT(GridLocation_t) lieu) {
    o.appel(cg_boco_write(o.f, o.b, 1, nom, CGNS_ENUMV(BCWall), genre,
                          static_cast<cgsize_t>(points.size() / 3), points.data(), &o.n));
    o.appel(cg_boco_gridlocation_write(o.f, o.b, 1, o.n, lieu));
  };
  const auto range = CGNS_ENUMV(PointRange), liste = CGNS_ENUMV(PointList);
  condition("ligne", {1, 1, 1, 1, 1, 3}, range, CGNS_ENUMV(Vertex));
  condition("dedans", {2, 1, 1, 2, 3, 3}, range, CGNS_ENUMV(Vertex));
  condition("en L", {1, 1, 1, 1, 2, 1, 1, 1, 2}, liste, CGNS_ENUMV(Vertex));
  condition("cellules", {1, 1, 1, 1, 2, 2}, range, CGNS_ENUMV(CellCenter));
  condition("sur un raccord", {3, 1, 1, 3, 3, 3}, range, CGNS_ENUMV(Vertex));
  condition("moitie", {1, 1, 1, 1, 2, 3}, range, CGNS_ENUMV(Vertex));
  condition("recouvre", {1, 1, 1, 1, 3, 2}, range, CGNS_ENUMV(Vertex));
  const std::array<cgsize_t, 6> plage{3, 1, 1, 3, 3, 3};
  o.appel(cg_conn_write_short(o.f, o.b, 2, "glissant", CGNS_ENUMV(Vertex), CGNS_ENUMV(Abutting),
                              CGNS_ENUMV(PointRange), 2, plage.data(), "zone 1", &o.n));
  const std::array<cgsize_t, 6> cases{3, 1, 1, 3, 2, 2};
  o.appel(cg_conn_write_short(o.f, o.b, 2, "par cellules", CGNS_ENUMV(CellCenter),
                              CGNS_ENUMV(Overset), CGNS_ENUMV(PointRange), 2, cases.data(),
                              "zone 1", &o.n));
  condition("entiere", {1, 1, 1, 3, 3, 1}, range, CGNS_ENUMV(Vertex));
  o.appel(cg_goto(o.f, o.b, "Zone_t", 1, "ZoneBC_t", 1, "BC_t", o.n, "end"));
  o.appel(cg_multifam_write("autre", "volets"));
  const std::array<cgsize_t, 6> fond{1, 1, 1, 1, 3, 3};
  o.appel(cg_boco_write(o.f, o.b, 2, "nulle", CGNS_ENUMV(FamilySpecified), CGNS_ENUMV(PointRange),
                        2, fond.data(), &o.n));
  const std::array<cgsize_t, 6> sol{1, 1, 1, 3, 3, 1};
  o.appel(cg_1to1_write(o.f, o.b, 2, "sur place", "zone 2", sol.data(), sol.data(), droit.data(),
                        &o.n));
  o.appel(cg_grid_write(o.f, o.b, 1, "deformee", &o.n));
  const auto en = [&o](CGNS_ENUMT(LengthUnits_t) unite) {
    o.appel(cg_units_write(CGNS_ENUMV(Kilogram), unite, CGNS_ENUMV(Second), CGNS_ENUMV(Kelvin),
                           CGNS_ENUMV(Radian)));
  };
  o.appel(cg_goto(o.f, o.b, "end"));
  en(CGNS_ENUMV(Millimeter));
  o.appel(cg_goto(o.f, o.b, "Zone_t", 2, "GridCoordinates_t", 1, "end"));
  en(CGNS_ENUMV(Foot));
  o.appel(cg_goto(o.f, o.b, "Zone_t", 2, "end"));
  en(CGNS_ENUMV(Inch));
  o.appel(cg_goto(o.f, o.b, "Zone_t", 2, "GridCoordinates_t", 1, "DataArray_t", 1, "end"));
  en(CGNS_ENUMV(Meter));
  o.appel(cg_family_write(o.f, o.b, "sans type", &o.n));
  const std::array<cgsize_t, 6> bas{1, 1, 1, 3, 1, 3}, haut{1, 3, 1, 3, 3, 3};
  const std::array<float, 3> rien{0, 0, 0}, pas{0, 1, 0};
  o.appel(
      cg_1to1_write(o.f, o.b, 2, "tour", "zone 2", bas.data(), haut.data(), droit.data(), &o.n));
  o.appel(cg_1to1_periodic_write(o.f, o.b, 2, o.n, rien.data(), rien.data(), pas.data()));
}

void tous_les_types(const std::string& fichier) {
  Ouvert o(fichier);
  const auto condition = [&o](const std::string& nom, CGNS_ENUMT(BCType_t) type,
                              const std::vector<cgsize_t>& points, CGNS_ENUMT(GridLocation_t) lieu,
                              const std::array<int, 3>& normale) {
    o.appel(cg_boco_write(o.f, o.b, 1, nom.c_str(), type,
                          points.size() == 6 ? CGNS_ENUMV(PointRange) : CGNS_ENUMV(PointList),
                          static_cast<cgsize_t>(points.size() / 3), points.data(), &o.n));
    o.appel(cg_boco_gridlocation_write(o.f, o.b, 1, o.n, lieu));
    if (normale != std::array<int, 3>{})
      o.appel(cg_boco_normal_write(o.f, o.b, 1, o.n, normale.data(), 0, CGNS_ENUMV(RealDouble),
                                   nullptr));
  };
  for (int t = 1; t < NofValidBCTypes; ++t) {
    const cgsize_t i = t % 5 + 1, j = t / 5 % 5 + 1;
    condition(std::string("de_") + BCTypeName[t], static_cast<CGNS_ENUMT(BCType_t)>(t),
              {i, j, 1, i + 1, j + 1, 1}, CGNS_ENUMV(Vertex), {});
  }
  const auto mur = CGNS_ENUMV(BCWall);
  const auto faces = CGNS_ENUMV(FaceCenter);
  condition("k", mur, {1, 1, 3, 1, 1, 3}, CGNS_ENUMV(KFaceCenter), {});
  condition("k ailleurs", mur, {2, 1, 2, 2, 1, 2}, CGNS_ENUMV(KFaceCenter), {});
  condition("k dehors", mur, {5, 1, 3, 6, 1, 3}, CGNS_ENUMV(KFaceCenter), {});
  condition("j", mur, {3, 6, 2, 3, 6, 2}, CGNS_ENUMV(JFaceCenter), {});
  condition("i", mur, {6, 2, 1, 6, 2, 1}, CGNS_ENUMV(IFaceCenter), {});
  condition("centre", mur, {2, 2, 3, 3, 2, 3}, faces, {});
  condition("centre au bout", mur, {1, 1, 1, 1, 1, 1}, faces, {});
  condition("centre, sa normale", mur, {1, 1, 1, 1, 1, 1}, faces, {0, -1, 0});
  condition("centre, deux normales", mur, {1, 1, 1, 1, 1, 1}, faces, {1, -1, 0});
  condition("centre, deux bouts", mur, {1, 1, 1, 1, 2, 1}, faces, {});
  condition("centre, i", mur, {1, 2, 1, 1, 3, 2}, faces, {});
  condition("centre, en liste", mur, {4, 4, 3, 5, 4, 3, 4, 4, 3, 5, 5, 3, 4, 5, 3}, faces, {});
  condition("centre, liste a trou", mur, {4, 4, 3, 5, 4, 3, 5, 5, 3}, faces, {});
  condition("aretes", mur, {1, 1, 3, 2, 2, 3}, CGNS_ENUMV(EdgeCenter), {});
}

}  // namespace topomine
