#include "base/lecture/limites_xml.h"

#include <gtest/gtest.h>

using namespace topomine;

namespace {

std::string repeter(const std::string& s, int n) {
  std::string r;
  for (int i = 0; i < n; ++i) r += s;
  return r;
}

}  // namespace

// Documents of every kind are compared with the parser's trees by the inputs of tests/corpus/scene.
TEST(LimitesXml, AreExact) {
  const auto niveaux = [](int n, const std::string& dedans = "") {
    return repeter("<a>\n", n) + dedans + repeter("</a>", n);
  };
  const auto attributs = [](int n) {
    std::string s = "\n<a\n";
    for (int i = 0; i < n; ++i) s += " b" + std::to_string(i) + "='<'";
    return s + "/>";
  };
  const std::pair<std::string, const char*> lignes[] = {
      {niveaux(niveaux_max), ""},
      {niveaux(niveaux_max + 1), "level, line 1001"},
      {niveaux(niveaux_max, "<b/>"), "level, line 1001"},
      {niveaux(niveaux_max, "t"), ""},
      {"<r>" + repeter("<a></a><b/>", 3000) + "</r>", ""},
      {"<r>" + niveaux(niveaux_max - 1) + niveaux(niveaux_max) + "</r>", "level, line 1999"},
      {"<r></r></r></r>" + niveaux(niveaux_max + 1),
       "level, line 1001"},  // a level below 0 is none
      {"<!--" + repeter("<a>", 2000) + "-->", ""},
      {"<r><![CDATA[" + repeter("<a>", 2000) + "]]></r>", ""},
      {"<r b=\"" + repeter("<a>", 2000) + "\"/>", ""},
      {attributs(attributs_max), ""},
      {attributs(attributs_max + 1), "attribute, line 2"},
      {"<r>" + attributs(attributs_max) + attributs(attributs_max) + "</r>", ""}};
  for (const auto& [xml, dit] : lignes) {
    std::string vu;
    if (const auto trop = depassement(xml))
      vu = (trop->niveaux ? "level, line " : "attribute, line ") + std::to_string(trop->ligne);
    EXPECT_EQ(vu, dit) << xml.substr(0, 40) << "... " << xml.size();
    EXPECT_EQ(xml_lisible(xml), vu.empty());
  }
}
