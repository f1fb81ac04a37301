#include <gtest/gtest.h>

#include "tests/topodata/programme.h"

namespace {

/// The files of the folder besides the collection.
std::vector<std::string> ecrits(const Collection& c) {
  std::vector<std::string> noms;
  for (const auto& f : std::filesystem::directory_iterator(c.dossier))
    if (f.is_regular_file()) noms.push_back(f.path().filename());
  return noms;
}

}  // namespace

TEST(Exporte, RefusesInOneLineAndWritesNothing) {
  const Collection c;
  const std::string cas = c.cas(), ou = c.dossier.string() + "/";
  struct Ligne {
    std::vector<std::string> arguments;
    std::string dit;
  };
  const Ligne lignes[]{
      {{cas, "nrm", "mesh_case_2", "-o", ou + "a.stl"},
       "topodata : '" + ou + "a.stl' : un export se nomme .vtu ou .vtk\n"},
      {{cas, "nrm", "mesh_case_2", "-o", ou + "vtu"},
       "topodata : '" + ou + "vtu' : un export se nomme .vtu ou .vtk\n"},
      {{cas, "nrm", "mesh_case_9", "-o", ou + "a.vtu"}, "topodata : base inconnue : 'mesh_case_9'"},
      {{cas, "nrm", "a,b", "-o", ou + "a.vtu"}, "topodata : base inconnue : 'a,b'\n"},
      {{cas, "xyz", "mesh_case_2", "-o", ou + "a.vtu"}, "topodata : mode inconnu : 'xyz'"},
      {{cas, "nrm", "mesh_case_2", "-o", ou + "absent/a.vtu"},
       "topodata : " + ou + "absent/a.vtu : ecriture impossible"},
  };
  for (const Ligne& l : lignes) {
    std::vector<std::string> arguments = l.arguments;
    arguments.insert(arguments.begin(), "exporte");
    const Resultat r = topodata(arguments);
    EXPECT_EQ(r.statut, 2);
    EXPECT_TRUE(r.erreur.starts_with(l.dit) && r.erreur.ends_with('\n')) << r.erreur;
    EXPECT_EQ(ecrits(c), std::vector<std::string>());
  }
}

TEST(Exporte, SaysWhichBlocksHaveNoCorners) {
  const Collection c;
  ASSERT_TRUE(
      c.changer("mesh_case_2/mesh_case_2_nrm.vrtx", "<Ident>1</Ident>", "<Ident>991</Ident>"));
  const Resultat r =
      topodata({"exporte", c.cas(), "nrm", "mesh_case_2", "-o", (c.dossier / "a.vtu").string()});
  EXPECT_EQ(r.statut, 0);
  EXPECT_EQ(r.erreur, "topodata : 2 bloc(s) dont les coins ne se trouvent pas : 1, 7\n");
  EXPECT_NE(lire(c.dossier / "a.vtu").find("NumberOfCells=\"6\""), std::string::npos);
  // None at all, and numbers that no reader takes.
  const std::string vrtx = "mesh_case_2/mesh_case_2_nrm.vrtx";
  ASSERT_TRUE(c.changer(vrtx, "(<Ident>2</Ident>[^]*?<X>)[^<]*", "$011.7e308"));
  const std::string fichier = (c.dossier / "b.vtk").string();
  const Resultat infini = topodata({"exporte", c.cas(), "nrm", "mesh_case_2", "-o", fichier});
  EXPECT_NE(infini.erreur.find("vol_coins laisse de cote"), std::string::npos) << infini.erreur;
  EXPECT_EQ(lire(fichier).find("inf\n"), std::string::npos);
  ecrire(c.cas() + vrtx, "<Vertices></Vertices>");
  const Resultat rien = topodata({"exporte", c.cas(), "nrm", "mesh_case_2", "-o", fichier});
  EXPECT_EQ(rien.statut, 2);
  EXPECT_EQ(rien.erreur,
            "topodata : rien a exporter dans mesh_case_2 : 8 bloc(s) dont les coins ne se trouvent "
            "pas : 1, 2, 3, 4, 5, ...\n");
}
