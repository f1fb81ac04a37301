#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "dataset/collection.h"
#include "dataset/formats.h"
#include "dataset/motifs.h"
#include "dataset/schema.h"
#include "tests/topodata/programme.h"

using namespace topomine;

namespace {

using Table = std::vector<std::vector<std::string>>;

Table csv(const std::vector<std::string>& arguments) {
  const Resultat r = topodata(arguments);
  EXPECT_EQ(r.statut, 0) << r.erreur;
  return lire_csv(r.sortie).value();
}

std::vector<double> colonne(const Table& t, const std::string& nom) {
  const auto col = std::ranges::find(t[0], nom) - t[0].begin();
  std::vector<double> v;
  for (std::size_t i = 1; i < t.size(); ++i)
    v.push_back(std::stod(t[i].at(static_cast<std::size_t>(col))));
  return v;
}

/// Mean of the products of what two columns have above their means.
double covariance(const std::vector<double>& x, const std::vector<double>& y) {
  const double n = static_cast<double>(x.size());
  double mx = 0, my = 0, somme = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    mx += x[i] / n;
    my += y[i] / n;
  }
  for (std::size_t i = 0; i < x.size(); ++i) somme += (x[i] - mx) * (y[i] - my);
  return somme / n;
}

/// A second collection with bases of the same names; two of its codes have changed their BCCODE.
struct DeuxCollections : Collection {
  DeuxCollections() : autre((dossier / "autre").string()) {
    EXPECT_EQ(lancer(MAKE_CASES_PROGRAM, ".", {autre, "--blocs", "12"}).statut, 0);
    const std::string climite = lire(autre + "/climite.cfg");
    const auto entete = climite.find('\n') + 1;
    ecrire(autre + "/climite.cfg", climite.substr(0, entete));  // no code is known there
  }
  const std::string autre;
};

}  // namespace

TEST(Collections, NamesComeInNaturalOrderAndMistypedOnesAreGuessed) {
  Dossier d;
  for (const char* nom : {"b_10", "b_9", "a", "b_09", "B"})
    d.ecrire(std::string(nom) + "/" + nom + ".def", "");
  d.ecrire("sans/autre.def", "");
  EXPECT_EQ(bases_presentes(d.chemin()),
            (std::vector<std::string>{"B", "a", "b_09", "b_9", "b_10"}));
  EXPECT_EQ(noms_des_collections({"x/cas/", "y/essais"}),
            (std::vector<std::string>{"cas", "essais"}));
  EXPECT_EQ(noms_des_collections({"x/cas/", "y/cas"}),
            (std::vector<std::string>{"x/cas", "y/cas"}));
  EXPECT_EQ(noms_des_collections({"a/", "/"}), (std::vector<std::string>{"a", ""}));
  EXPECT_EQ(noms_des_collections({"/", "/"}), (std::vector<std::string>{"/", "/"}));
  const auto ici = std::filesystem::current_path();
  EXPECT_EQ(noms_des_collections({"."}), std::vector{ici.filename().string()});
  EXPECT_EQ(noms_des_collections({".."}), std::vector{ici.parent_path().filename().string()});
  for (const auto& [avant, apres] :
       {std::pair{"b_09", "b_9"}, {"b_9", "b_10"}, {"b1", "b01x"}, {"b", "b_1"}})
    EXPECT_TRUE(ordre_naturel(avant, apres) && !ordre_naturel(apres, avant)) << avant;
  EXPECT_FALSE(ordre_naturel("a", "a"));
  for (const int classe : {-1, 0}) {
    BaseBuffer t;
    t._num_classe = classe;
    ajouter_collection(t, {}, tel_quel);
    EXPECT_EQ(t._num_classe, classe < 0 ? -1 : 1);
    EXPECT_EQ(t._attr[0].first, "collection");
  }
  const std::vector<std::string> noms{"type", "vol_exa", "vois_vexa_moy", "TypeC"};
  for (const auto& [faux, vrai] : {std::pair{"typec", "TypeC"},
                                   {"vois_vexa", "vois_vexa_moy"},
                                   {"volexa", "vol_exa"},
                                   {"tyqe", "type"}})
    EXPECT_EQ(nom_le_plus_proche(faux, noms), vrai);
  EXPECT_EQ(nom_le_plus_proche("", {"long", "ab", "cd"}), "ab");
  EXPECT_EQ(nom_le_plus_proche("AZ", {"bz", "ab", "az", "az_"}), "az");
  EXPECT_EQ(nom_le_plus_proche("x", {}), "");
  for (const auto& [motif, nom, oui] : {std::tuple{"BC_*", "BC_fam_edge_1", true},
                                        {"*_1", "BC_fam_edge_11", false},
                                        {"*edge*1?", "BC_fam_edge_11", true},
                                        {"*", "", true},
                                        {"a*b*c", "aXbc", true},
                                        {"vol_?", "vol_exa", false},
                                        {"", "x", false}})
    EXPECT_EQ(correspond(motif, nom), oui) << motif << ' ' << nom;
}

TEST(Collections, BasesOfTheSameNameStayApart) {
  const DeuxCollections c;
  const Table ensemble = csv({"table", c.cas(), "nrm", "--avec", c.autre, "--bases", "toutes",
                              "--format", "csv", "--cache", "Num_Base"}),
              premiere = csv({"table", c.cas(), "nrm", "--format", "csv", "--cache", "Num_Base"}),
              seconde = csv({"table", c.autre, "nrm", "--format", "csv", "--cache", "Num_Base"});
  ASSERT_EQ(ensemble.size(), premiere.size() + seconde.size() - 1);
  EXPECT_EQ(ensemble[0][0], "collection");
  for (std::size_t i = 1; i < ensemble.size(); ++i) {
    const bool de_la_premiere = i < premiere.size();
    std::vector<std::string> attendue{de_la_premiere ? "cas" : "autre"};
    const auto& seule = de_la_premiere ? premiere[i] : seconde[i - premiere.size() + 1];
    attendue.insert(attendue.end(), seule.begin(), seule.end());
    ASSERT_EQ(ensemble[i], attendue);
  }
  // Their codes mean what their own climite.cfg says.
  EXPECT_NE(premiere, seconde);
  const std::vector<double> codes = colonne(seconde, "BC_fam_face_1");
  EXPECT_EQ(std::ranges::count(codes, 0.0), static_cast<std::ptrdiff_t>(codes.size()));

  const std::string arff = topodata({"table", c.cas(), "nrm", "--avec", c.autre}).sortie;
  EXPECT_NE(arff.find("@attribute collection string\n@attribute base string\n"), std::string::npos);
  EXPECT_NE(arff.find("@attribute Num_Base {0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15}\n"),
            std::string::npos);
  EXPECT_TRUE(arff.ends_with(",15,1\n\n\n"));
  const Table resume = csv({"resume", c.cas(), "nrm", "--avec", c.autre, "--csv"});
  EXPECT_EQ(resume.back()[1] + "/" + resume.back()[2], "autre/mesh_case_8");
  EXPECT_EQ(topodata({"table", c.cas(), "nrm", "--avec", c.cas()}).statut, 2);
}

TEST(Classe, ComesLastWithoutWhatNamesTheExample) {
  const DeuxCollections c;
  const std::vector<std::string> debut{"table", c.cas(), "nrm", "--avec", c.autre, "--classe"};
  const auto avec = [&](std::vector<std::string> fin) {
    fin.insert(fin.begin(), debut.begin(), debut.end());
    return topodata(fin);
  };
  const Resultat arff = avec({"TypeC"});
  EXPECT_EQ(
      arff.erreur,
      "topodata : --classe TypeC laisse de cote collection, base, ident (texte, nomme "
      "l'exemple ou sa base), Num_Base (nomme la base), Classe (dit si l'exemple est reel)\n");
  EXPECT_EQ(arff.sortie.find(" string\n"), std::string::npos);
  EXPECT_NE(arff.sortie.find("@attribute TypeC {-1,1}\n\n\n\n@data\n"), std::string::npos);
  struct Cas {
    const char *classe, *dernier, *avant;
  };
  for (const Cas& r : {Cas{"TypeC", "TypeC", "BC_fam_edge_9999"}, Cas{"Classe", "Classe", "TypeC"},
                       Cas{"type", "type", "TypeC"}}) {
    const Table t = lire_csv(avec({r.classe, "--format", "csv"}).sortie).value();
    EXPECT_EQ(t[0].back(), r.dernier);
    EXPECT_EQ(t[0][t[0].size() - 2], r.avant);
    const std::string torch = avec({r.classe, "--format", "torch"}).sortie;
    EXPECT_TRUE(torch.starts_with("# 160 " + std::to_string(t[0].size()) + "\n"));
    std::string ligne;
    for (const std::string& champ : t[1]) ligne += (ligne.empty() ? "" : " ") + champ;
    EXPECT_NE(torch.find("\n" + ligne + "\n"), std::string::npos);
  }
  for (const auto& [options, dit] :
       {std::pair{std::vector<std::string>{"typec"}, "--classe : 'typec' (attendu : TypeC"},
        {{"TypeC", "--cache", "Type*"}, "--cache cache TypeC, que --classe demande"},
        {{"TypeC", "--garde", "base,ident"}, "il ne reste aucun attribut pour predire TypeC"},
        {{"TypeC", "--garde", "eriksom"}, "attribut inconnu : 'eriksom' (le plus proche : erikson"},
        {{"TypeC", "--epsilon", "-1"},
         "--epsilon : '-1' (attendu : un nombre de 0 a 1.79769e+308)"}}) {
    const Resultat r = avec(options);
    EXPECT_TRUE(r.erreur.starts_with(std::string("topodata : ") + dit)) << r.erreur;
    EXPECT_EQ(r.statut, 2);
    EXPECT_EQ(r.sortie, "");
  }
}

TEST(Classe, DustAndConstantsGo) {
  const Collection c;
  const Table brute = csv({"table", c.cas(), "nrm", "--format", "csv", "--garde", "vol_*,vois_*",
                           "--garde", "TypeC"}),
              nette = csv({"table", c.cas(), "nrm", "--format", "csv", "--garde",
                           "vol_*,vois_*,TypeC", "--epsilon", "0.05"});
  ASSERT_EQ(brute[0], nette[0]);
  ASSERT_EQ(brute[0].size(), 15U);
  int poussieres = 0;
  for (std::size_t i = 1; i < brute.size(); ++i)
    for (std::size_t j = 0; j + 1 < brute[i].size(); ++j) {
      const bool poussiere = std::abs(std::stod(brute[i][j])) < 0.05;
      poussieres += poussiere && brute[i][j] != "0" ? 1 : 0;
      EXPECT_EQ(nette[i][j], poussiere ? "0" : brute[i][j]);
    }
  EXPECT_GT(poussieres, 0);
  const Table mince = csv({"table", c.cas(), "nrm", "--format", "csv", "--sans-constantes"});
  EXPECT_EQ(std::ranges::count(mince[0], "Classe"), 0);
  EXPECT_EQ(std::ranges::count(mince[0], "erikson"), 1);
  // Nor do its rows end in what is left out.
  const std::string arff = topodata({"table", c.cas(), "nrm", "--sans-constantes"}).sortie;
  EXPECT_NE(arff.find("@attribute Num_Base {0,1,2,3,4,5,6,7}\n\n\n\n@data\n"), std::string::npos);
  EXPECT_TRUE(arff.ends_with(",7\n\n\n"));
}

TEST(Covariance, CentresAndCorrelatesTheTwoValuedAttributesToo) {
  const Collection c;
  const Table t = csv({"table", c.cas(), "nrm", "--normalise", "--format", "csv"});
  const std::vector<std::string> noms{"erikson", "vol_exa", "nb_voisin", "TypeC"};
  const std::string garde = "erikson,vol_exa,nb_voisin,TypeC,Classe,base";
  const Table centree = csv({"covariance", c.cas(), "nrm", "--centree", "--garde", garde}),
              correlation = csv({"covariance", c.cas(), "nrm", "--correlation", "--garde", garde});
  const auto cellule = [](const Table& m, const std::string& a, const std::string& b) {
    const auto rang = [&](const std::string& n) {
      return static_cast<std::size_t>(std::ranges::find(m[0], n) - m[0].begin());
    };
    return m.at(rang(a)).at(rang(b));
  };
  for (const std::string& a : noms)
    for (const std::string& b : noms) {
      const auto x = colonne(t, a), y = colonne(t, b);
      const double v = covariance(x, y);
      EXPECT_NEAR(std::stod(cellule(centree, a, b)), v, 1e-4 * std::abs(v) + 1e-12) << a << b;
      EXPECT_NEAR(std::stod(cellule(correlation, a, b)),
                  v / std::sqrt(covariance(x, x) * covariance(y, y)), 1e-4);
    }
  EXPECT_EQ(cellule(centree, "Classe", "TypeC"), "0");
  EXPECT_EQ(cellule(correlation, "Classe", "TypeC"), "NaN");
  EXPECT_EQ(cellule(correlation, "TypeC", "TypeC"), "1");
  EXPECT_EQ(cellule(correlation, "base", "erikson"), "NaN");
}

TEST(Covariance, SumsOfPartsMakeTheMatrixOfTheWhole) {
  const DeuxCollections c;
  const auto fichier = [&](const char* nom) { return (c.dossier / nom).string(); };
  const std::string e = fichier("e.csv"), s1 = fichier("1.csv"), s2 = fichier("2.csv");
  ASSERT_EQ(topodata({"table", c.cas(), "nrm", "--avec", c.autre, "--normalise", "--echelle", e,
                      "-o", fichier("t.arff")})
                .statut,
            0);
  for (const auto& [dossier, s] : {std::pair{c.cas(), s1}, {c.autre, s2}})
    ASSERT_EQ(
        topodata({"covariance", dossier, "nrm", "--applique-echelle", e, "--sommes", s}).statut, 0);
  for (const std::vector<std::string>& r :
       {std::vector<std::string>{}, {"--centree"}, {"--correlation", "--garde", "vo*,TypeC"}}) {
    std::vector<std::string> tout{"covariance", c.cas(), "nrm", "--avec", c.autre},
        parties{"covariance", "--depuis-sommes", s1, s2};
    for (auto* arguments : {&tout, &parties})
      arguments->insert(arguments->end(), r.begin(), r.end());
    const Resultat attendu = topodata(tout), r2 = topodata(parties);
    EXPECT_EQ(r2.sortie, attendu.sortie);
    EXPECT_GT(attendu.sortie.size(), 500U) << attendu.erreur << r2.erreur;
  }
  ASSERT_EQ(topodata({"covariance", c.cas(), "nrm", "--brut", "--sommes", s2}).statut, 0);
  const std::string bonnes = lire(s1);
  std::string trop = bonnes;
  for (int i = 0; i < 1000; ++i) trop += "attribut,a" + std::to_string(i) + ",,string,,,,\n";
  struct Cas {
    std::vector<std::string> options;
    std::string contenu, dit;
  };
  for (const Cas& r : {
           Cas{{"--depuis-sommes", s1, s2}, bonnes, s2 + " : ses attributs ou leur echelle"},
           Cas{{"--depuis-sommes", s1}, "x", s1 + " : attendu : un fichier de covariance --sommes"},
           Cas{{"--depuis-sommes", s1},
               bonnes.substr(0, bonnes.rfind("produit")),
               s1 + " : ligne absente ou sans nombre : produit Classe Classe"},
           Cas{{"--depuis-sommes", s1},
               bonnes + "produit,x,y,,1,0,,\n",
               s1 + " : des lignes de trop"},
           Cas{{"--depuis-sommes", s1}, trop, s1 + " : plus de 1000 attributs"},
           Cas{{"--depuis-sommes", s1, "--brut"}, bonnes, "--depuis-sommes prend les valeurs"},
           Cas{{c.cas(), "nrm", "--depuis-sommes", s1}, bonnes, "--depuis-sommes remplace CHEMIN"},
           Cas{{c.cas(), "nrm", "--sommes", s1}, bonnes, "--sommes demande --brut ou"},
           Cas{{c.cas(), "nrm", "--centree", "--correlation"},
               bonnes,
               "--centree et --correlation"},
       }) {
    ecrire(s1, r.contenu);
    std::vector<std::string> arguments{"covariance"};
    arguments.insert(arguments.end(), r.options.begin(), r.options.end());
    const Resultat fait = topodata(arguments);
    EXPECT_TRUE(fait.erreur.starts_with("topodata : " + r.dit)) << fait.erreur;
    EXPECT_EQ(fait.statut, 2);
    EXPECT_EQ(fait.sortie, "");
  }
}

TEST(Attributs, AreTheSchemas) {
  const Table t = csv({"attributs", "--csv"});
  ASSERT_EQ(t.size(), 51U);
  for (std::size_t i = 0; i < 50; ++i)
    EXPECT_EQ(t[i + 1],
              (std::vector<std::string>{std::to_string(i + 1), std::string(schema[i].nom),
                                        std::string(schema[i].type), std::string(schema[i].sens)}));
}
