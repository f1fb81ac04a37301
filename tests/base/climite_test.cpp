#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "base/base.h"
#include "tests/support/capture.h"
#include "tests/support/cas.h"

using namespace topomine;

namespace {

// The configuration is the process's: each test starts without one, and leaves none.
class ClcfgTest : public testing::Test {
 protected:
  ~ClcfgTest() override { oublier_configuration(); }

  /// Loads `contenu` into a fresh configuration.
  bool charger(std::string_view contenu) {
    oublier_configuration();
    d.ecrire("climite.cfg", contenu);
    const Capture c;
    const bool resultat = Base().load_clcfg(d.chemin());
    err = c.err();
    return resultat;
  }

  /// The table as "code=value,value;" by ascending code, columns in alphabetical order.
  static std::string table() {
    std::string s;
    for (const auto& [code, ligne] : Base::list_CLim) {
      s += std::to_string(code) + "=";
      for (const auto& [nom, valeur] : ligne) s += "[" + valeur + "]";
      s += "\n";
    }
    return s;
  }

  Dossier d;
  std::string err;
};

TEST_F(ClcfgTest, RowsOfEveryKind) {
  const std::string entete = "Damas code;BCCODE;Family;\n";  // listed as BCCODE, code, Family
  struct {
    const char* quoi;
    std::string texte;
    const char* table;
  } const lignes[] = {
      {"plain", entete + "12;3;wall;\n-4;5;far;\n", "-4=[5][-4][far]\n12=[3][12][wall]\n"},
      {"last line without newline", entete + "12;3;wall;\n13;4;x;", "12=[3][12][wall]\n"},
      {"leading blanks", " \tDamas code;BCCODE;\tFamily;\n  12;\t3; a b ;\n", "12=[3][12][a b ]\n"},
      {"CRLF", "Damas code;BCCODE;Family;\r\n12;3;wall; \t\r\n", "12=[3][12][wall]\n"},
      {"the later row wins", entete + "12;3;a;\n12;4;b;\n", "12=[4][12][b]\n"},
      {"missing columns keep the row before", entete + "12;3;a;\n13;\n14;5;\n",
       "12=[3][12][a]\n13=[3][13][a]\n14=[5][14][a]\n"},
      {"a blank line before any row", entete + "\n12;3;a;\n", "0=[]\n12=[3][12][a]\n"},
      {"first code without number", entete + "x;3;a;\n", "0=[3][x][a]\n"},
      {"leftovers spoil the codes after them", entete + "12;3;a;\n13x;4;b;\n14;5;c;\n15;6;d;\n",
       "12=[3][12][a]\n13=[6][15][d]\n"},
      {"a code that fails is the one before", entete + "12;3;a;\n-;4;b;\n14;;c;\n",
       "12=[4][-][b]\n14=[][14][c]\n"}};
  for (const auto& l : lignes) {
    SCOPED_TRACE(l.quoi);
    EXPECT_TRUE(charger(l.texte) && Base::init_cl_cfg);
    EXPECT_EQ(table(), l.table);
    EXPECT_EQ(err, "");
    EXPECT_EQ(Base::list_attr, (std::vector<std::string>{"Damas code", "BCCODE", "Family"}));
  }
}

TEST_F(ClcfgTest, Refusals) {
  const std::string entete = "Damas code;BCCODE;\n12;3;\n";
  const char* const acquisition = "Erreur acquisition climite.cfg.... \n";
  const std::pair<std::string, const char*> lignes[] = {
      {"", "Fichier non_valide...\n"},
      {"Damas code;BCCODE;", "Fichier non_valide...\n"},
      {"Damas code;BCCODE\n12;3;\n", acquisition},
      {entete + "13;4;reste\n", acquisition},
      {entete + "13;4;5;\n", acquisition},
      {entete + "texte\n", acquisition}};
  for (const auto& [texte, message] : lignes) {
    EXPECT_FALSE(charger(texte) || Base::init_cl_cfg) << texte;
    EXPECT_EQ(err, message) << texte;
    EXPECT_EQ(table(), texte.starts_with(entete) ? "12=[3][12]\n" : "") << "what was read stays";
  }
}

TEST_F(ClcfgTest, IsReadOnceAndWhatIsNoReadableFileIsNoConfiguration) {
  const std::string chemin = d.chemin() + "climite.cfg";
  const std::function<void()> autres[] = {
      [] {},
      [&] { std::filesystem::create_directories(chemin); },
      [&] { std::filesystem::create_symlink("climite.cfg", chemin); },
      [&] { std::filesystem::create_symlink("nulle_part", chemin); },
      [&] { ASSERT_EQ(mkfifo(chemin.c_str(), 0600), 0); },
      [&] { std::filesystem::create_symlink("/dev/zero", chemin); },
      [&] {
        d.ecrire("climite.cfg", "Damas code;\n1;\n");
        std::filesystem::permissions(chemin, std::filesystem::perms::none);
      }};
  for (const auto& mettre : autres) {
    if (&mettre == std::end(autres) - 1 && geteuid() == 0) break;  // root reads everything
    mettre();
    const Capture c;
    EXPECT_TRUE(Base().load_clcfg(d.chemin()) && Base::init_cl_cfg && Base::list_CLim.empty());
    EXPECT_EQ(c.out() + c.err(), "") << &mettre - autres;
    oublier_configuration();
    std::filesystem::remove(chemin);
  }

  ASSERT_TRUE(charger("Damas code;BCCODE;\n12;3;\n"));
  d.ecrire("climite.cfg", "");
  EXPECT_TRUE(Base("n", "", "").load_clcfg(d.chemin()));
  EXPECT_EQ(table(), "12=[3][12]\n");
}

// Rows take what they would take with all their columns; blank lines that change nothing are free.
TEST_F(ClcfgTest, RowsThatTakeTooMuchAreRefused) {
  const std::string entete = "Damas code;" + std::string(65325, 'c') + ";\n";
  const auto texte = [&](int n, const std::string& rangee) {
    std::string t = entete;
    for (int i = 0; i < n; ++i) t += rangee;
    return t;
  };
  EXPECT_TRUE(charger(texte(1024, "1;\n"))) << "65536 bytes each";
  EXPECT_FALSE(charger(texte(1023, "1;\n") + "12;\n")) << "one more";
  EXPECT_TRUE(err.starts_with("climite.cfg trop grand : ")) << err;
  EXPECT_TRUE(err.ends_with(" 64 Mio\nErreur acquisition climite.cfg.... \n")) << err;
  for (const char* code : {"1;\n", "x;\n", "1x;\n"}) {
    EXPECT_TRUE(charger(texte(1, code) + std::string(100000, '\n'))) << code;
    EXPECT_EQ(Base::list_CLim.size(), 1U);
  }
}

TEST_F(ClcfgTest, ColumnsAndTranslatedCodes) {
  ASSERT_TRUE(charger("Damas code;BCCODE;Family;\n1;10;a;\n2;;b;\n3;-;c;\n4;20z;d;\n5;30;e;\n"));
  const Base b;
  EXPECT_EQ(b._CL(1, "Family"), "a");
  EXPECT_EQ(b._CL(1, "family") + b._CL(9, "Family") + b._CL(2, "BCCODE"), "");
  using Codes = std::vector<int>;
  EXPECT_EQ(b.DAM2BCCODE({1, 99, 2, 3, 5, 1}), (Codes{10, 10, 10, 10, 30, 10}));
  EXPECT_EQ(b.DAM2BCCODE({99, 5}), (Codes{0, 30})) << "0 until a code has a number";
  EXPECT_EQ(b.DAM2BCCODE({4, 5, 1}), (Codes{20, 20, 20})) << "the z stays ahead of the others";
}

}  // namespace
