#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numbers>

#include "base/configuration.h"
#include "base/lecture/chargement.h"
#include "cgns/enfant.h"
#include "tests/cgns/alterations.h"
#include "tests/cgns/modele.h"
#include "tests/cgns/modele_de_base.h"
#include "tests/topodata/programme.h"

namespace topomine {

namespace {

/// A box of cells from (x,y,z), one unit long along each axis for each half of its cells.
std::size_t boite(Modele& m, double x, double y, double z, const Ijk& cellules = {2, 2, 2}) {
  return m.zone(cellules, [&](double u, double v, double w) {
    return Vec{x + u * static_cast<double>(cellules[0]) / 2,
               y + v * static_cast<double>(cellules[1]) / 2,
               z + w * static_cast<double>(cellules[2]) / 2};
  });
}

Plage face(const Modele& m, std::size_t zone, int place) {
  return face_entiere(m.taille(zone), place);
}

/// Two boxes side by side along x: wall below, far field above, the rest bare.
Modele deux_boites() {
  Modele m;
  m.s.base = "deux";
  for (const double x : {0.0, 1.0}) {
    const std::size_t z = boite(m, x, 0, 0);
    m.condition(z, face(m, z, 2), "paroi_sol", 1);
    m.condition(z, face(m, z, 5), "loin", 4);
  }
  m.jonction(0, face(m, 0, 3), 1, {{3, 1, 1}, {1, 1, 1}, {1, 2, 3}});
  return m;
}

/// A block that goes once around, from radius 1 to 3, and up by 2.
Modele tour(Indice n) {
  Modele m;
  m.s.base = "tour";
  m.zone({n, 3, 2}, [](double u, double v, double w) {
    const double a = 2 * std::numbers::pi * u, rayon = 1 + 2 * v;
    return Vec{rayon * std::cos(a), rayon * std::sin(a), 2 * w};
  });
  m.jonction(0, face(m, 0, 0), 0, {{1, 1, 1}, {n + 1, 1, 1}, {1, 2, 3}});
  m.condition(0, face(m, 0, 1), "paroi_fut", 1);
  m.condition(0, face(m, 0, 4), "loin", 4);
  m.condition(0, face(m, 0, 2), "sol", 5);
  m.condition(0, face(m, 0, 5), "ciel", 5);
  return m;
}

/// One face against two blocks, another under two conditions and partly bare.
Modele partage() {
  Modele m;
  m.s.base = "partage";
  boite(m, 0, 0, 0, {2, 4, 2});
  boite(m, 1, 0, 0);
  boite(m, 1, 1, 0);
  m.jonction(0, {{3, 1, 1}, {3, 3, 3}}, 1, {{3, 1, 1}, {1, 1, 1}, {1, 2, 3}});
  m.jonction(0, {{3, 3, 1}, {3, 5, 3}}, 2, {{3, 3, 1}, {1, 1, 1}, {1, 2, 3}});
  m.condition(0, {{1, 1, 1}, {1, 3, 3}}, "paroi_bas", 1);
  m.condition(0, {{1, 3, 1}, {1, 5, 2}}, "entree", 2);
  return m;
}

/// A folder with a mesh in it, and a collection to import it into.
struct Atelier {
  explicit Atelier(const Modele& m, Fichiers genre = Fichiers::adf) {
    ecrire_cgns(m, maillage(), genre);
    std::filesystem::create_directory(d.chemin() + "cas");
  }
  std::string maillage() const { return d.chemin() + "m.cgns"; }
  std::string cas() const { return d.chemin() + "cas/"; }
  Resultat importer(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"importe", maillage(), cas(), "essai"});
    return topodata(options);
  }
  /// What is in the collection, by name.
  std::vector<std::string> contenu() const {
    std::vector<std::string> noms;
    for (const auto& e : std::filesystem::recursive_directory_iterator(cas()))
      noms.push_back(std::filesystem::relative(e.path(), cas()).string());
    std::ranges::sort(noms);
    return noms;
  }
  Base charge(const std::string& mode = "nrm") const {
    oublier_configuration();
    Base b("essai", cas(), mode);
    EXPECT_TRUE(charger(b).fait);
    return b;
  }
  Dossier d;
};

/// Numbers in a block's six places.
std::vector<int> places(const Base& b, int bloc) {
  std::vector<int> r;
  for (int i = 0; i < 6; ++i) r.push_back(b.blocs.at(bloc)._face(i));
  return r;
}

std::size_t occurrences(const std::string& texte, const std::string& quoi) {
  std::size_t nb = 0;
  for (std::size_t n = texte.find(quoi); n != std::string::npos; n = texte.find(quoi, n + 1)) ++nb;
  return nb;
}

std::size_t lignes(const std::string& texte) {
  return static_cast<std::size_t>(std::ranges::count(texte, '\n'));
}

}  // namespace

// A block that goes once around: its two ends are one face, and all its corners can be looked up.
TEST(Importe, AnOGrid) {
  constexpr Indice n = 12;
  constexpr double r = 1, g = 3, h = 2;
  const Modele m = tour(n);
  for (const auto& t : {std::array{1, 2, 3}, {-2, 3, 1}, {3, -1, -2}}) {
    Modele tourne = m;
    tourner(tourne, 0, t);
    const Atelier a(tourne, Fichiers::hdf5);
    const Resultat res = a.importer();
    ASSERT_EQ(res.statut, 0) << res.erreur;
    EXPECT_NE(res.sortie.find("piece fut en O"), std::string::npos) << res.sortie;
    EXPECT_NE(res.sortie.find("1 blocs, 5 faces, 8 edges, 4 sommets"), std::string::npos);
    const Base b = a.charge();
    EXPECT_EQ(b.blocs.at(1)._type(), 34);
    EXPECT_TRUE(b.vois_bloc(1).empty());
    for (int c = 0; c < 8; ++c) EXPECT_GT(b.blk_vrtx_ijk(1, c & 1, c >> 1 & 1, c >> 2), 0);
    const double aire = n / 2.0 * std::sin(2 * std::numbers::pi / n) * (g * g - r * r);
    EXPECT_NEAR(b.blocs.at(1)._volexa(), aire * h, 1e-9 * aire * h);
    EXPECT_NEAR(b.blocs.at(1)._volnsm(), aire * h, 1e-9 * aire * h);
    const double tour = n * (r + g) / 2 * 2 * std::sin(std::numbers::pi / n);
    EXPECT_NEAR(b.blocs.at(1)._volmor(), tour * (g - r) * h, 1e-9 * tour);
    EXPECT_EQ(topodata({"verifie", a.cas(), "nrm", "--bases", "essai"}).statut, 0);
  }
}

// One face against two blocks, another under two conditions and partly bare. The two small blocks
// touch only through the big one, and have their corners in common all the same.
TEST(Importe, SplitFaces) {
  Modele m = partage();
  for (const auto& t : {std::array{1, 2, 3}, {3, -2, 1}}) {
    Modele tourne = m;
    for (std::size_t z = 0; z < 3; ++z) tourner(tourne, z, t);
    const Atelier a(tourne);
    const Resultat res = a.importer({"--mode", "toutes"});
    ASSERT_EQ(res.statut, 0) << res.erreur;
    // i-max joined twice; i-min: wall, inlet, and a bare strip. The numbers 2 and 3 stay free.
    const bool droit = t[0] == 1;
    EXPECT_NE(
        res.sortie.find(droit ? "bloc 1 i-max : 2 sous-faces" : "bloc 1 k-max : 2 sous-faces"),
        std::string::npos)
        << res.sortie;
    EXPECT_NE(res.sortie.find(": 3 sous-faces"), std::string::npos);
    EXPECT_NE(res.sortie.find("ni raccord ni condition, code 9999"), std::string::npos);
    // Of the first box 4 faces and 5 pieces, of the others 5 faces each; and two that the link
    // makes of the counts 2 and 3. Of the first box 8 corners, 2 where the others meet, 4 of
    // pieces.
    const Base b = a.charge("ext");
    EXPECT_EQ(b.faces.size(), 4U + 5 + 2 * 5 + 2);
    EXPECT_EQ(b.vrtxs.size(), 8U + 2 + 2 * 4 + 4);
    const std::vector<int> p = places(b, 1);
    EXPECT_EQ(std::ranges::count(p, 2), 1);
    EXPECT_EQ(std::ranges::count(p, 3), 1);
    EXPECT_TRUE(b.vois_bloc(1).empty());
    EXPECT_NEAR(b.blocs.at(1)._volexa(), 2, 1e-9);
    const Resultat v = topodata({"verifie", a.cas(), "--modes", "toutes", "--bases", "essai"});
    EXPECT_EQ(v.statut, 1) << v.sortie;
    EXPECT_EQ(occurrences(v.sortie, "[V072]"), lignes(v.sortie)) << v.sortie;
    EXPECT_NE(topodata({"voir", a.cas(), "nrm", "essai", "--voisins", "1"})
                  .sortie.find("face 3 absente du fichier, ou 3 sous-faces"),
              std::string::npos);
  }
  // With as many parts on two blocks, these are neighbours to the reading.
  m.s.conditions.pop_back();
  m.condition(1, {{3, 1, 1}, {3, 2, 3}}, "paroi_haut", 1);
  const Atelier a(m);
  EXPECT_NE(a.importer({"--mode", "toutes"}).sortie.find("blocs 1 2 : chacun a une face en 2"),
            std::string::npos);
  const Resultat v = topodata({"verifie", a.cas(), "ext", "--bases", "essai"});
  EXPECT_EQ(occurrences(v.sortie, "les blocs 1, 2 passent pour voisins"), 3U) << v.sortie;
  EXPECT_EQ(occurrences(v.sortie, "[V025]"), lignes(v.sortie)) << v.sortie;
}

// A block bent around an airfoil, joined to itself behind it: in two ranges, or folded as a whole.
TEST(Importe, ACGrid) {
  constexpr Indice n = 16, te = n / 4 + 1;
  Modele m;
  m.s.base = "profil";
  m.zone({n, 3, 2}, [](double u, double v, double w) {
    constexpr double pi = std::numbers::pi;
    const double sillage = std::max(0.25 - u, u - 0.75), a = 4 * pi * (u - 0.25);
    const double angle = -pi / 2 - 2 * pi * (std::clamp(u, 0.25, 0.75) - 0.25);
    return sillage >= 0 ? Vec{1 + 8 * sillage, v * std::sin(angle), w}
                        : Vec{0.5 + 0.5 * std::cos(a) + v * std::cos(angle),
                              -0.05 * std::sin(a) + v * std::sin(angle), w};
  });
  for (const int place : {0, 2, 3, 4, 5}) m.condition(0, face(m, 0, place), "loin", 4);
  Modele pli = m;
  m.jonction(0, {{1, 1, 1}, {te, 1, 3}}, 0, {{1, 1, 1}, {n + 1, 1, 1}, {-1, -2, 3}});
  m.condition(0, {{te, 1, 1}, {n + 2 - te, 1, 3}}, "paroi_aile", 1);
  for (auto& x : pli.xyz[0][1])
    if (std::abs(x) <= 0.05 + 1e-9) x = 0;
  pli.jonction(0, face(pli, 0, 1), 0, {{1, 1, 1}, {n + 1, 1, 1}, {-1, -2, 3}});
  for (const bool plie : {false, true})
    for (const auto& t : {std::array{1, 2, 3}, {3, -1, -2}}) {
      Modele tourne = plie ? pli : m;
      tourner(tourne, 0, t);
      const Atelier a(tourne);
      const Resultat res = a.importer({"--mode", "toutes"});
      ASSERT_EQ(res.statut, 0) << res.erreur;
      for (const char* attendu :
           {plie ? ": 2 sous-faces" : "piece aile en C", plie ? "type 35" : ": 3 sous-faces"})
        EXPECT_NE(res.sortie.find(attendu), std::string::npos) << res.sortie;
      const Resultat v = topodata({"verifie", a.cas(), "--modes", "toutes", "--bases", "essai"});
      EXPECT_EQ(occurrences(v.sortie, "[V072]"), lignes(v.sortie)) << v.sortie;
      EXPECT_TRUE(a.charge().vois_bloc(1).empty());
    }
}

// Everything that keeps a mesh from being imported: one line says so, status 2, nothing is written.
TEST(Importe, Refusals) {
  struct Rangee {
    Alteration alterer;
    const char* attendu;
    std::vector<std::string> options = {};
  };
  const Rangee rangees[]{
      {base_plane, "cellules de dimension 2 dans un espace de dimension 3"},
      {zone_non_structuree, "zone 'zone' : non structuree"},
      {deux_bases, "2 bases, choisir avec --base-cgns : 'deux', 'autre'"},
      {deux_bases, "aucune zone dans la base 'autre'", {"--base-cgns", "autre"}},
      {deux_bases, "base 'tierce' absente, il y a 'deux', 'autre'", {"--base-cgns", "tierce"}},
      {aucune_base, "aucune base"},
      {aucune_zone, "aucune zone dans la base 'base'"},
      {zone_plate, "zone 'zone' : une zone de moins de deux noeuds"},
      {sans_coordonnees, "pas de coordonnees cartesiennes (CoordinateX)"},
      {coordonnees_polaires, "pas de coordonnees cartesiennes (CoordinateX)"},
      {coordonnee_infinie, "zone 'zone 2' : coordonnees qui ne sont pas des nombres finis"},
      {noeud_ecarte, "zone 'zone 1' [3:3,1:3,1:3] et zone 'zone 2' [1:1,1:3,1:3] sont a "},
      {voisine_inconnue, "raccord 'perdu' : zone voisine 'nulle part' inconnue"},
      {raccord_boiteux,
       "[3:3,1:3,1:3] et [1:1,1:3,1:3] de la zone 'zone 2' ne se correspondent pas"},
      {raccord_double, "[3:3,1:3,1:3] est raccordee a deux endroits"},
      {raccord_contraire, "y est orientee de deux facons"},
      {raccord_transpose, "y est orientee de deux facons"},
      {raccord_trop_long, "zone 'zone 1', raccord 'long' : 28 points"},
      {raccord_aux_images_de_trop, "zone 'zone 1', raccord 'long' : 28 points"},
      {condition_trop_longue, "zone 'zone 1', condition 'longue' : 28 points"},
      {tronque, "fichier CGNS illisible"},
      {un_texte, "fichier CGNS illisible"},
      {[](const std::string& f) { std::filesystem::remove(f); }, "m.cgns : No such file"},
      {[](const std::string& f) {
         std::filesystem::remove(f);
         std::filesystem::create_directory(f);
       },
       "n'est pas un fichier"},
  };
  for (const Rangee& r : rangees)
    for (const Fichiers genre : {Fichiers::adf, Fichiers::hdf5}) {
      const Atelier a(deux_boites(), genre);
      r.alterer(a.maillage());
      const Resultat res = a.importer(r.options);
      EXPECT_EQ(res.statut, 2) << r.attendu;
      EXPECT_NE(res.erreur.find(r.attendu), std::string::npos) << res.erreur << r.attendu;
      EXPECT_EQ(lignes(res.erreur), 1U) << res.erreur;
      EXPECT_EQ(res.sortie, "");
      EXPECT_EQ(a.contenu(), std::vector<std::string>{}) << r.attendu;
    }
}

// Faults of the command line and of the collection.
TEST(Importe, RefusedWithAGoodMesh) {
  struct Rangee {
    std::string fichier, contenu;  // in the collection
    std::vector<std::string> options;
    const char* attendu;
  };
  const std::string entete = "Damas code;BCCODE;Family;\n";
  const Rangee rangees[]{
      {"climite.cfg", entete + "101;1;paroi", {}, "climite.cfg:2 : "},
      {"climite.cfg", entete + "101;1;paroi\n", {}, "dernier champ sans point-virgule"},
      {"climite.cfg", entete + "101;1;\n", {}, "ligne courte"},
      {"climite.cfg", "Damas code;Family;\n101;paroi;\n", {}, "pas de colonne BCCODE"},
      {"climite.cfg", "", {}, "climite.cfg:1 : vide"},
      {"essai/x", "", {}, "essai existe deja"},
      {"essai/x/y", "", {"--force"}, "essai contient autre chose que des fichiers : x"},
      {"c.csv",
       "famille,BCCODE\nsol,un\n",
       {"--codes", "c.csv"},
       "c.csv:2 : attendu : famille,BCCODE"},
      {"c.csv", "sol;1\n", {"--codes", "c.csv"}, "c.csv:1 : attendu"},
      {"p.csv", "sol,C\nciel,X\n", {"--pieces", "p.csv"}, "p.csv:2 : attendu"},
      {"", "", {"--codes", "absent.csv"}, "absent.csv : illisible"},
  };
  for (const Rangee& r : rangees) {
    const Atelier a(deux_boites());
    if (!r.fichier.empty()) a.d.ecrire("cas/" + r.fichier, r.contenu);
    const auto avant = a.contenu();
    std::vector<std::string> options = r.options;
    if (options.size() > 1) options[1] = a.cas() + options[1];
    const Resultat res = a.importer(options);
    EXPECT_EQ(res.statut, 2) << r.attendu;
    EXPECT_NE(res.erreur.find(r.attendu), std::string::npos) << res.erreur << r.attendu;
    EXPECT_EQ(a.contenu(), avant) << r.attendu;
  }
  const Atelier a(deux_boites());
  for (const std::string& base :
       {std::string("a/b"), std::string(".."), std::string(), std::string("a\nb")})
    EXPECT_EQ(topodata({"importe", a.maillage(), a.cas(), base}).statut, 2) << base;
  EXPECT_EQ(topodata({"importe", a.maillage(), a.cas() + "absent", "essai"}).statut, 2);
  EXPECT_GT(a.importer({"--mode", "xyz"}).statut, 100);
  EXPECT_GT(a.importer({"--tolerance", "2"}).statut, 100);
  const Resultat plein = topodata_disque_plein({"importe", a.maillage(), a.cas(), "essai"});
  EXPECT_EQ(plein.statut, 2);
  EXPECT_NE(plein.erreur.find("ecriture impossible"), std::string::npos) << plein.erreur;
  EXPECT_EQ(a.contenu(), std::vector<std::string>{});
}

TEST(Importe, WhatACaseCannotExpressIsSaid) {
  const Atelier a(deux_boites());
  ajouts_a_dire(a.maillage());
  const Resultat res = a.importer();
  ASSERT_EQ(res.statut, 0) << res.erreur;
  for (const char* attendu :
       {"condition 'ligne' laissee de cote", "condition 'dedans' laissee de cote",
        "condition 'en L' laissee de cote",
        "condition 'cellules' laissee de cote, donnee par cellules",
        "condition 'sur un raccord' : zone 'zone 1' [3:3,1:3,1:3] est raccordee",
        "zone 'zone 1' [1:1,1:2,1:3] et [1:1,1:3,1:2] se recouvrent",
        "raccord 'glissant' (Abutting) : sans correspondance",
        "raccord 'par cellules' (Overset) : ses points ne designent pas une partie d'une seule "
        "face",
        "raccord 'sur place' [1:3,1:3,1:1] ne joint pas deux faces",
        "condition 'entiere' avec 1 AdditionalFamilyName",
        "zone 'zone 1' [1:3,1:3,1:1] : 2 familles",
        "condition 'nulle' sans type, la famille 'nulle' n'en donne pas non plus",
        "zone 'zone 1' : 2 jeux de coordonnees", "zones en Meter et en Millimeter, les coordonnees",
        "bloc 1 i-min : 3 sous-faces",
        "famille 'interface' : code 901 (nouveau), BCCODE 9, 1 face(s)",
        "famille 'periodique' : code 801 (nouveau), BCCODE 8, 2 face(s)"})
    EXPECT_NE(res.sortie.find(attendu), std::string::npos) << attendu << '\n' << res.sortie;
}

// A family keeps its code from mesh to mesh, whatever else is in climite.cfg.
TEST(Importe, CodesAreStable) {
  const Atelier a(deux_boites());
  a.d.ecrire("cas/climite.cfg", "Family;Note;Damas code;BCCODE;\nloin;x;77;4;\nautre;y;101;1;\n");
  a.d.ecrire("codes.csv", "famille,BCCODE\nparoi_sol,13\nloin,5\n");
  a.d.ecrire("pieces.csv", "paroi_sol,O\nciel,C\n");
  const std::string apres =
      "Family;Note;Damas code;BCCODE;\nloin;x;77;4;\nautre;y;101;1;\n"
      "sans_condition;;9999;9999;\nparoi_sol;;1301;13;\n";
  const std::vector<std::string> options{"--codes", a.d.chemin() + "codes.csv", "--pieces",
                                         a.d.chemin() + "pieces.csv"};
  Resultat res = a.importer(options);
  ASSERT_EQ(res.statut, 0) << res.erreur;
  EXPECT_EQ(a.d.lire("cas/climite.cfg"), apres);
  EXPECT_NE(
      res.sortie.find("famille 'loin' : BCCODE 4 de climite.cfg garde, condition 'c2' donne 5"),
      std::string::npos)
      << res.sortie;
  EXPECT_NE(res.sortie.find("famille 'ciel' de --pieces : aucune paroi"), std::string::npos);
  // The same mesh again, in another mode: nothing new, and the files of the first mode stay.
  res = a.importer({"--mode", "min", "--force"});
  ASSERT_EQ(res.statut, 0) << res.erreur;
  EXPECT_EQ(a.d.lire("cas/climite.cfg"), apres);
  EXPECT_EQ(a.contenu().size(), 2U + 1 + 2 * 4);
}

TEST(Importe, NoFamilyTakesTheCodeOfBareFaces) {
  Modele m;
  m.s.base = "vide";
  boite(m, 0, 0, 0);
  m.condition(0, face(m, 0, 0), "vide", 13);
  const Atelier a(m);
  a.d.ecrire("codes.csv", "vide,9999\n");
  ASSERT_EQ(a.importer({"--codes", a.d.chemin() + "codes.csv"}).statut, 0);
  EXPECT_EQ(a.d.lire("cas/climite.cfg"),
            "Damas code;BCCODE;Family;\n1401;9999;vide;\n9999;9999;sans_condition;\n");
}

// Names of any kind come through: in the summary without control characters, in the files in
// Latin-1, in climite.cfg without the separator.
TEST(Importe, OddNames) {
  Modele m;
  m.s.base = "bizarre";
  boite(m, 0, 0, 0);
  m.s.zones[0].nom = "z<&>\"' 1";
  m.condition(0, face(m, 0, 2),
              "paroi_<\303\251t\303\251>;&\342\202\254\340\240\200\365\360\237\230\200\x1b[", 1);
  m.condition(0, face(m, 0, 1), "loin;", 4);
  for (const int place : {4, 5}) m.condition(0, face(m, 0, place), "loin_", 4);
  const Atelier a(m);
  const Resultat res = topodata({"importe", a.maillage(), a.cas(), "b\303\251 &<x"});
  ASSERT_EQ(res.statut, 0) << res.erreur;
  const std::string dit = "a savoir : familles 'loin;' et 'loin_' : toutes deux ecrites 'loin_'\n";
  EXPECT_EQ(occurrences(res.sortie, dit), 1U) << res.sortie;
  EXPECT_EQ(occurrences(res.sortie, "toutes deux"), 1U) << res.sortie;
  EXPECT_EQ(res.sortie.find('\x1b'), std::string::npos);
  oublier_configuration();
  Base b("b\303\251 &<x", a.cas(), "nrm");
  ASSERT_TRUE(charger(b).fait);
  ASSERT_EQ(b.pieces.size(), 1U);
  EXPECT_EQ(b.pieces.begin()->first, "paroi_<\351t\351>_&__\365__[");
  EXPECT_EQ(b._CL(101, "Family"), "paroi_<\351t\351>_&__\365__[");
  EXPECT_EQ(b.blocs.at(1)._type(), 36);
}

// What is said of meshes of every kind, and what is written, to the byte.
TEST(Importe, InSessions) {
  const Collection c;
  const std::string ou = (c.dossier / "modeles").string() + "/";
  std::filesystem::create_directory(ou);
  const auto ecrire = [&ou](const Modele& m, const std::string& nom,
                            Fichiers genre = Fichiers::adf) {
    Modele nomme = m;
    nomme.s.base = nom;
    ecrire_cgns(nomme, ou + nom + ".cgns", genre);
  };
  Modele types, coin, gauche = tour(12), seule = partage();
  boite(types, 0, 0, 0, {5, 5, 2});
  for (Jonction& j : seule.s.jonctions) j.nom = "seul" + j.nom;
  seule.condition(1, face(seule, 1, 2), "autre/paroi_bas", 1);
  seule.condition(2, face(seule, 2, 2), "autre/", 1);
  boite(coin, 0, 0, 0);
  coin.zone({2, 2, 2}, [](double u, double v, double w) { return Vec{1 + u, v * (1 - u), w}; });
  coin.zone({3, 2, 2}, [](double u, double v, double w) {
    return Vec{u * (1 - w), 1 + v * (1 - w), w};
  });
  coin.jonction(0, face(coin, 0, 3), 1, {{3, 1, 1}, {1, 1, 1}, {1, 2, 3}});
  coin.condition(0, face(coin, 0, 2), "paroi_sol", 1);
  coin.condition(1, face(coin, 1, 2), "paroi_aile", 1);
  coin.condition(2, face(coin, 2, 2), "paroi_sol", 1);
  tourner(gauche, 0, {-1, 2, 3});
  // Of no size, of no volume, and as thin as a zone may be, or thinner.
  const auto mince = [&ecrire](const std::string& nom, double cote, double epaisseur) {
    Modele m;
    m.zone({2, 2, 2}, [=](double u, double v, double w) {
      return Vec{cote * u, cote * v, epaisseur * w};
    });
    m.condition(0, face(m, 0, 2), "paroi_", 1);
    ecrire(m, nom);
  };
  mince("point", 0, 0);
  mince("plat", 1, 0);
  mince("feuille", 1, 0.7e-9);
  mince("mince", 1, 7e-9);
  Modele ecart;
  boite(ecart, 0, 0, 0);
  boite(ecart, 1.01, 0, 0, {4, 2, 2});
  ecart.jonction(0, face(ecart, 0, 3), 1, {{3, 1, 1}, {1, 1, 1}, {1, 2, 3}});
  ecrire(ecart, "ecart");
  ecrire(deux_boites(), "deux");
  ecrire(deux_boites(), "dits", Fichiers::hdf5);
  ecrire(tour(12), "tour");
  ecrire(gauche, "gauche");
  ecrire(partage(), "partage", Fichiers::hdf5);
  ecrire(seule, "seule");
  ecrire(types, "types");
  ecrire(coin, "coin");
  ajouts_a_dire(ou + "dits.cgns");
  tous_les_types(ou + "types.cgns");
  for (const int n : {1, 3, 4}) {
    oublier_configuration();
    Base b("mesh_case_" + std::to_string(n), TOPOMINE_CASES, "nrm");
    ASSERT_TRUE(charger(b).fait);
    ecrire(modele_de(b, n == 4), "cas_" + std::to_string(n));
  }
  rejouer_sessions(c, TOPOMINE_CASES "../cgns/sessions.txt");
}

TEST(Importe, TheProgramWithoutTheLibrary) {
  const Resultat r = lancer(SANS_CGNS_PROGRAM, ".", {"importe", "m.cgns", ".", "essai"});
  EXPECT_EQ(r.statut, 2);
  EXPECT_EQ(
      r.erreur,
      "topodata : importe : construit sans CGNS (paquet Debian libcgns-dev, puis reconstruire)\n");
}

}  // namespace topomine
