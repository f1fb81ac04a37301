#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "dataset/basebuffer.h"
#include "tests/support/capture.h"
#include "tests/support/cas.h"
#include "tests/support/execution.h"

namespace fs = std::filesystem;

namespace {

Resultat run_topomine(
    const Dossier& d, const std::vector<std::string>& arguments,
    const std::function<void()>& preparer = [] {}) {
  return lancer(TOPOMINE_PROGRAM, d.chemin(), arguments, preparer);
}

// Rows of one to three blocks, one for each base of the run.
std::vector<Base> bases(const std::string& chemin, const std::string& mode) {
  std::vector<Base> toutes;
  for (int k = 0; k < 8; ++k) {
    Base& b = toutes.emplace_back(
        grille("mesh_case_" + std::string(1, char('1' + k)), {1 + k % 3, 1, 1}).base);
    b.chemin = chemin;
    b.type = mode;
    for (auto& [n, bloc] : b.blocs) bloc._volmoy(k);
  }
  return toutes;
}

void ecrire_bases(const Dossier& d, const std::string& chemin, const std::string& mode) {
  d.ecrire(chemin + "climite.cfg",
           "Damas code;BCCODE;Family;\n10;1;paroi;\n11;9999;loin;\n13;13;fam_C;\n");
  for (const Base& b : bases(chemin, mode)) ecrire_cas(b, d);
}

// What the run makes of them: the file and the lines on standard error.
struct Matrice {
  std::string fichier, progres;
  Matrice() {
    const Dossier d;
    ecrire_bases(d, "", "nrm");
    const Capture c;
    Base().load_clcfg(d.chemin());
    BaseBuffer t;
    for (Base& b : bases("", "nrm")) {
      b.make_link();
      b.maj_typeC();
      t.add_base(b);
    }
    t.normalize();
    std::ostringstream out;
    t.mat_cov(out);
    fichier = out.str();
    progres = c.err();
    topomine::oublier_configuration();
  }
};

const Matrice& matrice() {
  static const Matrice m;
  return m;
}

// What stands after a base's name in its files' names, in the order of reading.
std::vector<std::string> fichiers_lus(const std::string& mode) {
  std::vector<std::string> fins{".def", ".def"};
  for (const char* f : {".blck", ".face", ".edge", ".vrtx"}) fins.push_back("_" + mode + f);
  return fins;
}

std::string fichier(const std::string& chemin, int k, const std::string& suite) {
  const std::string nom = "mesh_case_" + std::string(1, char('1' + k));
  return chemin + nom + "/" + nom + suite;
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

// A folder that holds the bases in data/, mode nrm.
struct Donnees : Dossier {
  const std::string data = "data/", cov = data + "global.cov";
  Donnees() { ecrire_bases(*this, data, "nrm"); }
  Resultat lancer_ici(const std::function<void()>& preparer = [] {}) const {
    return run_topomine(*this, {data, "nrm", "out"}, preparer);
  }
};

const std::string enregistre = "Sauvegarde dans ", echoue = "Sauvegarde \351chou\351e de ";
const std::string probleme = "probleme de lecture du fichier\n";

}  // namespace

TEST(Run, Usage) {
  const Dossier d;
  for (std::size_t n : {0U, 2U, 4U}) {
    const Resultat r = run_topomine(d, std::vector<std::string>(n, "x"));
    EXPECT_EQ(r.statut, 1);
    EXPECT_EQ(r.sortie, "utilisation :\ntopomine <chemin> <ext|nrm|min> <fichier_out>\n");
    EXPECT_EQ(r.erreur, "");
  }
  EXPECT_TRUE(fs::is_empty(d.chemin()));
}

TEST(Run, EveryByteWhateverTheArguments) {
  const std::string octets = "\351 \n%s\"\\\377;$(x)", x5000(5000, 'x');
  const struct {
    std::string chemin, mode, sortie;
  } cas[] = {{"/", "ext", ""},
             {"", "min", x5000},
             {"data", "nrm", octets},
             {octets + "/", "", "-h"},
             {"./--help/", octets, "out"},
             {"data//", x5000.substr(0, 200), "/"}};
  for (const auto& c : cas) {
    const Dossier d;
    // "/" stands for the absolute name of the folder, the others are relative to it.
    const std::string ici = c.chemin == "/" ? "" : c.chemin;
    const std::string chemin = c.chemin == "/" ? d.chemin() : c.chemin;
    ecrire_bases(d, ici, c.mode);
    d.ecrire(ici + "global.cov", std::string(100000, '#'));  // to be truncated
    const Resultat r = run_topomine(d, {chemin, c.mode, c.sortie});
    EXPECT_EQ(r.statut, 0) << chemin;
    EXPECT_EQ(r.sortie, lectures(chemin, c.mode, 8));
    EXPECT_EQ(r.erreur, matrice().progres + enregistre + chemin + "global.cov\n");
    EXPECT_EQ(d.lire(ici + "global.cov"), matrice().fichier);
  }
}

TEST(Run, ShufflesByTheClock) {
  const Donnees d;
  const long avant = std::time(nullptr);
  const std::string dit = d.lancer_ici([] {
                             setenv("LD_PRELOAD", GRAINE_LIBRARY, 1);
                             setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
                           }).erreur;
  ASSERT_TRUE(dit.starts_with("graine ")) << dit;
  const long graine = std::stol(dit.substr(7));
  EXPECT_TRUE(avant <= graine && graine <= std::time(nullptr)) << graine;
}

TEST(Run, ABaseThatFailsEndsTheRun) {
  const struct {
    std::size_t rang;   // among the files of the fifth base
    std::string texte;  // what it holds instead; "/" is a folder, "" no file
    std::string sortie, erreur;
  } cas[] = {
      {0, "", "\n" + probleme, ""},
      {2, "/", probleme, ""},
      {3, "pas du XML", "\n" + probleme, ""},
      {4, "<Edges><E><Ident>4</Ident><NumCaract>1</NumCaract><NbVertex>3</NbVertex></E></Edges>",
       "done. \n", "Erreur avec l'edge 4 ...\n"},
      {5, "<Vertices>", "\n" + probleme, ""},
  };
  for (const auto& c : cas) {
    const Donnees d;
    const std::string mauvais = fichier(d.data, 4, fichiers_lus("nrm")[c.rang]);
    fs::remove(d.chemin() + mauvais);
    if (c.texte == "/")
      fs::create_directory(d.chemin() + mauvais);
    else if (!c.texte.empty())
      d.ecrire(mauvais, c.texte);
    const Resultat r = d.lancer_ici();
    EXPECT_EQ(r.statut, 2);
    EXPECT_EQ(r.sortie, lectures(d.data, "nrm", 4, c.rang) + "parsing fichier " + mauvais +
                            " ... " + c.sortie);
    EXPECT_EQ(r.erreur, c.erreur);
    EXPECT_FALSE(fs::exists(d.chemin() + d.cov));
  }
}

TEST(Run, BadConfigurationFolderOrElement) {
  const Donnees d;
  for (const std::string& chemin : {std::string(5000, 'x'), d.chemin()}) {
    const Resultat r = run_topomine(d, {chemin, "nrm", "out"});
    EXPECT_EQ(r.statut, 2);
    EXPECT_EQ(r.sortie, "parsing fichier " + fichier(chemin, 0, ".def") + " ... \n" + probleme);
    EXPECT_EQ(r.erreur, "");
  }
  const std::string mauvais = fichier(d.data, 1, "_nrm.face");
  d.ecrire(mauvais,
           "<Faces><F><Ident>3141</Ident><NumCaract>1</NumCaract><Type>1</Type></F></Faces>");
  Resultat r = d.lancer_ici();
  EXPECT_EQ(r.statut, -SIGABRT);
  for (const std::string& dit : {std::string("bool Base::load_faces()"), mauvais})
    EXPECT_NE(r.erreur.find(dit), std::string::npos) << dit << " in " << r.erreur;
  d.ecrire(d.data + "climite.cfg", "a;b\n");
  r = d.lancer_ici();
  EXPECT_EQ(r.statut, 2);
  EXPECT_EQ(r.sortie, "");
  EXPECT_EQ(r.erreur, "Erreur acquisition climite.cfg.... \n");
  EXPECT_FALSE(fs::exists(d.chemin() + d.cov));
}

TEST(Run, TheMatrixIsSavedOrTheOldOneStays) {
  // Where there are no files without a name, a new matrix that did not come is an empty file.
  const Dossier essai;
  const int sans_nom = open(essai.chemin().c_str(), O_TMPFILE | O_WRONLY, 0600);
  const std::string rien = sans_nom < 0 ? "" : "-";
  close(sans_nom);
  constexpr char calcule[] = "fin...\n";  // only what opens is computed
  const struct {
    std::string avant;  // by a shell; $c is the name of the matrix
    std::string dit, suite;
    std::string reste;  // what stands under that name; # is the matrix, - nothing at all
  } cas[] = {
      {"mkdir $c", "", echoue, ""},
      {"ln -s global.cov $c", "", echoue, ""},
      {"mkfifo $c", "", echoue, ""},
      {"mkfifo $c; exec 3<>$c", calcule, enregistre, ""},
      {"ln -s /dev/full $c", calcule, echoue, ""},
      {"ln -s /dev/null $c", calcule, enregistre, ""},
      {"ln -s autre $c", calcule, enregistre, "#"},
      {"seq 10000 > $c", calcule, enregistre, "#"},
      {"ulimit -f 8", calcule, echoue, rien},
      {"echo vieux > $c; ulimit -f 8", calcule, echoue, "vieux\n"},
  };
  for (const auto& c : cas) {
    const Donnees d;
    const std::string script = "c=" + d.cov + "; export GCOV_PREFIX=/dev/null; (" + c.avant +
                               "; exec timeout 20 \"$@\" 2>&1 >/dev/null) | tail -n 2";
    const Resultat r =
        lancer("/bin/sh", d.chemin(), {"-c", script, "sh", TOPOMINE_PROGRAM, d.data, "nrm", "out"});
    EXPECT_EQ(r.sortie, c.dit + c.suite + d.cov + "\n") << c.avant;
    if (std::error_code e; c.reste == "-" || fs::is_regular_file(d.chemin() + d.cov, e)) {
      const bool la = fs::exists(d.chemin() + d.cov);
      EXPECT_TRUE((la ? d.lire(d.cov) : "-") == (c.reste == "#" ? matrice().fichier : c.reste))
          << c.avant;
    }
  }
  // Killed while it says how far it is: it has opened the file, and is kept from going on.
  for (const std::string avant : {"vieux", ""}) {
    const Donnees d;
    if (!avant.empty()) d.ecrire(d.cov, avant);
    const std::string script =
        "mkfifo e; exec 3<>e; \"$@\" 2>e >/dev/null & read l <&3; kill -9 $!; wait; echo $l";
    EXPECT_EQ(
        lancer("/bin/sh", d.chemin(), {"-c", script, "sh", TOPOMINE_PROGRAM, d.data, "nrm", "out"})
            .sortie,
        "Creation matrice de covariance...\n");
    const bool la = fs::exists(d.chemin() + d.cov);
    EXPECT_EQ(la ? d.lire(d.cov) : "-", avant.empty() ? rien : avant);
  }
}

TEST(Run, AFileTooLargeForTheMemoryCannotBeLoaded) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer needs more";
#endif
  const Donnees d;
  fs::resize_file(d.chemin() + fichier(d.data, 0, "_nrm.face"), 1 << 30);
  const Resultat r = d.lancer_ici([] {
    const rlimit memoire{1 << 29, 1 << 29};
    setrlimit(RLIMIT_AS, &memoire);
  });
  EXPECT_EQ(r.statut, 2);
  EXPECT_TRUE(r.sortie.ends_with("_nrm.face ... \n" + probleme)) << r.sortie;
}

TEST(Run, MatrixComesWholeWithoutConsole) {
  const auto essayer = [](const std::string& quoi, bool muet, bool sans_erreur,
                          const std::function<void()>& preparer) {
    const Donnees d;
    const Resultat r = d.lancer_ici(preparer);
    EXPECT_EQ(r.statut, 0) << quoi;
    EXPECT_TRUE(d.lire(d.cov) == matrice().fichier) << quoi;
    EXPECT_EQ(r.sortie, muet ? "" : lectures(d.data, "nrm", 8)) << quoi;
    EXPECT_EQ(r.erreur, sans_erreur ? "" : matrice().progres + enregistre + d.cov + "\n") << quoi;
  };
  // A closed descriptor's number goes to the next file that is opened: nothing of the console may
  // end up there.
  for (const std::string fermes : {"1", "2", "012"})
    essayer("closed " + fermes, fermes != "2", fermes != "1", [&] {
      for (char c : fermes) close(c - '0');
    });
  for (int tube : {1, 2})
    essayer("broken pipe", tube == 1, tube == 2, [&] {
      int bouts[2];
      if (pipe(bouts) != 0) _exit(127);
      dup2(bouts[1], tube);
      close(bouts[0]);
      close(bouts[1]);
    });
}
