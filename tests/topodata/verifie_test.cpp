#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/topodata/programme.h"

namespace {

constexpr char blck[] = "mesh_case_2/mesh_case_2_nrm.blck",
               face[] = "mesh_case_2/mesh_case_2_nrm.face";

Resultat verifie(const Collection& c, std::vector<std::string> options = {}) {
  options.insert(options.begin(), {"verifie", c.cas(), "nrm", "--bases", "mesh_case_2"});
  return topodata(options);
}

std::string sans_codes(std::string faces) {
  for (const std::string de : {"<Boundary_Conditions>"})
    for (std::size_t i; (i = faces.find(de)) != std::string::npos;)
      faces.erase(i, faces.find("</Boundary_Conditions>", i) + 22 - i);
  return faces;
}

}  // namespace

TEST(Verifie, SaysHowMuchItLookedAt) {
  const Collection c;
  const Resultat r = topodata({"verifie", c.cas(), "--modes", "toutes"});
  EXPECT_EQ(r.sortie, "");
  EXPECT_EQ(r.erreur,
            "topodata : 0 erreur(s), 0 avertissement(s), 0 avis ; 8 base(s), 121 fichier(s), "
            "3177 entite(s) lus\n");
  EXPECT_EQ(r.statut, 0);
}

TEST(Verifie, NeverKeepsSilentOnNothing) {
  const Collection c;
  const std::string vide = c.dossier / "vide/";
  std::filesystem::create_directory(vide);
  const Resultat r = topodata({"verifie", vide, "nrm"});
  EXPECT_EQ(r.sortie, vide +
                          "climite.cfg:1: fichier: absent, aucun code n'est connu; le fournir, ou "
                          "en donner le droit [erreur] [V001]\n" +
                          vide +
                          ":1: dossier: aucune des bases n'y est (mesh_case_1 ...); donner le bon "
                          "dossier, ou nommer les bases par --bases [erreur] [V009]\n");
  EXPECT_TRUE(r.erreur.starts_with("topodata : 2 erreur(s)")) << r.erreur;
  EXPECT_EQ(r.statut, 2);
  std::filesystem::remove_all(c.cas() + "mesh_case_8");
  EXPECT_NE(
      topodata({"verifie", c.cas(), "nrm"}).sortie.find("mesh_case_8:1: base mesh_case_8: absente"),
      std::string::npos);
  // A climite.cfg that a run takes for none at all.
  const std::string config = c.cas() + "climite.cfg";
  for (const bool lien : {false, true}) {
    std::filesystem::remove(config);
    if (lien)
      std::filesystem::create_symlink("climite.cfg", config);
    else
      std::filesystem::create_directory(config);
    const std::string quoi = lien ? "lien qui tourne en rond" : "dossier au lieu d'un fichier";
    EXPECT_TRUE(
        topodata({"verifie", c.cas(), "nrm", "--bases", "mesh_case_1"})
            .sortie.starts_with(config + ":1: fichier: " + quoi + ", aucun code n'est connu; "));
  }
}

TEST(Verifie, GroupsWhatRepeatsAndShowsAllWhenAsked) {
  const Collection c;
  ecrire(c.cas() + face, sans_codes(lire(c.cas() + face)));
  ASSERT_TRUE(c.changer(blck, "<Type>\\d+<", "<Type>40<"));
  const Resultat r = verifie(c);
  EXPECT_EQ(std::ranges::count(r.sortie, '\n'), 5) << r.sortie;
  EXPECT_NE(r.sortie.find(" [erreur] [V047]\n"), std::string::npos);
  EXPECT_NE(r.sortie.find(": face: et 25 autres, lignes "), std::string::npos) << r.sortie;
  EXPECT_EQ(std::ranges::count(verifie(c, {"--tout"}).sortie, '\n'), 29);
}

TEST(Verifie, ChoosesByCodeAndSeverityAndAnswersForWhatIsLeft) {
  const Collection c;
  ASSERT_TRUE(c.changer(blck, "<Type>\\d+<", "<Type>40<"));
  ASSERT_TRUE(c.changer(blck, "<Mor><Cell>[^<]*<", "<Mor><Cell>1000<"));
  ASSERT_TRUE(c.changer("climite.cfg", "\n101;1;", "\n101;14;"));
  struct {
    std::vector<std::string> options;
    std::string codes;
    int statut;
  } const lignes[]{{{}, "V092V047V051", 2},
                   {{"--ignore", "V047"}, "V092V051", 1},
                   {{"--ignore", "V047,V051", "--ignore", "V092"}, "", 0},
                   {{"--seulement", "erreur"}, "V047", 2},
                   {{"--seulement", "avertissement,avis"}, "V092V051", 1},
                   {{"--seulement", "avis"}, "", 0}};
  for (const auto& l : lignes) {
    const Resultat r = verifie(c, l.options);
    std::string codes;
    for (std::size_t i = 0; (i = r.sortie.find("[V", i)) != std::string::npos; ++i)
      codes += r.sortie.substr(i + 1, 4);
    EXPECT_EQ(codes, l.codes) << r.sortie;
    EXPECT_EQ(r.statut, l.statut) << r.sortie;
  }
  for (const std::vector<std::string>& options : {std::vector<std::string>{"--ignore", "V000"},
                                                  {"--seulement", "grave"},
                                                  {"--modes", "nrm,autre"},
                                                  {"--explique", "V999"}})
    EXPECT_GT(verifie(c, options).statut, 100);
}

TEST(Verifie, ACollapsedBlockThatIsMeantIsNoFault) {
  const Resultat r = topodata({"verifie", TOPOMINE_CASES, "nrm"});
  EXPECT_NE(r.sortie.find("bloc 1: degenere : face 2 (j-min) vide, une edge vide aux faces 1, 3"),
            std::string::npos)
      << r.sortie;
  EXPECT_TRUE(r.erreur.starts_with("topodata : 0 erreur(s), 0 avertissement(s), 8 avis"))
      << r.erreur;
  EXPECT_EQ(r.statut, 0);
}

TEST(Verifie, ExplainsACode) {
  const Resultat r = topodata({"verifie", "--explique", "V012"});
  EXPECT_TRUE(r.sortie.starts_with("V012 [erreur] pas un nombre\n  Sens   : ")) << r.sortie;
  EXPECT_EQ(r.statut, 0);
}
