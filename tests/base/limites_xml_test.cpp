#include "base/lecture/limites_xml.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <random>

using namespace topomine;

namespace {

std::string repeter(const std::string& s, int n) {
  std::string r;
  for (int i = 0; i < n; ++i) r += s;
  return r;
}

// Elements on the longest way down.
int profondeur(const TiXmlNode& n) {
  int max = 0;
  for (const TiXmlNode* e = n.FirstChild(); e; e = e->NextSibling())
    max = std::max(max, profondeur(*e));
  return max + (n.ToElement() ? 1 : 0);
}

TEST(XmlGarde, LimitsAreExact) {
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
      {"<!--" + repeter("<a>", 2000) + "-->", true},
      {"<r><![CDATA[" + repeter("<a>", 2000) + "]]></r>", true},
      {"<r b=\"" + repeter("<a>", 2000) + "\"/>", true},
      {attributs(attributs_max), true},
      {attributs(attributs_max + 1), false},
      {"<r>" + attributs(attributs_max) + attributs(attributs_max) + "</r>", true}};
  for (const auto& [xml, lisible] : lignes)
    EXPECT_EQ(xml_lisible(xml), lisible) << xml.substr(0, 40) << "... " << xml.size();
}

// Short documents of tokens that open, close and quote in odd ways, some of them repeated so often
// that the limits come into reach.
TEST(XmlGarde, AgreesWithTheParserOnRandomDocuments) {
  static const char* const jetons[] = {
      "<a>",         "<a>",       "</a>", "</a>",  "<b/>", "<b c='1'>", "<b c=\"<a>\"/>",
      "</b>",        "t",         " ",    "<",     ">",    "/",         "'",
      "\"",          "=",         "&lt;", "<!--",  "-->",  "--",        "-",
      "<!",          "<![CDATA[", "]]>",  "<?xml", "?>",   "<?p",       "<c d>",
      "<c d=",       "<\xe9",     "< a>", "</",    "<a/",  "<a b='/'>", "\n",
      "\xef\xbb\xbf"};
  std::mt19937 alea(11);
  int acceptes = 0, analyses = 0;
  for (int essai = 0; essai < 8000; ++essai) {
    std::string xml, fin;
    for (auto n = alea() % 9; n > 0; --n) {
      const std::string jeton = jetons[alea() % std::size(jetons)];
      const bool fois = essai % 41 == 0 && alea() % 3 == 0;
      const int combien = fois ? 990 + static_cast<int>(alea() % 20) : 1;
      xml += repeter(jeton, combien);
      if (alea() % 2 && jeton == "<a>") fin = repeter("</a>", combien) + fin;
    }
    xml += fin;
    // The parser stops in silence at a text outside of the elements; the guard may go on.
    const bool enveloppe = essai % 2;
    if (enveloppe) xml = "<r>" + xml + "</r>";
    TiXmlDocument doc;
    doc.SetTabSize(0);
    doc.Parse(xml.c_str());
    const int niveaux = profondeur(doc);
    if (xml_lisible(xml)) {
      ++acceptes;
      ASSERT_LE(niveaux, niveaux_max) << xml;
    } else if (enveloppe) {
      ASSERT_FALSE(!doc.Error() && niveaux <= niveaux_max) << xml;
    }
    if (!doc.Error()) ++analyses;
  }
  EXPECT_TRUE(acceptes > 4000 && analyses > 500) << "the documents are not all nonsense";
}

}  // namespace
