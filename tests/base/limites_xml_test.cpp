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
    return repeter("<a>", n) + dedans + repeter("</a>", n);
  };
  const auto attributs = [](int n) {
    std::string s = "<a";
    for (int i = 0; i < n; ++i) s += " b" + std::to_string(i) + "='<'";
    return s + "/>";
  };
  const std::pair<std::string, bool> lignes[] = {
      {niveaux(niveaux_max), true},
      {niveaux(niveaux_max + 1), false},
      {niveaux(niveaux_max, "<b/>"), false},
      {niveaux(niveaux_max, "t"), true},
      {"<r>" + repeter("<a></a><b/>", 3000) + "</r>", true},
      {"<r>" + niveaux(niveaux_max - 1) + niveaux(niveaux_max) + "</r>", false},
      {"<r></r></r></r>" + niveaux(niveaux_max + 1), false},  // a level below 0 is none
      {"<!--" + repeter("<a>", 2000) + "-->", true},
      {"<r><![CDATA[" + repeter("<a>", 2000) + "]]></r>", true},
      {"<r b=\"" + repeter("<a>", 2000) + "\"/>", true},
      {attributs(attributs_max), true},
      {attributs(attributs_max + 1), false},
      {"<r>" + attributs(attributs_max) + attributs(attributs_max) + "</r>", true}};
  for (const auto& [xml, lisible] : lignes)
    EXPECT_EQ(xml_lisible(xml), lisible) << xml.substr(0, 40) << "... " << xml.size();
}
