#include "dataset/basebuffer.h"

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>
#include <utility>

#include "app/filtre.h"
#include "tests/dataset/tables.h"

TEST(Table, SchemaInOrderAllShown) {
  Attributs attendu{
      {"base", "string"}, {"ident", "string"}, {"type", "{30,31,32,33,34,35,36,37,38,39}"}};
  for (const char* nom : {"nb_voisin", "erikson", "vol_exa", "vol_moy", "vol_mor", "vol_nsm"})
    attendu.emplace_back(nom, "numeric");
  for (const char* nom : {"erik", "vexa", "vmoy", "vmor", "vnsm"})
    for (const char* stat : {"_moy", "_var"})
      attendu.emplace_back(std::string("vois_") + nom + stat, "numeric");
  for (const char* sorte : {"face_", "edge_"}) {
    for (int code = 1; code <= 13; ++code)
      attendu.emplace_back(avec(std::string("BC_fam_") + sorte, code), "numeric");
    attendu.emplace_back(std::string("BC_fam_") + sorte + "9999", "numeric");
  }
  attendu.emplace_back("TypeC", "{-1,1}");
  attendu.emplace_back("Num_Base", "{0,1,2,3,4,5,6,7}");
  attendu.emplace_back("Classe", "{-1,1}");

  BaseBuffer t;
  EXPECT_EQ(t._attr, attendu);
  EXPECT_TRUE(t.nb_attr_aff() == 50 && t.nb_expl() == 0 && t._num_classe == -1);
  EXPECT_EQ(t._nom, "base_de_donnees");
  EXPECT_TRUE(t.num_attr("Classe") == 49 && t.num_attr("classe") == -1);
  EXPECT_EQ(t.nom_attr(49), "Classe");
  for (int dehors : {-1, 50, INT_MAX, INT_MIN}) EXPECT_EQ(t.nom_attr(dehors), "%");

  t.init();  // appends a second copy: names count once, the first column of a name is the one found
  EXPECT_TRUE(t._attr.size() == 100 && t.nb_attr_aff() == 50 && t.num_attr("Classe") == 49);
  EXPECT_TRUE(t._nom_base("autre") == "autre" && t._nom == "autre");
}

TEST(Table, FlagsBelongToTheReceiver) {
  BaseBuffer source = table({{"a", "numeric"}, {"b", "string"}}, {{"1", "x"}});
  source._num_classe = 1;
  BaseBuffer cible;
  cible.hide_attr("base");
  cible._num_classe = 7;
  const auto drapeaux = cible._aff;
  cible = source;
  EXPECT_TRUE(cible._nom == "essai" && cible._attr == source._attr);
  EXPECT_EQ(cible._aff, drapeaux);  // "a" and "b" get no entry
  EXPECT_EQ(cible._num_classe, 7);
  EXPECT_EQ(cible._expl, source._expl);
  EXPECT_EQ(BaseBuffer(source)._aff, source._aff);  // construction copies everything
  EXPECT_EQ(BaseBuffer(source)._num_classe, 1);

  cible.clear();
  EXPECT_TRUE(cible._nom.empty() && cible._attr.empty() && cible._expl.empty());
  EXPECT_TRUE(cible._num_classe == -1 && cible.num_attr("base") == -1);
  EXPECT_TRUE(cible._aff == drapeaux && cible.nb_attr_aff() == 49);
  cible.init();  // an attribute that is added is shown, whatever it was before
  EXPECT_EQ(cible.nb_attr_aff(), 50);
}

// What users build from a number or a name; all of it comes with the table's own header.
static_assert(std::is_convertible_v<double, Point> && std::is_convertible_v<double, Vecteur>);
static_assert(std::is_convertible_v<std::string, BaseBuffer>);

TEST(Table, HeaderAloneBringsTheBaseAndTheNumericHelpers) {
  const Base base("a", "b/", "nrm");
  EXPECT_TRUE(base._disp() && base._type() == "nrm");
  EXPECT_EQ(nb_occ({1, 2, 1}, 1), 2);
  EXPECT_EQ(moyenne({1, 2}) + variance({3, 3}), 1.5);
  EXPECT_EQ(MyRandom()(1), 0);
}

TEST(Table, AnswersForItselfAfterAMoveAndToItsOwnTexts) {
  BaseBuffer a("a"), b("b");
  a.hide_attr("type");
  b.hide_attr("ident");
  std::swap(a, b);
  EXPECT_TRUE(a._nom == "b" && b._nom == "a" && a.nb_attr_aff() == 49 && b.nb_attr_aff() == 49);
  EXPECT_TRUE(!a._aff["type"] && !b._aff["ident"]);
  std::vector<BaseBuffer> tables(3, b);
  tables.insert(tables.begin(), a);
  for (const BaseBuffer& t : tables) EXPECT_EQ(t.nb_attr_aff(), 49);

  for (int i = 0; i < 100; ++i) a.add_attr(a._attr[3].first, a._attr[2].second);
  EXPECT_EQ(a._attr.back(), Attributs::value_type("nb_voisin", a._attr[2].second));
  EXPECT_EQ(a._aff.size(), 50U) << "a flag of a text that had moved";
  a.change_type(a._attr[3].first, a._attr[0].second);
  EXPECT_EQ(a._attr[3], Attributs::value_type("nb_voisin", "string"));
  EXPECT_EQ(a.del_attr(a._attr[1].first), 1);
  const BaseBuffer& lue = a;
  EXPECT_EQ(a._nom_base(lue._nom_base()), "b");
}

TEST(Table, HidingTypesAndDeletion) {
  BaseBuffer t = table({{"a", "numeric"}, {"b", "string"}, {"a", "string"}},
                       {{"1", "x", "p"}, {"2", "y"}, {"3"}, {}, {"4", "z", "q", "extra"}});
  EXPECT_EQ(t.hide_attr("absent") + t.unhide_attr("absent") + t.del_attr("absent") +
                t.change_type("absent", "numeric"),
            0);
  EXPECT_EQ(t._aff.size(), 2U);  // two names over three columns, and no entry for "absent"
  EXPECT_TRUE(t.hide_attr("a") == 1 && t.nb_attr_aff() == 1);
  t.add_attr("a", "numeric");  // a new column of that name shows the name again
  EXPECT_TRUE(t.nb_attr_aff() == 2 && t._expl[0].size() == 3);
  t.hide_all();
  EXPECT_EQ(t.nb_attr_aff(), 0);
  EXPECT_TRUE(t.unhide_attr("b") == 1 && t.nb_attr_aff() == 1);
  t.unhide_all();
  EXPECT_EQ(t.nb_attr_aff(), 2);
  EXPECT_EQ(t.change_type("a", "{1}"), 1);  // the first of the name only
  EXPECT_EQ(t._attr[0].second + t._attr[2].second, "{1}string");

  EXPECT_EQ(t.del_attr("b"), 1);
  EXPECT_EQ(t._attr, (Attributs{{"a", "{1}"}, {"a", "string"}, {"a", "numeric"}}));
  EXPECT_EQ(t._expl, (Lignes{{"1", "p"}, {"2"}, {"3"}, {}, {"4", "q", "extra"}}));
  EXPECT_EQ(t.nb_attr_aff(), 2);  // the name still counts
  EXPECT_EQ(t.del_attr("b"), 0);
}

TEST(Table, ValuesAsText) {
  BaseBuffer::Exemple ligne{"avant"};
  for (int v : {-1, 0, 12, INT_MIN}) BaseBuffer::add_val(ligne, v);
  for (double v : {0.1, 1.0 / 3, 1234567.0, 1e6, 123456.0, -2.5e-7, 1e-4, 1e-5, -0.0, 100.0})
    BaseBuffer::add_val(ligne, v);
  for (char v : {'x', ' ', '\t', '\351'}) BaseBuffer::add_val(ligne, v);
  BaseBuffer::add_val(ligne, std::string(" a b "));
  BaseBuffer::add_val(ligne, std::string());
  EXPECT_EQ(ligne,
            (BaseBuffer::Exemple{
                "avant",       "-1",    "0",      "12",       "-2147483648", "0.1",   "0.333333",
                "1.23457e+06", "1e+06", "123456", "-2.5e-07", "0.0001",      "1e-05", "-0",
                "100",         "x",     "",       "",         "\351",        " a b ", ""}));
}

TEST(Table, AppendedWhenAttributesAreTheSame) {
  const Attributs attributs{{"a", "numeric"}, {"b", "string"}};
  BaseBuffer t = table(attributs, {{"1", "x"}, {"2", "y"}});
  for (const Attributs& autres :
       {Attributs{{"a", "numeric"}}, Attributs{{"a", "numeric"}, {"b", "numeric"}},
        Attributs{{"b", "string"}, {"a", "numeric"}}})
    EXPECT_EQ(t.add_buffer(table(autres, {{"3", "z"}})), 0);
  t.hide_attr("a");
  BaseBuffer autre = table(attributs, {{"3", "z"}});
  autre._num_classe = 0;
  EXPECT_EQ(t.add_buffer(autre), 1);
  EXPECT_TRUE(t._nom == "essai" && t._num_classe == -1 && !t._aff.at("a"));
  EXPECT_EQ(t.add_buffer(t), 1);  // with itself: each example twice
  EXPECT_EQ(t._expl,
            (Lignes{{"1", "x"}, {"2", "y"}, {"3", "z"}, {"1", "x"}, {"2", "y"}, {"3", "z"}}));
}

TEST(Filter, HidesTheSchemaAndNothingElse) {
  BaseBuffer t = reperes(2);
  t.add_attr("autre", "string");
  const BaseBuffer avant(t);
  for (int fois = 0; fois < 2; ++fois) {
    filtre(t);
    EXPECT_TRUE(t.nb_attr_aff() == 1 && t._aff.at("autre") && t._aff.size() == 51);
  }
  EXPECT_TRUE(t._attr == avant._attr && t._expl == avant._expl);
  BaseBuffer sans = table({{"a", "numeric"}}, {});
  filtre(sans);  // names without a flag get none
  EXPECT_EQ(sans._aff, (std::map<std::string, bool>{{"a", true}}));
}
