#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/dossier.h"
#include "tests/support/rangees.h"
#include "verifie/balises.h"
#include "verifie/catalogue.h"
#include "verifie/lecture_stricte.h"

using namespace topomine;

namespace {

std::string dire(const std::optional<FauteOctets>& faute) {
  if (!faute) return "-";
  return nom(faute->code) + ' ' + std::to_string(faute->ligne) + ' ' + faute->quoi;
}

}  // namespace

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

TEST(Catalogue, FindingsBeyondReadingAreOneFinding) {
  std::vector<Constat> constats;
  for (int i = 0; i < 100'003; ++i) retenir(constats, {Code::intrus, "f", i, "bloc", "1", "x"});
  ASSERT_EQ(constats.size(), 100'001U);
  EXPECT_EQ(constats[99'999].code, Code::intrus);
  EXPECT_TRUE(constats.back().code == Code::trop_de_constats && constats.back().ligne == 100'000);
  CasLu cas;
  cas.signaler(Code::intrus, fic_def, 1, "piece", std::string(500, 'n'), std::string(300, 'q'));
  EXPECT_EQ(cas.constats[0].numero, std::string(297, 'n') + "...");
  EXPECT_EQ(cas.constats[0].quoi, std::string(300, 'q'));
}

// A document per line: what is said of its bytes, then of its tags.
TEST(Octets, AreJudgedByTheirEncodingAndTheirTags) {
  comparer_rangees(TOPOMINE_CASES "../verifie/octets.txt", [](const Rangee& r) {
    std::string vus;
    std::istringstream documents(r.entree);
    for (std::string document; std::getline(documents, document);) {
      const std::string octets = octets_de(document);
      vus += dire(faute_codage(octets)) + " | " + dire(faute_xml(octets)) + '\n';
    }
    return vus;
  });
}
