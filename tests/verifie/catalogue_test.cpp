#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/dossier.h"
#include "verifie/catalogue.h"

using namespace topomine;

TEST(Catalogue, NamesEachCodeOnce) {
  for (const Fiche& f : catalogue()) {
    EXPECT_EQ(code_nomme(nom(f.code)), f.code);
    for (const std::string_view texte : {f.titre, f.sens, f.table, f.remede})
      EXPECT_TRUE(!texte.empty() && texte.find('|') == std::string_view::npos) << nom(f.code);
  }
  for (const char* texte : {"", "V", "V000", "v012", "V0012", "12"})
    EXPECT_FALSE(code_nomme(texte));
}

// The page is made by `topodata verifie --explique docs`, after its head.
TEST(Catalogue, IsWhatThePageSays) {
  std::ostringstream tables;
  ecrire_catalogue(tables);
  const std::string page = lire_octets(TOPOMINE_CASES "../../docs/verifie.md");
  EXPECT_TRUE(page.ends_with(tables.str()));
}
