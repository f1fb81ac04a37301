#include "app/topodata/aide.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/topodata/programme.h"

using namespace topomine;

namespace {

Resultat dans(const char* colonnes, const std::vector<std::string>& arguments) {
  return topodata(arguments, [colonnes] { setenv("COLUMNS", colonnes, 1); });
}

std::vector<std::string> proposes(std::vector<std::string> mots) {
  mots.insert(mots.begin(), "__completer");
  std::istringstream lignes(topodata(mots).sortie);
  std::vector<std::string> noms;
  for (std::string l; std::getline(lignes, l);) noms.push_back(l);
  return noms;
}

}  // namespace

TEST(Help, LongLinesAreBrokenBetweenWordsUnderTheirBeginning) {
  const struct {
    std::string texte;
    std::size_t largeur;
    std::string attendu;
  } cas[] = {
      {"un deux trois\n", 8, "un deux\ntrois\n"},
      {"  --a X   un deux trois\n", 20, "  --a X   un deux\n          trois\n"},
      {"  --tres-long-nom\n          un deux trois\n", 20,
       "  --tres-long-nom\n          un deux\n          trois\n"},
      {"undeuxtrois quatre\n", 5, "undeuxtrois\nquatre\n"},
      {"Exemple :\n  un deux trois\nun deux\n", 5, "Exemple\n:\n  un deux trois\nun\ndeux\n"},
      {"\n", 5, "\n"},
  };
  for (const auto& c : cas) EXPECT_EQ(replier(c.texte, c.largeur), c.attendu) << c.texte;
}

TEST(Help, EveryCommandHasItInAnyWidthAndItsVersion) {
  const std::vector<std::string> commandes = proposes({""});
  ASSERT_GE(commandes.size(), 8U);
  for (const std::string& commande : commandes) {
    for (const char* colonnes : {"60", "100", "absurde"}) {
      const Resultat r = dans(colonnes, {"help", commande});
      EXPECT_EQ(r.statut, 0) << commande;
      EXPECT_EQ(r.sortie, dans(colonnes, {commande, "--help"}).sortie) << commande;
      const std::size_t largeur = colonnes[0] == 'a' ? 80 : std::stoul(colonnes);
      std::istringstream lignes(r.sortie.substr(0, r.sortie.find("\nExemple")));
      for (std::string l; std::getline(lignes, l);)
        EXPECT_TRUE(l.size() <= largeur || l.find(":{") != std::string::npos) << commande << l;
    }
    const Resultat v = topodata({commande, "--version"});
    EXPECT_EQ(v.statut, 0) << commande;
    EXPECT_EQ(v.sortie, std::string(version) + '\n') << commande;
  }
  // A name that just fits before its column.
  EXPECT_NE(dans("60", {"help", "partage"}).sortie.find("  --stratifie ATTRIBUT\n           "),
            std::string::npos);
  EXPECT_EQ(topodata({"help"}).sortie, topodata({"--help"}).sortie);
  EXPECT_NE(topodata({"help", "inconnue"}).statut, 0);
  EXPECT_NE(topodata({"help", "table", "voir"}).statut, 0);
}

TEST(Completion, FollowsTheCommandLine) {
  const Collection c;
  const struct {
    std::vector<std::string> mots, attendus;
  } cas[] = {
      {{"ver"}, {"verifie"}},
      {{"inconnue", ""}, proposes({""})},
      {{"voir", ""}, {":dossiers"}},
      {{"voir", c.cas(), ""}, {"ext", "nrm", "min"}},
      {{"voir", c.cas(), "nrm", "mesh_case_8"}, {"mesh_case_8"}},
      {{"voir", "/nulle/part", "nrm", ""}, {}},
      {{"voir", c.cas(), "--element", "3", "m"}, {"min"}},
      {{"table", c.cas(), "nrm", "--bases", "mesh_case_1,x,mesh_case_"},
       {"mesh_case_1,x,mesh_case_2", "mesh_case_1,x,mesh_case_3", "mesh_case_1,x,mesh_case_4",
        "mesh_case_1,x,mesh_case_5", "mesh_case_1,x,mesh_case_6", "mesh_case_1,x,mesh_case_7",
        "mesh_case_1,x,mesh_case_8"}},
      {{"table", "--format", ""}, {"csv", "torch", "weka"}},
      {{"table", "--garde", "a,Class"}, {"a,Classe"}},
      {{"table", "--sortie", ""}, {":fichiers"}},
      {{"table", "--nom", ""}, {}},
      {{"verifie", "--explique", "t"}, {"tout"}},
      {{"verifie", "--seulement", "erreur,a"}, {"erreur,avertissement", "erreur,avis"}},
      {{"dessine", c.cas(), "nrm", "mesh_case_1", "--par", "f"}, {"famille"}},
      {{"table", "--norm"}, {"--normalise"}},
      {{"table", c.cas(), "nrm", ""}, {}},
  };
  for (const auto& [mots, attendus] : cas) EXPECT_EQ(proposes(mots), attendus) << mots.back();
}
