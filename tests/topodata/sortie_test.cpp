#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <iterator>

#include "tests/topodata/programme.h"

namespace fs = std::filesystem;

namespace {

std::ptrdiff_t nb_fichiers_dans(const fs::path& dossier) {
  return std::distance(fs::directory_iterator(dossier), {});
}

}  // namespace

TEST(Sortie, SaysInOneLineWhatCannotBeDone) {
  const Collection c;
  const std::string cas = c.cas(), d = c.dossier.string();
  struct Cas {
    std::vector<std::string> arguments;
    std::string erreurs;
  };
  const std::string proche = " (le plus proche : erikson ; topodata attributs les dit tous)";
  const Cas rangees[]{
      {{"table", cas, "nrx"}, "mode inconnu : 'nrx' (attendu : ext, nrm ou min)"},
      {{"table", d + "/non", "nrm"}, "dossier inconnu : '" + d + "/non'"},
      {{"table", cas, "nrm", "--bases", "mesh_case_1,x"},
       "base inconnue : 'x' (pas de dossier " + cas + "x)"},
      {{"voir", cas, "nrm", "x"}, "base inconnue : 'x' (pas de dossier " + cas + "x)"},
      {{"table", cas, "nrm", "--bases", ","}, "aucune base dans ','"},
      {{"table", cas, "nrm", "--bases", "mesh_case_1, mesh_case_1"},
       "base donnee deux fois : 'mesh_case_1'"},
      {{"voir", cas, "nrm", "mesh_case_1,mesh_case_2"},
       "base inconnue : 'mesh_case_1,mesh_case_2'"},
      {{"table", cas, "nrm", "--garde", ""}, "aucun attribut dans ''"},
      {{"table", cas, "nrm", "--garde", "erikson, erik"}, "attribut inconnu : 'erik'" + proche},
      {{"table", cas, "nrm", "--cache", "erik"}, "attribut inconnu : 'erik'" + proche},
      {{"table", cas, "nrm", "-o", d + "/non/t"},
       d + "/non/t : ecriture impossible (No such file or directory)"},
      {{"table", cas, "nrm", "-o", d}, d + " : ecriture impossible (Is a directory)"},
      {{"table", cas, "nrm", "-o", "/dev/full"},
       "/dev/full : ecriture impossible (No space left on device)"},
      {{"covariance", cas, "nrm", "--image", "a.gif"}, "'a.gif' : une image se nomme .png ou .svg"},
      {{"covariance", cas, "nrm", "--image", d + "/a.png", "--garde", "base"},
       "aucun attribut numerique a dessiner"},
      {{"voir", cas, "nrm", "mesh_case_1", "--element", "999999"},
       "element 999999 inexistant dans mesh_case_1"},
      {{"voir", cas, "nrm", "mesh_case_1", "--coins", "99"}, "bloc 99 inexistant dans mesh_case_1"},
      {{"voir", cas, "nrm", "mesh_case_1", "--sorte", "avion", "--element", "1"},
       "une base n'a qu'un avion, sans numero"},
      {{"verifie", cas, "nrm", "--bases", "mesh_case_1,mesh_cas_2"},
       "base inconnue : 'mesh_cas_2' (pas de dossier " + cas + "mesh_cas_2)"},
      {{"table", cas, "nrm", "--bases", "a?b"},
       "base 'a?b' : ce nom ne s'ecrit que dans le format csv"},
  };
  std::filesystem::create_directory(cas + "a?b");
  for (const Cas& r : rangees) {
    const Resultat fait = topodata(r.arguments);
    EXPECT_EQ(fait.erreur, "topodata : " + r.erreurs + "\n");
    EXPECT_EQ(fait.sortie, "");
    EXPECT_EQ(fait.statut, 2);
  }
}

TEST(Sortie, SaysInFrenchWhatItDoesNotUnderstandAndHelps) {
  using Mots = std::vector<std::string>;
  const auto table = [](Mots suite) {
    suite.insert(suite.begin(), {"table", "c", "nrm"});
    return suite;
  };
  const auto partage = [](Mots suite) {
    suite.insert(suite.begin(), {"partage", "c", "nrm", "-o", "p"});
    return suite;
  };
  const std::string graine = "attendu : un entier de 0 a 4294967295";
  const struct {
    Mots mots;
    std::string dit;
  } rangees[]{
      {{}, "il manque une commande"},
      {{"tabel"}, "commande inconnue : 'tabel'"},
      {{"--foo"}, "option inconnue : '--foo'"},
      {{"table", "cas"}, "il manque MODE"},
      {table({"x", "--foo=1"}), "option inconnue : '--foo=1'"},
      {table({"x", "y"}), "argument de trop : 'x'"},
      {{"faux", "c", "nrm", "--methode", "tire", "--nombre", "1", "--ratio", "1"},
       "--nombre et --ratio ne vont pas ensemble"},
      {table({"--format", "x\033\n\x85\xC3\xA9"}),
       "--format : 'x\\x1B\\x0A\\x85\xC3\xA9' (attendu : csv,torch,weka)"},
      {{"resume", "c", "nrm", "--csv=3"}, "--csv ne prend pas de valeur"},
      {{"verifie", "--explique", "x"}, "--explique : code inconnu : 'x'"},
      {table({"--normalise=x"}), "--normalise ne prend pas de valeur"},
      {table({"-o"}), "--sortie : il manque sa valeur"},
      {table({"-o", ""}), "--sortie : attendu : un nom de fichier"},
      {table({"--graine", "0x10"}), "--graine : " + graine},
      {table({"--graine", "99999999999999999999"}), "--graine : " + graine},
      {table({"--graine", "1", "--graine", "2"}), "--graine : une seule valeur est permise"},
      {partage({"--ratio", "nan"}), "--ratio : attendu : un nombre de 0 a 1"},
      {partage({"--ratio", "2"}), "--ratio : attendu : un nombre de 0 a 1"},
      {partage({"--ratio", "1", "--graine", "4294967296"}), "--graine : " + graine},
      {{"faux", "c", "nrm", "--methode", "tire"}, "il manque --nombre ou --ratio"},
      {{"faux", "c", "nrm", "--methode", "tire", "--nombre", "-3"},
       "--nombre : attendu : un entier de 0 a 2147483647"},
      {{"voir", "c", "nrm", "b", "--coins", "4294967297"},
       "--coins : attendu : un entier de -2147483648 a 2147483647"},
      {{"covariance", "c", "nrm", "--image", ""}, "--image : attendu : un nom de fichier"},
  };
  for (const auto& r : rangees) {
    const Resultat fait = topodata(r.mots);
    EXPECT_EQ(fait.erreur.substr(0, fait.erreur.find('\n')), "topodata : " + r.dit);
    EXPECT_GT(fait.statut, 100);
    EXPECT_EQ(fait.sortie, "");
  }
  // "010" is ten, not eight.
  const Collection c;
  const auto melangee = [&](const char* graine_donnee) {
    return topodata({"table", c.cas(), "nrm", "--melange", "--graine", graine_donnee}).sortie;
  };
  EXPECT_EQ(melangee("010"), melangee("10"));
  EXPECT_NE(melangee("010"), melangee("8"));
  for (const char* commande :
       {"table", "partage", "faux", "resume", "covariance", "voir", "verifie"}) {
    const Resultat r = topodata({commande, "--help"});
    EXPECT_EQ(r.statut, 0);
    EXPECT_NE(r.sortie.find(std::string("  topodata ") + commande + " cas/ nrm"),
              std::string::npos);
    EXPECT_TRUE(std::ranges::all_of(r.sortie, [](char ch) { return ch > 0; })) << "not ASCII";
  }
  EXPECT_TRUE(topodata({"--version"}).sortie.starts_with("topodata "));
}

TEST(Sortie, ABaseThatDoesNotLoadEndsWithTheReadersWords) {
  const Collection c;
  const auto vieux = c.dossier / "t.arff";
  ecrire(vieux, "vieux");
  struct Cas {
    const char *fichier, *motif, *texte;
    std::string dit;  // # stands for the file
  };
  const Cas rangees[]{
      {"mesh_case_2/mesh_case_2_nrm.face", "</Faces>", "", "probleme de lecture du fichier #"},
      {"mesh_case_2/mesh_case_2_nrm.edge", "<NbVertex>2", "<NbVertex>3",
       "Erreur avec l'edge 1 ... (#)"},
      {"mesh_case_2/mesh_case_2_nrm.blck", "<Type>\\d+</Type>", "",
       "base: bool Base::load_blocs(): Assertion `node' failed. fichier #, bloc 1 : "
       "Blocks/Block/Type absent ou vide"},
      {"climite.cfg", "dessus;", "dessus", "Erreur acquisition climite.cfg...."},
  };
  for (const Cas& r : rangees) {
    const std::string avant = lire(c.cas() + r.fichier);
    ASSERT_TRUE(c.changer(r.fichier, r.motif, r.texte));
    std::string dit = r.dit;
    if (const auto i = dit.find('#'); i != std::string::npos)
      dit.replace(i, 1, c.cas() + r.fichier);
    const Resultat fait =
        topodata({"table", c.cas(), "nrm", "--bases", "mesh_case_2", "-o", vieux.string()});
    EXPECT_EQ(fait.erreur, "topodata : base mesh_case_2 non chargee : " + dit +
                               " ; topodata verifie dit tout ce qui n'y va pas\n");
    EXPECT_EQ(fait.sortie, "");
    EXPECT_EQ(fait.statut, 2);
    ecrire(c.cas() + r.fichier, avant);
  }
  EXPECT_EQ(lire(vieux), "vieux");
  EXPECT_EQ(nb_fichiers_dans(c.dossier), 2);
}

TEST(Sortie, WithoutMemoryItSaysSo) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer needs more";
#endif
  const Collection c;
  fs::resize_file(c.cas() + "mesh_case_1/mesh_case_1.def", 1 << 30);
  const auto verifie_et_voir = [&](std::vector<std::string> mots) {
    mots.insert(mots.begin() + 1, {c.cas(), "nrm"});
    return topodata(mots, [] {
      const rlimit memoire{1 << 29, 1 << 29};
      setrlimit(RLIMIT_AS, &memoire);
    });
  };
  const Resultat voir = verifie_et_voir({"voir", "mesh_case_1"});
  EXPECT_EQ(voir.statut, 2);
  EXPECT_NE(voir.erreur.find("probleme de lecture du fichier"), std::string::npos) << voir.erreur;
  const Resultat verifie = verifie_et_voir({"verifie", "--bases", "mesh_case_1"});
  EXPECT_EQ(verifie.statut, 2);
  EXPECT_EQ(verifie.erreur, "topodata : memoire insuffisante\n");
}

TEST(Sortie, TextsOfFilesForgeNoLinesAndMoveNoCursor) {
  const Collection c;
  const std::string forge = "&#27;[2J&#127;&#10;x:1: bloc 1: faux; y [erreur]&#13;\x9B";
  ASSERT_TRUE(c.changer("mesh_case_2/mesh_case_2_nrm.blck", "(<Exact><Cell>)[^<]*", "$1" + forge));
  ASSERT_TRUE(c.changer("mesh_case_2/mesh_case_2.def", "(<piece><nom>)[^<]*", "$1" + forge));
  for (const char* commande : {"verifie", "voir"})
    for (const char* langue : {"C", "C.UTF-8"}) {
      std::vector<std::string> mots{commande, c.cas(), "nrm", "mesh_case_2"};
      if (mots[0] == "verifie") mots.insert(mots.end() - 1, "--bases");
      const std::string dit = topodata(mots, [&] { setenv("LC_ALL", langue, 1); }).sortie;
      EXPECT_NE(dit.find("\\x1B[2J\\x7F\\x0Ax:1: bloc 1: faux; y [erreur]\\x0D\\x9B"),
                std::string::npos)
          << dit;
      EXPECT_EQ(dit.find("\nx:1"), std::string::npos);
      EXPECT_EQ(dit.find_first_of("\033\177\r\x9B"), std::string::npos);
    }
}

TEST(Sortie, WritesAllOrNothing) {
  const Collection c;
  const auto t = c.dossier / "t.csv", p = c.dossier / "t_1.arff", lien = c.dossier / "lien";
  ecrire(t, "vieux");
  ecrire(p, "vieux");
  fs::create_symlink("t.csv", lien);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"table", c.cas(), "nrm", "-o", t.string()},
        {"partage", c.cas(), "nrm", "--ratio", "0.5", "-o", (c.dossier / "t").string()},
        {"covariance", c.cas(), "nrm", "-o", t.string()}}) {
    const Resultat r = topodata_disque_plein(arguments);
    EXPECT_EQ(r.statut, 2);
    EXPECT_NE(r.erreur.find("ecriture impossible (File too large)"), std::string::npos) << r.erreur;
    EXPECT_EQ(lire(t) + lire(p), "vieuxvieux");
    EXPECT_EQ(nb_fichiers_dans(c.dossier), 4) << "a temporary file is left";
  }
  // The new file has the old one's rights, and a link still leads to it.
  chmod(t.c_str(), 0640);
  EXPECT_EQ(topodata({"resume", c.cas(), "nrm", "-o", lien.string()}).statut, 0);
  EXPECT_TRUE(fs::is_symlink(lien));
  EXPECT_NE(lire(t).find("blocs_C"), std::string::npos);
  // One that leads in a circle stays.
  const auto cercle = c.dossier / "cercle";
  fs::create_symlink("cercle", cercle);
  const Resultat r = topodata({"resume", c.cas(), "nrm", "-o", cercle.string()});
  EXPECT_NE(r.erreur.find("ecriture impossible (Too many levels of symbolic links)"),
            std::string::npos)
      << r.erreur;
  EXPECT_TRUE(fs::is_symlink(cercle) && fs::remove(cercle));
  // So does one that leads to a file that is not there yet.
  fs::remove(t);
  EXPECT_EQ(topodata({"resume", c.cas(), "nrm", "-o", lien.string()}).statut, 0);
  EXPECT_TRUE(fs::is_symlink(lien) && fs::is_regular_file(t));
  chmod(t.c_str(), 0640);
  EXPECT_EQ(topodata({"resume", c.cas(), "nrm", "-o", lien.string()}).statut, 0);
  EXPECT_EQ(fs::status(t).permissions(), fs::perms(0640));
  EXPECT_EQ(nb_fichiers_dans(c.dossier), 4);
}
