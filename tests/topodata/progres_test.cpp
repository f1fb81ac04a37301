#include "app/topodata/progres.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

#include "tests/topodata/programme.h"

using namespace topomine;

namespace {

/// While it lives, standard error is a terminal of the test's own.
class Terminal {
 public:
  Terminal() : avant_(dup(STDERR_FILENO)) {
    int esclave = -1;
    if (openpty(&maitre_, &esclave, nullptr, nullptr, nullptr) != 0) std::abort();
    dup2(esclave, STDERR_FILENO);
    close(esclave);
  }
  ~Terminal() {
    dup2(avant_, STDERR_FILENO);
    close(avant_);
    close(maitre_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// What came up to its `fin`, waited for; all there is without one.
  std::string lire(const std::string& fin = "") const {
    std::string texte;
    pollfd attente{maitre_, POLLIN, 0};
    while ((fin.empty() || !texte.ends_with(fin)) &&
           poll(&attente, 1, fin.empty() ? 0 : 5000) > 0) {
      char octet = 0;
      if (read(maitre_, &octet, 1) != 1) break;
      texte += octet;
    }
    return texte;
  }

 private:
  int avant_;
  int maitre_ = -1;
};

}  // namespace

TEST(Progres, SaysOnATerminalWhatLastsAndWipesItAway) {
  const Terminal t;
  {
    Progres bref;
    bref.etape("bref");
  }
  EXPECT_EQ(t.lire(), "") << "within a second nothing is said";
  {
    Progres p;
    p.etape("bref");
    std::this_thread::sleep_for(std::chrono::milliseconds(1050));
    p.etape("chargement");
    EXPECT_EQ(t.lire("ment"), "\r\033[Kchargement");
    p.ecriture("out.csv");
    EXPECT_EQ(t.lire("csv"), "\r\033[Kecriture de out.csv");
    p.ecriture("");
    EXPECT_EQ(t.lire("K"), "\r\033[K") << "standard output comes onto the terminal";
    p.etape("suite");
    EXPECT_EQ(t.lire("suite"), "\r\033[Ksuite");
  }
  EXPECT_EQ(t.lire(), "\r\033[K");
}

// On a terminal, with a clock that makes everything last.
TEST(Progres, OfEachCommand) {
  const Collection c;
  ecrire(c.dossier / "gnuplot", "#!/bin/sh\necho '<svg>'\ncat\necho '</svg>'\n");
  std::filesystem::permissions(c.dossier / "gnuplot", std::filesystem::perms::owner_all);
  const std::string chemin = c.dossier.string() + ":/usr/bin:/bin";
  c.changer("mesh_case_3/mesh_case_3_nrm.edge", "<Ident>[0-9]+", "<Ident>9999");
  const auto dit = [&](std::vector<std::string> mots) {
    const Terminal t;
    const int terminal = dup(STDERR_FILENO);
    lancer(TOPODATA_PROGRAM, c.dossier.string(), mots, [&] {
      setenv("LD_PRELOAD", TEMPS_LIBRARY, 1);
      setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
      setenv("PATH", chemin.c_str(), 1);
      dup2(terminal, STDERR_FILENO);
    });
    close(terminal);
    std::string vu = t.lire();
    for (std::size_t i; (i = vu.find("\r\033[K")) != std::string::npos;) vu.replace(i, 4, "|");
    return vu;
  };
  const std::pair<std::vector<std::string>, const char*> rangees[]{
      {{"table", "cas", "nrm", "--bases", "mesh_case_1", "-o", "t"},
       "|lecture de mesh_case_1|ecriture de t|"},
      {{"table", "cas", "nrm", "--bases", "mesh_case_1", "--normalise", "-o", "t"},
       "|lecture de mesh_case_1|mise en forme|ecriture de t|"},
      {{"partage", "cas", "nrm", "--bases", "mesh_case_1", "--plis", "2", "-o", "t"},
       "|lecture de mesh_case_1|ecriture de t_pli1|ecriture de t_pli2|"},
      {{"faux", "cas", "nrm", "--bases", "mesh_case_1", "--methode", "tire", "--nombre", "1", "-o",
        "t"},
       "|lecture de mesh_case_1|exemples synthetiques||ecriture de t|"},
      {{"resume", "cas", "nrm", "--bases", "mesh_case_1", "-o", "t"},
       "|lecture de mesh_case_1|statistiques|ecriture de t|"},
      {{"covariance", "cas", "nrm", "--bases", "mesh_case_1", "--garde", "e*,vol_exa", "--brut",
        "--sommes", "s", "--image", "t.svg", "-o", "t"},
       "|lecture de mesh_case_1|sommes : attribut 1 sur 2|sommes : attribut 2 sur "
       "2|dessin|ecriture de t|"},
      {{"covariance", "--depuis-sommes", "s", "-o", "t"}, "|lecture de s|ecriture de t|"},
      {{"exporte", "cas", "nrm", "mesh_case_1", "-o", "t.vtk"},
       "|lecture de mesh_case_1|export||ecriture de t.vtk|"},
      {{"dessine", "cas", "nrm", "mesh_case_1", "-o", "t.svg"}, "|lecture de mesh_case_1|dessin|"},
      {{"dessine", "cas", "nrm", "mesh_case_3", "-o", "t.svg"},
       "|lecture de mesh_case_3|dessin|topodata : 1 bloc(s) dont les coins ne se trouvent pas, non "
       "dessines\r\n"},
#ifdef TOPOMINE_CGNS
      {{"importe", "absent", "cas", "neuf"},
       "|lecture de absent|topodata : absent : No such file or directory\r\n"},
#endif
      {{"verifie", "cas", "nrm", "--bases", "mesh_case_1,mesh_case_2"},
       "|verification de mesh_case_1||verification de mesh_case_2|topodata : 0 erreur(s), 0 "
       "avertissement(s), 0 avis ; 2 base(s), 11 fichier(s), 258 entite(s) lus\r\n"},
  };
  for (const auto& [mots, attendu] : rangees) EXPECT_EQ(dit(mots), attendu);
}
