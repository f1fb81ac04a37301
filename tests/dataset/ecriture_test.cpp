#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "dataset/basebuffer.h"
#include "dataset/formats.h"
#include "tests/dataset/tables.h"

namespace {

const std::string entete =
    "%\n% file generated automatically...\n% base for topology analysis.\n%\n\n\n\n";

BaseBuffer petite() {
  return table({{"nom", "string"}, {"v", "numeric"}, {"classe", "{-1,1}"}},
               {{"a b", "1", "-1"}, {"c,d", "", "1"}});
}

std::string weka(BaseBuffer& t) {
  std::ostringstream out;
  EXPECT_EQ(&t.Print_weka(out), &out);
  return out.str();
}

std::string torch(BaseBuffer& t) {
  std::ostringstream out;
  EXPECT_EQ(&t.Print_torch(out), &out);
  return out.str();
}

}  // namespace

TEST(Writers, ExactBytes) {
  const std::string nom = "@attribute nom string\n", v = "@attribute v numeric\n",
                    classe = "@attribute classe {-1,1}\n";
  const struct {
    std::vector<const char*> caches;
    int num_classe;
    std::string attributs, lignes, torch;
  } cas[] = {
      {{}, -1, nom + v + classe, "a b,1,-1\nc,d,,1\n", "2 3\na b 1 -1\nc,d  1\n"},
      {{"v"}, -1, nom + classe, "a b,-1\nc,d,1\n", "2 2\na b -1\nc,d 1\n"},
      // The last column ends each row even when it is hidden; the header is silent about it.
      {{"classe"}, -1, nom + v, "a b,1,-1\nc,d,,1\n", "2 2\na b 1 -1\nc,d  1\n"},
      // A class column elsewhere: declared and written last, shown or not.
      {{}, 0, v + classe + nom, "1,-1,a b\n,1,c,d\n", "2 3\n1 -1 a b\n 1 c,d\n"},
      {{"v"}, 1, nom + classe + v, "a b,-1,1\nc,d,1,\n", "2 2\na b -1 1\nc,d 1 \n"},
      {{"nom", "v", "classe"}, 2, classe, "-1\n1\n", "2 0\n-1\n1\n"},
  };
  for (const auto& c : cas) {
    BaseBuffer t = petite();
    for (const char* cache : c.caches) t.hide_attr(cache);
    t._num_classe = c.num_classe;
    EXPECT_EQ(weka(t),
              entete + "@relation essai\n\n" + c.attributs + "\n\n\n@data\n" + c.lignes + "\n\n");
    EXPECT_EQ(torch(t), c.torch + "\n");
    std::ostringstream out;
    EXPECT_EQ(&t.Print_attr(out, ','), &out);
    EXPECT_EQ(out.str(), c.lignes);
  }
}

TEST(Writers, EmptyTables) {
  BaseBuffer t = petite();
  t.clear();
  EXPECT_EQ(weka(t), entete + "@relation \n\n\n\n\n@data\n\n\n");
  EXPECT_EQ(torch(t), "0 3\n\n");  // the names are gone, their flags are not
  // Examples without any attribute: no value is written.
  t._expl = {{"x"}, {}};
  for (const std::string& texte : {weka(t), torch(t)})
    EXPECT_EQ(texte.find('x', texte.find("@data") + 1), std::string::npos) << texte;
}

TEST(Writers, CsvQuotesWhatWouldEndAField) {
  std::string ligne;
  for (const char* champ : {"a b", "a,b", "a\"b", "a\rb", "a\nb", ""}) {
    topomine::ajouter_champ_csv(ligne, champ);
    ligne += ';';
  }
  EXPECT_EQ(ligne, "a b;\"a,b\";\"a\"\"b\";\"a\rb\";\"a\nb\";;");
}

TEST(Writers, CsvIsReadBack) {
  using Champs = std::vector<std::vector<std::string>>;
  EXPECT_EQ(topomine::lire_csv("a,\"b\"\"c\"\r\n\r\n\nd,\r\"x\""),
            (Champs{{"a", "b\"c"}, {}, {}, {"d", ""}, {"x"}}));
  EXPECT_EQ(topomine::lire_csv(""), Champs{});
  for (const char* mauvais : {"\"a", "\"a\"b", "a,\"", "\"a\"\""})
    EXPECT_FALSE(topomine::lire_csv(mauvais)) << mauvais;
}

TEST(Writers, ArffWordsAndTypes) {
  for (const char c : std::string(" \t'\"\\,%{}?")) {
    const std::string texte = std::string("a") + c;
    EXPECT_EQ(topomine::mot_arff(texte),
              "'a" + std::string(c == '\'' || c == '\\', '\\') + c + "'");
  }
  EXPECT_EQ(topomine::mot_arff("a\nb\rc"), "'a b c'");
  EXPECT_EQ(topomine::mot_arff("k") + topomine::mot_arff(""), "k''");
  using Valeurs = std::vector<std::string>;
  EXPECT_EQ(topomine::valeurs_nominales("{a,,b,}"), (Valeurs{"a", "", "b", ""}));
  for (const char* autre : {"", "{", "}", "numeric", "{a", "a}"})
    EXPECT_FALSE(topomine::valeurs_nominales(autre)) << autre;
  BaseBuffer t = table({{"n", "numeric"}, {"s", "string"}, {"c", "{-1,1}"}},
                       {{"10", "nan", "1"}, {"-9", "", "2"}, {"inf", "x", "-1"}, {"", "", ""}});
  topomine::marquer_absents(t);
  EXPECT_EQ(t._expl,
            (Lignes{{"10", "nan", "1"}, {"-9", "", "?"}, {"?", "x", "-1"}, {"?", "", "?"}}));
}

// Longer than what is gathered before it goes to the stream: many rows, and one long value.
TEST(Writers, LongTables) {
  const std::string longue(100'000, 'x');
  BaseBuffer t = table({{"a", "string"}, {"b", "numeric"}}, Lignes(9'000, {"1234567", "-1"}));
  t._expl[4'500][0] = longue;
  std::string attendu;
  for (int i = 0; i < 9'000; ++i) attendu += (i == 4'500 ? longue : "1234567") + ",-1\n";
  EXPECT_TRUE(weka(t).ends_with("@data\n" + attendu + "\n\n"));
  std::ostringstream csv;
  topomine::format_csv.ecrire(csv, t, {.fin = topomine::FinDeLigne::crlf});
  EXPECT_TRUE(csv.str() == "a,b\r\n" + std::regex_replace(attendu, std::regex("\n"), "\r\n"));
  attendu = std::regex_replace(attendu, std::regex(",-1\n"), " -1\n");
  EXPECT_TRUE(torch(t) == "9000 2\n" + attendu + "\n");
}

TEST(Writers, AStreamThatThrowsIsTheCallersToCatch) {
  BaseBuffer t;
  t._attr = {{"a", "numeric"}};
  t._aff = {{"a", true}};
  t._expl.assign(100'000, {"1"});
  std::ofstream plein("/dev/full");
  plein.exceptions(std::ios_base::badbit | std::ios_base::failbit);
  EXPECT_THROW(t.Print_attr(plein, ','), std::ios_base::failure);
}

TEST(Writers, ShortRowsAndNamesWithoutFlag) {
  BaseBuffer t = petite();
  t._expl = {{"a"}, {"b", "2"}, {}, {"c", "3", "1", "trop"}};
  t._aff.erase("v");
  EXPECT_EQ(torch(t), "4 2\na\nb\n\nc 1\n\n");  // hidden, and from now on by a flag
  EXPECT_EQ(t._aff, (std::map<std::string, bool>{{"classe", true}, {"nom", true}, {"v", false}}));
  t.unhide_all();
  EXPECT_EQ(torch(t), "4 3\na\nb 2\n\nc 3 1\n\n");
  t._num_classe = 0;
  EXPECT_EQ(torch(t), "4 3\na\n2 b\n\n3 1 c\n\n");
}
