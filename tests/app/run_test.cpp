#include <gtest/gtest.h>

#include "tests/app/chaine.h"

namespace {

const Matrice& matrice() {
  static const Matrice m;
  return m;
}

// The reading lines of the bases before `jusqu_a`, and of the first `fichiers` files of that one.
std::string lectures(const std::string& chemin, const std::string& mode, int jusqu_a,
                     std::size_t fichiers = 0) {
  std::string lignes;
  for (int k = 0; k <= jusqu_a && k < 8; ++k)
    for (std::size_t f = 0; f < (k < jusqu_a ? 6 : fichiers); ++f)
      lignes += "parsing fichier " + fichier(chemin, k, fichiers_lus(mode)[f]) + " ... done. \n";
  return lignes;
}

// A folder that holds the chains in data/, mode nrm.
struct Chaines : Dossier {
  const std::string chemin = nom + "/data/", cov = chemin + "global.cov";
  Chaines() { ecrire_chaines(chemin, "nrm"); }
  Resultat lancer_ici(const std::function<void()>& preparer = [] {}) const {
    return lancer(nom, {chemin, "nrm", "out"}, preparer);
  }
};

const std::string enregistre = "Sauvegarde dans ", echoue = "Sauvegarde \351chou\351e de ";

}  // namespace

TEST(Run, Usage) {
  const Dossier d;
  for (std::size_t n : {0U, 2U, 4U}) {
    const Resultat r = lancer(d.nom, std::vector<std::string>(n, "x"));
    EXPECT_EQ(r.statut, 1);
    EXPECT_EQ(r.sortie, "utilisation :\ntopomine <chemin> <ext|nrm|min> <fichier_out>\n");
    EXPECT_EQ(r.erreur, "");
  }
  EXPECT_TRUE(fs::is_empty(d.nom));
}

TEST(Run, EveryByteWhateverTheArguments) {
  const std::string octets = "\351 \n%s\"\\\377;$(x)", x5000(5000, 'x');
  const struct {
    std::string chemin, mode, sortie;
  } cas[] = {
      {"data/", "nrm", "out"},
      {"/", "ext", ""},
      {"", "min", x5000},
      {"data", "nrm", octets},
      {octets + "/", "", "-h"},
      {"./--help/", octets, "out"},
      {"data//", x5000.substr(0, 200), "/"},
  };
  for (const auto& c : cas) {
    const Dossier d;
    // "/" stands for the absolute name of the folder, the others are relative to it.
    const std::string chemin = c.chemin == "/" ? d.nom + "/" : c.chemin;
    const std::string vu_d_ici = c.chemin == "/" ? chemin : d.nom + "/" + chemin;
    ecrire_chaines(vu_d_ici, c.mode);
    ecrire(vu_d_ici + "global.cov", std::string(100000, '#'));  // to be truncated
    const Resultat r = lancer(d.nom, {chemin, c.mode, c.sortie}, [] {
      setenv("LC_ALL", "fr_FR.UTF-8", 1);
      setenv("LC_NUMERIC", "fr_FR.UTF-8", 1);
    });
    EXPECT_EQ(r.statut, 0) << chemin;
    EXPECT_EQ(r.sortie, lectures(chemin, c.mode, 8));
    EXPECT_EQ(r.erreur, matrice().progres + enregistre + chemin + "global.cov\n");
    EXPECT_EQ(contenu(vu_d_ici + "global.cov"), matrice().fichier);
  }
}

TEST(Run, ABaseThatFailsEndsTheRun) {
  const std::string probleme = "probleme de lecture du fichier\n", vide;
  const struct {
    std::size_t rang;   // among the files of the fifth base
    std::string texte;  // what it holds instead; "/" is a folder, "" no file
    std::string sortie, erreur;
  } cas[] = {
      {0, "", "\n" + probleme, vide},
      {0, "/", "\n" + probleme, vide},
      {2, "", probleme, vide},
      {2, "<Blocks><Block>", probleme, vide},
      {3, "pas du XML", "\n" + probleme, vide},
      {4, "/", "\n" + probleme, vide},
      {4, "<Edges><E><Ident>4</Ident><NumCaract>1</NumCaract><NbVertex>3</NbVertex></E></Edges>",
       "done. \n", "Erreur avec l'edge 4 ...\n"},
      {5, "<Vertices>", "\n" + probleme, vide},
  };
  for (const auto& c : cas) {
    const Chaines d;
    const std::string mauvais = fichier(d.chemin, 4, fichiers_lus("nrm")[c.rang]);
    fs::remove(mauvais);
    if (c.texte == "/")
      fs::create_directory(mauvais);
    else if (!c.texte.empty())
      ecrire(mauvais, c.texte);
    const Resultat r = d.lancer_ici();
    EXPECT_EQ(r.statut, 2);
    EXPECT_EQ(r.sortie, lectures(d.chemin, "nrm", 4, c.rang) + "parsing fichier " + mauvais +
                            " ... " + c.sortie);
    EXPECT_EQ(r.erreur, c.erreur);
    EXPECT_FALSE(fs::exists(d.cov));
  }
}

TEST(Run, BadConfigurationOrFolder) {
  const Chaines d;
  for (const auto& [texte, erreur] : {std::pair{"", "Fichier non_valide...\n"},
                                      {"Damas code;BCCODE;", "Fichier non_valide...\n"},
                                      {"a;b\n", "Erreur acquisition climite.cfg.... \n"},
                                      {"a;\n1;2;\n", "Erreur acquisition climite.cfg.... \n"}}) {
    ecrire(d.chemin + "climite.cfg", texte);
    const Resultat r = d.lancer_ici();
    EXPECT_EQ(r.statut, 2) << texte;
    EXPECT_EQ(r.sortie, "");
    EXPECT_EQ(r.erreur, erreur);
  }
  for (const std::string& chemin : {std::string(5000, 'x'), std::string("\377/"), d.nom + "/"}) {
    const Resultat r = lancer(d.nom, {chemin, "nrm", "out"});
    EXPECT_EQ(r.statut, 2);
    EXPECT_EQ(r.sortie, "parsing fichier " + fichier(chemin, 0, ".def") +
                            " ... \nprobleme de lecture du fichier\n");
    EXPECT_EQ(r.erreur, "");
  }
  EXPECT_FALSE(fs::exists(d.cov));
}

TEST(Run, StructuralFaultAborts) {
  const Chaines d;
  const std::string mauvais = fichier(d.chemin, 1, "_nrm.face");
  ecrire(mauvais,
         "<Faces><F><Ident>3141</Ident><NumCaract>1</NumCaract><Type>1</Type></F></Faces>");
  const Resultat r = d.lancer_ici();
  EXPECT_EQ(r.statut, -SIGABRT);
  for (const std::string& dit : {std::string("base"), std::string("bool Base::load_faces()"),
                                 std::string("hnode"), mauvais, std::string("3141")})
    EXPECT_NE(r.erreur.find(dit), std::string::npos) << dit << " in " << r.erreur;
  EXPECT_FALSE(fs::exists(d.cov));
}

TEST(Run, MatrixThatCannotBeSaved) {
  const Chaines d;
  fs::create_directory(d.cov);  // cannot be opened: no progress lines
  Resultat r = d.lancer_ici();
  EXPECT_EQ(r.statut, 0);
  EXPECT_EQ(r.erreur, echoue + d.cov + "\n");
  EXPECT_EQ(r.sortie, lectures(d.chemin, "nrm", 8));
  fs::remove(d.cov);
  fs::create_symlink("/dev/full", d.cov);
  r = d.lancer_ici();
  EXPECT_EQ(r.statut, 0);
  EXPECT_EQ(r.erreur, matrice().progres + echoue + d.cov + "\n");
}

TEST(Run, MatrixComesWholeWithoutConsole) {
  // A closed descriptor's number goes to the next file that is opened: nothing of the console may
  // end up there.
  for (const std::string fermes : {"0", "1", "2", "12", "012"}) {
    const Chaines d;
    const Resultat r = d.lancer_ici([&] {
      for (char c : fermes) close(c - '0');
    });
    EXPECT_EQ(r.statut, 0) << fermes;
    EXPECT_TRUE(contenu(d.cov) == matrice().fichier) << fermes;
    const bool muet = fermes.find('1') != std::string::npos;
    const bool sans_erreur = fermes.find('2') != std::string::npos;
    EXPECT_EQ(r.sortie, muet ? "" : lectures(d.chemin, "nrm", 8));
    EXPECT_EQ(r.erreur, sans_erreur ? "" : matrice().progres + enregistre + d.cov + "\n");
  }
  for (int tube : {1, 2}) {
    const Chaines d;
    const Resultat r = d.lancer_ici([&] {
      int bouts[2];
      if (pipe(bouts) != 0) _exit(127);
      dup2(bouts[1], tube);
      close(bouts[0]);
      close(bouts[1]);
    });
    EXPECT_EQ(r.statut, 0) << tube;
    EXPECT_TRUE(contenu(d.cov) == matrice().fichier) << tube;
  }
}
