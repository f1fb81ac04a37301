#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <regex>
#include <sstream>

#include "app/topodata/carte.h"
#include "app/topodata/console.h"
#include "app/topodata/sortie.h"
#include "base/base.h"
#include "base/lecture/chargement.h"
#include "tests/topodata/programme.h"
#include "texte/affichable.h"

using namespace topomine;

namespace {

std::vector<std::vector<std::string>> cellules(const std::string& texte, char sep) {
  std::vector<std::vector<std::string>> lignes;
  std::istringstream flux(texte);
  for (std::string l; std::getline(flux, l);) {
    if (l.ends_with('\r')) l.pop_back();
    auto& ligne = lignes.emplace_back();
    std::istringstream champs(l);
    for (std::string champ; std::getline(champs, champ, sep);) ligne.push_back(champ);
  }
  return lignes;
}

/// What the library's own listings write.
template <class Action>
std::string capter(Action action) {
  testing::internal::CaptureStdout();
  action();
  return testing::internal::GetCapturedStdout();
}

}  // namespace

// A whole document of faces would take sixteen times its text.
TEST(Voir, ALargeCaseTakesLittleMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer needs more";
#endif
  const Dossier d;
  ASSERT_EQ(lancer(MAKE_CASES_PROGRAM, d.chemin(), {"cas", "--blocs", "3375"}).statut, 0);
  const auto texte =
      std::filesystem::file_size(d.chemin() + "cas/mesh_case_1/mesh_case_1_nrm.face");
  const Resultat r = topodata({"voir", d.chemin() + "cas", "nrm", "mesh_case_1"});
  EXPECT_EQ(r.statut, 0) << r.erreur;
  EXPECT_LT(1024 * r.memoire, 8 * static_cast<long>(texte));
}

TEST(Resume, SaysEachAttributeAndEachBase) {
  const Collection c;
  const Resultat r = topodata({"resume", c.cas(), "nrm", "--bases", "mesh_case_2", "--csv"});
  const std::vector<std::string> lignes = [&] {
    std::vector<std::string> v;
    std::istringstream flux(r.sortie);
    for (std::string l; std::getline(flux, l);) v.push_back(l);
    return v;
  }();
  ASSERT_EQ(lignes.size(), 1U + 50U + 1U);
  EXPECT_EQ(lignes[0],
            "sorte,nom,type,min,q1,mediane,q3,max,moyenne,ecart_type,distincts,effectifs,blocs,"
            "faces,edges,vertices,pieces,blocs_C");
  EXPECT_EQ(lignes[1], "attribut,base,string,,,,,,,,1,,,,,,,");
  EXPECT_EQ(lignes[50], "attribut,Classe,\"{-1,1}\",,,,,,,,1,1:8,,,,,,");

  BaseBuffer t = c.table({"mesh_case_2"});
  std::vector<double> v;
  double moy, ecart;
  ASSERT_TRUE(t.get_vec_dbl("erikson", v) && t.calc_moy("erikson", moy) &&
              t.calc_std("erikson", ecart));
  std::ranges::sort(v);
  std::ostringstream attendu;
  attendu << "attribut,erikson,numeric," << v[0] << ',' << v[1] + 0.75 * (v[2] - v[1]) << ','
          << (v[3] + v[4]) / 2 << ',' << v[5] + 0.25 * (v[6] - v[5]) << ',' << v[7] << ',' << moy
          << ',' << ecart << ',';
  EXPECT_TRUE(lignes[5].starts_with(attendu.str())) << lignes[5];

  Base base("mesh_case_2", c.cas(), "nrm");
  ASSERT_TRUE(charger(base).fait);
  std::ostringstream comptes;
  comptes << "base,mesh_case_2,,,,,,,,,,,8," << base.faces.size() << ',' << base.edges.size() << ','
          << base.vrtxs.size() << ",2,";
  EXPECT_TRUE(lignes[51].starts_with(comptes.str())) << lignes[51];

  // The form for reading: columns under their names, "-" where there is no number.
  const std::string lisible = topodata({"resume", c.cas(), "nrm", "--bases", "mesh_case_2"}).sortie;
  EXPECT_TRUE(std::regex_search(lisible, std::regex("^8 exemples\n\nattribut +type +min .*\n"
                                                    "base +string +- +- +- +- +- +- +- +1 +-\n")));
}

TEST(Console, PassesALineThatNothingEnds) {
  std::ostringstream flux;
  {
    TamponLecteur tampon(flux);
    std::ostream(&tampon) << "un\nde" << 'u' << "x";
    EXPECT_EQ(flux.str(), "un\n");
  }
  EXPECT_EQ(flux.str(), "un\ndeux");
}

TEST(Resume, AlignsNamesOfAnyLetters) {
  const Collection c;
  for (const char* nom : {"\xC3\xA9t\xC3\xA9", "x\ny"})
    for (const auto& f : std::filesystem::directory_iterator(c.cas() + "mesh_case_1")) {
      std::string fin = f.path().filename().string().substr(11);
      std::filesystem::create_directories(c.cas() + nom);
      std::filesystem::copy(f.path(), c.cas() + nom + "/" + nom + fin);
    }
  const std::string dit =
      topodata({"resume", c.cas(), "nrm", "--bases", "\xC3\xA9t\xC3\xA9,x\ny"}, [] {
        setenv("LC_ALL", "C.UTF-8", 1);
      }).sortie;
  EXPECT_NE(dit.find("\n\xC3\xA9t\xC3\xA9         8 "), std::string::npos) << dit;
  EXPECT_NE(dit.find("\nx\\x0Ay      8 "), std::string::npos) << dit;
}

TEST(Covariance, IsTheRunsMatrixWithNames) {
  const Collection c;
  BaseBuffer t = c.table({"mesh_case_1", "mesh_case_2"});
  t.normalize();
  std::ostringstream matrice;
  testing::internal::CaptureStderr();
  t.mat_cov(matrice);
  testing::internal::GetCapturedStderr();
  const auto attendu = cellules(matrice.str(), '\t');
  const Resultat r = topodata({"covariance", c.cas(), "nrm", "--bases", "mesh_case_1,mesh_case_2"});
  const auto lu = cellules(r.sortie, ',');
  ASSERT_EQ(lu.size(), 51U);
  for (std::size_t a = 0; a < 50; ++a) {
    EXPECT_EQ(lu[0][a + 1], t._attr[a].first);
    EXPECT_EQ(lu[a + 1][0], t._attr[a].first);
    EXPECT_EQ(std::vector(lu[a + 1].begin() + 1, lu[a + 1].end()), attendu[a]);
  }
}

TEST(Covariance, DrawsItsPictureOrSaysWhatIsMissing) {
  const Collection c;
  const auto png = c.dossier / "m.png", svg = c.dossier / "m.svg";
  const std::vector<std::string> arguments{"covariance", c.cas(), "nrm", "--image", png.string()};
  const Resultat sans = topodata(arguments, [] { setenv("PATH", "/nulle/part", 1); });
  EXPECT_EQ(sans.statut, 2);
  EXPECT_TRUE(sans.erreur.starts_with("topodata : gnuplot n'est pas installe")) << sans.erreur;
  EXPECT_FALSE(std::filesystem::exists(png));
  // One that fails after a warning, and one that leaves the picture empty.
  const std::string dossier = c.dossier.string(), faux = dossier + "/gnuplot";
  const auto avec_faux = [&](const std::string& corps) {
    ecrire(faux, "#!/bin/sh\n" + corps);
    std::filesystem::permissions(faux, std::filesystem::perms::owner_all);
    return topodata(arguments,
                    [&] {
                      setenv("PATH", (dossier + ":/bin:/usr/bin").c_str(), 1);
                      setenv("GNUTERM", "dumb", 1);
                      setenv("ESSAI", " gardee", 1);
                    })
        .erreur;
  };
  EXPECT_EQ(avec_faux("echo 'Warning: x' >&2; echo ' line 1: y' >&2; exit 1\n"),
            "topodata : gnuplot a echoue : line 1: y\n");
  EXPECT_EQ(avec_faux("exit 0\n"), "topodata : gnuplot a echoue, son image est incomplete\n");
  EXPECT_FALSE(std::filesystem::exists(png));
  // A disk that was full when it wrote, and another that takes the user's settings.
  ecrire(png, "vieille");
  EXPECT_EQ(avec_faux("printf '\\211PNG\\r\\n\\032\\nIDAT'\n"),
            "topodata : gnuplot a echoue, son image est incomplete\n");
  EXPECT_EQ(avec_faux("echo \"$*$GNUTERM $LC_ALL$ESSAI\" >&2; exit 1\n"),
            "topodata : gnuplot a echoue : -d - C gardee\n");
  EXPECT_EQ(lire(png), "vieille");
  std::filesystem::remove(png);
  if (std::system("command -v gnuplot > /dev/null") != 0) GTEST_SKIP() << "gnuplot is missing";
  const Resultat r = topodata(arguments);
  EXPECT_EQ(r.sortie + r.erreur, "");
  EXPECT_TRUE(lire(png).starts_with("\x89PNG"));
  EXPECT_EQ(topodata({"covariance", c.cas(), "nrm", "--image", svg.string(), "--garde",
                      "erikson,vol_exa"})
                .statut,
            0);
  EXPECT_NE(lire(svg).find("vol_exa"), std::string::npos);
  // One value, and no fonts: gnuplot warns, and draws.
  const Resultat seule =
      topodata({"covariance", c.cas(), "nrm", "--image", png.string(), "--garde", "erikson"},
               [] { setenv("FONTCONFIG_FILE", "/nulle/part", 1); });
  EXPECT_EQ(seule.erreur, "");
  EXPECT_EQ(seule.statut, 0);
}

TEST(Covariance, DrawsEveryNumberAndSaysAConstantOne) {
  if (std::system("command -v gnuplot > /dev/null") != 0) GTEST_SKIP() << "gnuplot is missing";
  const struct {
    std::vector<std::string> cellules;
    bool logarithme;
    std::ptrdiff_t dessinees;  // cells, and the 128 colours of the scale
    std::string dit;
  } rangees[]{
      {{"-1"}, false, 1, "partout -1<"},
      {{"0", "0", "0", "0"}, true, 4, "partout 0<"},
      {{"NaN", "NaN", "NaN", "1e+20"}, false, 1, "partout 1e+20<"},
      {{"-1", "0.5", "0.5", "1"}, false, 132, ">-1<"},
      {{"0", "1e-05", "-3", "1e+06"}, true, 132, ">1e+06<"},
      {std::vector<std::string>(25, "inf"), false, 0, ""},
  };
  for (const auto& r : rangees) {
    const std::vector<std::string> noms{"a", "l'autre", "c", "un_nom_plus_long_que_les_autres",
                                        "e"};
    const auto n = static_cast<std::ptrdiff_t>(std::sqrt(r.cellules.size()));
    std::ostringstream image;
    try {
      dessiner_carte({{noms.begin(), noms.begin() + n}, r.cellules}, {"titre", "c", r.logarithme},
                     "x.SVG", image);
    } catch (const Erreur& e) {
      EXPECT_STREQ(e.what(), "aucun attribut numerique a dessiner");
    }
    const std::string svg = image.str(),
                      trace = svg.substr(std::min(svg.find("plot_1"), svg.size()));
    const std::regex cellule("<polygon");
    EXPECT_EQ(std::distance(std::sregex_iterator(trace.begin(), trace.end(), cellule), {}),
              r.dessinees);
    EXPECT_NE(svg.find(r.dit), std::string::npos) << svg;
  }
}

TEST(Voir, ShowsTheListingsAndAnswersFromTheQueries) {
  const Collection c;
  Base base("mesh_case_4", c.cas(), "nrm");
  ASSERT_TRUE(charger(base).fait);
  const auto voir = [&](std::vector<std::string> options) {
    options.insert(options.begin(), {"voir", c.cas(), "nrm", "mesh_case_4"});
    return topodata(options).sortie;
  };
  EXPECT_EQ(voir({}), capter([&] { base.Print(false); }));
  const char* sortes[]{"bloc", "face", "edge", "vertex", "avion", "piece", "raccord"};
  for (int n = 1; n <= 7; ++n)
    EXPECT_EQ(voir({"--sorte", sortes[n - 1]}), capter([&] { base.Print(n, false); }));
  EXPECT_EQ(voir({"--element", "3"}), capter([&] { base.Print_elem(3); }));
  EXPECT_EQ(voir({"--sorte", "face", "--element", "3"}), capter([&] { base.faces[3].Print(); }));
  EXPECT_EQ(voir({"--sorte", "bloc", "--element", "3"}), capter([&] { base.blocs[3].Print(); }));
  EXPECT_EQ(voir({"--sorte", "edge", "--element", "3"}), capter([&] { base.edges[3].Print(); }));
  EXPECT_EQ(voir({"--sorte", "vertex", "--element", "3"}), capter([&] { base.vrtxs[3].Print(); }));
  EXPECT_EQ(voir({"--sorte", "piece", "--element", "1"}),
            capter([&] { base.pieces.begin()->second.Print(); }));
  EXPECT_EQ(voir({"--sorte", "raccord", "--element", "1"}),
            capter([&] { base.raccords[0].Print(); }));
  for (const char* sorte : {"bloc", "face", "edge", "vertex", "piece", "raccord"})
    EXPECT_EQ(voir({"--sorte", sorte, "--element", "9999"}), "");
  EXPECT_EQ(voir({"--element", "9999"}), "");

  // In the reader's encoding.
  const std::string latin = capter([&] { base.Print(6, false); });
  const struct {
    const char *toutes, *caracteres, *langue;  // LC_ALL, LC_CTYPE, LANG
    bool utf8;
  } rangees[]{{"C.UTF-8", "C", "C", true},
              {"", "xx_YY.utf8@euro", "C", true},  // not installed
              {"", "", "C.UTF-8", true},
              {"", "C", "C.UTF-8", false},
              {"fr_FR.ISO-8859-1", "C.UTF-8", "C.UTF-8", false}};
  for (const auto& r : rangees) {
    const Resultat fait =
        topodata({"voir", c.cas(), "nrm", "mesh_case_4/", "--sorte", "piece"}, [&] {
          setenv("LC_ALL", r.toutes, 1);
          setenv("LC_CTYPE", r.caracteres, 1);
          setenv("LANG", r.langue, 1);
        });
    EXPECT_EQ(fait.sortie, r.utf8 ? en_utf8(latin) : latin);
    EXPECT_NE(fait.sortie, r.utf8 ? latin : en_utf8(latin));
  }

  std::string voisins = voir({"--voisins", "1"});
  EXPECT_TRUE(voisins.starts_with("Bloc 1 : " + std::to_string(base.vois_bloc(1).size()) +
                                  " voisin(s)\n  i-min : face " +
                                  std::to_string(base.blk_face(1, 0)) + " :"))
      << voisins;
  // Which boundary each face is.
  for (int i = 0; i < 6; ++i) {
    const Face& face = base.faces.at(base.blk_face(1, i));
    if (face.nb_bloc() > 1) continue;
    const int code = face._BC(0);
    EXPECT_NE(voisins.find("face " + std::to_string(face._id()) + " : bord, code " +
                           std::to_string(code) + ", famille " + base._CL(code, "Family") +
                           ", BCCODE " + base._CL(code, "BCCODE") + '\n'),
              std::string::npos)
        << voisins;
  }
  const std::string coins = voir({"--coins", "1"});
  EXPECT_EQ(std::ranges::count(coins, '\n'), 9);
  EXPECT_NE(
      coins.find("  coin (1,0,1) : vertex " + std::to_string(base.blk_vrtx_ijk(1, 1, 0, 1)) + " ("),
      std::string::npos)
      << coins;

  // A slot without a face, and a face that is not there.
  ASSERT_TRUE(c.changer("mesh_case_4/mesh_case_4_nrm.blck",
                        "(<NbSubFace>)1</NbSubFace><SubFace>\\d+<([^]*?<SubFace>)\\d+<",
                        "$010</NbSubFace><SubFace>0<$02-9<"));
  const std::string vides = voir({"--voisins", "1"});
  EXPECT_NE(vides.find("i-min : pas de face\n  j-min : face -9 : bord\n"), std::string::npos)
      << vides;
  const std::string absents = voir({"--coins", "1"});
  EXPECT_NE(absents.find("coin (0,0,0) : case vide\n"), std::string::npos) << absents;
  EXPECT_NE(absents.find("coin (1,0,0) : face ou edge inexistante\n"), std::string::npos)
      << absents;
}
