#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include "app/topodata/sortie.h"
#include "dataset/formats.h"
#include "dataset/schema.h"
#include "tests/topodata/programme.h"

using namespace topomine;

namespace {

const std::vector<std::string> deux_bases{"mesh_case_2", "mesh_case_6"};

std::string weka(BaseBuffer& table) {
  std::ostringstream flux;
  table.Print_weka(flux);
  return flux.str();
}

std::string torch(BaseBuffer& table) {
  std::ostringstream flux;
  table.Print_torch(flux);
  return flux.str();
}

std::string en(const Format& format, BaseBuffer& table) {
  std::ostringstream flux;
  format.ecrire(flux, table, {.total = table._expl.size()});
  return flux.str();
}

/// A sub-command on the two bases of the collection.
Resultat sur_deux_bases(const Collection& c, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin() + 1, {c.cas(), "nrm", "--bases", "mesh_case_2,mesh_case_6"});
  return topodata(arguments);
}

std::string ligne(const std::string& texte, std::size_t n) {
  std::istringstream flux(texte);
  std::string l;
  for (std::size_t i = 0; i <= n; ++i) std::getline(flux, l);
  return l;
}

}  // namespace

TEST(Csv, QuotesWhatNeedsItAndFollowsTheFlags) {
  BaseBuffer t;
  t.clear();
  for (const char* nom : {"a", "b,c", "cache", "d"}) t.add_attr(nom, "string");
  t.hide_attr("cache");
  t._expl = {{"1", "dit \"non\"", "x", "deux\nlignes"}, {"", "u,v", "x", " e "}, {"court"}};
  EXPECT_EQ(en(format_csv, t),
            "a,\"b,c\",d\n"
            "1,\"dit \"\"non\"\"\",\"deux\nlignes\"\n"
            ",\"u,v\", e \n"
            "court,,\n");
}

TEST(Table, IsTheLibrarysInEachForm) {
  const Collection c;
  BaseBuffer t = c.table(deux_bases);
  ASSERT_EQ(t.nb_expl(), 16);
  EXPECT_EQ(sur_deux_bases(c, {"table"}).sortie, weka(t));
  EXPECT_EQ(sur_deux_bases(c, {"table", "--format", "torch"}).sortie, torch(t));

  const Resultat r = sur_deux_bases(c, {"table", "--format", "csv"});
  EXPECT_EQ(r.sortie, en(format_csv, t));
  EXPECT_EQ(r.erreur, "");
  EXPECT_EQ(r.statut, 0);
  EXPECT_EQ(std::ranges::count(ligne(r.sortie, 0), ','), nb_colonnes - 1);

  // The directory's separator and the list of bases may be left out.
  const Resultat huit = topodata({"table", (c.dossier / "cas").string(), "nrm", "--format", "csv"});
  EXPECT_EQ(std::ranges::count(huit.sortie, '\n'), 1 + 8 * 8);
}

// Longer than what is gathered before it goes to the file.
TEST(Table, OneLongValueComesWholeInEachForm) {
  const Dossier d;
  BaseBuffer t = Collection().table({"mesh_case_1"});
  t._expl[4][col_base] = std::string(100'000, 'x') + "y";
  for (const Format& format : formats) {
    Sortie sortie(d.chemin() + "t");
    format.ecrire(sortie.flux(), t, {.total = t._expl.size()});
    sortie.conclure();
    EXPECT_TRUE(d.lire("t") == en(format, t)) << format.mot;
    EXPECT_NE(d.lire("t").find(t._expl[4][col_base]), std::string::npos) << format.mot;
  }
}

TEST(Table, NormalisesBeforeItShuffles) {
  const Collection c;
  BaseBuffer t = c.table(deux_bases);
  t.normalize();
  srand48(7);
  t.rdm_list();
  const auto fichier = c.dossier / "t.arff";
  const Resultat r = sur_deux_bases(
      c, {"table", "--normalise", "--melange", "--graine", "7", "-o", fichier.string()});
  EXPECT_EQ(r.sortie + r.erreur, "");
  EXPECT_EQ(lire(fichier), weka(t));
}

TEST(Table, ShowsTheChosenAttributes) {
  const Collection c;
  // The class ends every row of the first two forms: it is declared even when it is not asked for.
  const std::string arff =
      sur_deux_bases(c, {"table", "--garde", "erikson,ident", "--nom", "l'aile"}).sortie;
  EXPECT_NE(
      arff.find("@relation 'l\\'aile'\n\n@attribute ident string\n@attribute erikson numeric\n"
                "@attribute Classe {-1,1}\n"),
      std::string::npos)
      << arff;
  const std::string torch =
      sur_deux_bases(c, {"table", "--garde", "erikson,ident", "--format", "torch"}).sortie;
  EXPECT_EQ(ligne(torch, 0), "16 2");
  EXPECT_TRUE(ligne(torch, 1).ends_with(" 1"));
  const std::string csv =
      sur_deux_bases(c, {"table", "--garde", "erikson,ident", "--format", "csv"}).sortie;
  EXPECT_EQ(ligne(csv, 0), "ident,erikson");
  const std::string moins =
      sur_deux_bases(c, {"table", "--cache", "base,Classe", "--format", "csv"}).sortie;
  EXPECT_TRUE(moins.starts_with("ident,type,")) << moins;
  EXPECT_TRUE(ligne(moins, 0).ends_with(",Num_Base"));
}

TEST(Partage, MakesThePartsOfSepBuffer) {
  const Collection c;
  for (const bool melange : {true, false}) {
    BaseBuffer t = c.table(deux_bases), premiere, seconde;
    srand48(5);
    t.sep_buffer(0.7, premiere, seconde, melange);
    ASSERT_EQ(premiere.nb_expl(), 11);
    std::vector<std::string> arguments{
        "partage", "--ratio", "0.7", "--format", "torch", "-o", (c.dossier / "p").string()};
    if (melange)
      arguments.insert(arguments.end(), {"--graine", "5"});
    else
      arguments.push_back("--sans-melange");
    EXPECT_EQ(sur_deux_bases(c, arguments).statut, 0);
    EXPECT_EQ(lire(c.dossier / "p_1.txt"), torch(premiere));
    EXPECT_EQ(lire(c.dossier / "p_2.txt"), torch(seconde));
  }
}

TEST(Faux, MakesTheRowsOfEachBuilder) {
  const Collection c;
  struct Cas {
    const char* methode;
    int (BaseBuffer::*construire)(BaseBuffer&, double);
  };
  for (const Cas& cas : {Cas{"repete", nullptr}, Cas{"permute", &BaseBuffer::create_fake_base},
                         Cas{"tire", &BaseBuffer::create_fake_base2}}) {
    BaseBuffer t = c.table(deux_bases), faux("topology");
    srand48(3);
    if (cas.construire) {
      (t.*cas.construire)(faux, 0.5);
    } else {
      BaseBuffer tous = t;
      tous.create_fakes(0.5);
      faux._expl.assign(tous._expl.begin() + t.nb_expl(), tous._expl.end());
    }
    faux._nom = "topology";
    ASSERT_EQ(faux.nb_expl(), 8);
    EXPECT_EQ(sur_deux_bases(c, {"faux", "--methode", cas.methode, "--ratio", "0.5", "--graine",
                                 "3", "--seuls"})
                  .sortie,
              weka(faux));
    t._expl.insert(t._expl.end(), faux._expl.begin(), faux._expl.end());
    EXPECT_EQ(
        sur_deux_bases(c, {"faux", "--methode", cas.methode, "--nombre", "8", "--graine", "3"})
            .sortie,
        weka(t));
  }
  for (const auto& [option, nombre] : {std::pair{"--nombre", "99"}, {"--ratio", "6.2"}})
    EXPECT_EQ(
        sur_deux_bases(c, {"faux", "--methode", "permute", option, nombre}).erreur,
        "topodata : 16 exemples synthetiques au lieu de 99 : cette methode n'en fait pas plus "
        "qu'il n'y a d'exemples reels\n");
}
