#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

#include "dataset/basebuffer.h"
#include "tests/dataset/tables.h"

namespace {

constexpr double pas_un_nombre = std::numeric_limits<double>::quiet_NaN();
constexpr double infini = std::numeric_limits<double>::infinity();

// The example that each value of a column came from, row by row.
std::string ordre(const BaseBuffer& t) {
  std::string s;
  for (const auto& ligne : t._expl) s += ligne.at(0).substr(0, ligne[0].find(':'));
  return s;
}

// A row made of examples of `reperes`: its name, its number, the example that each column came
// from, its class. A value out of its column is "!".
std::string origine(const BaseBuffer::Exemple& ligne) {
  std::string s = ligne.at(0) + ' ' + ligne.at(1) + ' ';
  for (std::size_t c = 2; c + 1 < ligne.size(); ++c)
    s += ligne[c].substr(1) == avec(":", static_cast<long>(c)) ? ligne[c][0] : '!';
  return s + ' ' + ligne.back();
}

std::vector<std::string> origines(const BaseBuffer& t, std::size_t depuis = 0) {
  std::vector<std::string> s;
  for (std::size_t i = depuis; i < t._expl.size(); ++i) s.push_back(origine(t._expl[i]));
  return s;
}

// A target with contents, flags and a class of its own.
BaseBuffer cible_occupee() {
  BaseBuffer t = table({{"vieux", "numeric"}}, {{"1"}});
  t.hide_attr("vieux");
  t._num_classe = 0;
  return t;
}

using Textes = std::vector<std::string>;

}  // namespace

// Each draw moves the generator on: a draw more or less anywhere shows in all that follows.
TEST(Tirages, AreTheOnesOfTheSeedInTheirOrder) {
  BaseBuffer t = reperes(10), a = cible_occupee(), b, copie;
  t._num_classe = 4;
  t.hide_attr("ident");
  srand48(11);
  EXPECT_EQ(MyRandom()(2147483647), 1609868484);
  BaseBuffer melangee(t);
  melangee._expl[1].resize(3);  // a short row moves like the others
  melangee.rdm_list();
  EXPECT_EQ(ordre(melangee), "6743895102");
  for (const bool melange : {true, false}) {
    EXPECT_EQ(t.sep_buffer(0.25, a, b, melange), 1);
    EXPECT_EQ(ordre(a) + '|' + ordre(b), melange ? "40|25386917" : "01|23456789");
    for (const BaseBuffer* p : {&a, &b})
      EXPECT_TRUE(p->_attr == t._attr && p->_nom == "reperes" && p->_num_classe == 4);
    EXPECT_TRUE(a._aff == cible_occupee()._aff && b._aff.at("ident"));
  }
  EXPECT_EQ(t.create_fake_base(a, 3), 1);
  EXPECT_EQ(origines(a),
            (Textes{"fake_base 0 39922222585858585768059606039627495991856223196 -1",
                    "fake_base 1 83899997108080808246316451657964638670748147937 -1",
                    "fake_base 2 58311111852525252803992395516580563485622890651 -1"}));
  EXPECT_TRUE(a._attr == t._attr && a._num_classe == 4 && a._aff == cible_occupee()._aff);
  EXPECT_EQ(t.create_fake_base2(b, 3), 1);
  EXPECT_EQ(origines(b),
            (Textes{"fake_base2 0 03466665370707070156306572450395717237572148969 -1",
                    "fake_base2 1 12711110979797979712562871296438093517606902357 -1",
                    "fake_base2 2 20000008275757575858954375092044264982173986761 -1"}));
  EXPECT_TRUE(b._attr == t._attr && b._num_classe == 4 && b._aff.at("ident"));
  copie = t;
  copie.create_fakes(2);
  EXPECT_EQ(origines(copie, 10),
            (Textes{"fake_base 0 06322224780808080478063219547806321954780632195 -1",
                    "fake_base 1 06322224780808080478063219547806321954780632195 -1"}));
  EXPECT_TRUE(copie._nom == "reperes" && ordre(copie).starts_with("0123456789"));
  copie.create_fake_base(copie, 1);  // into itself
  EXPECT_EQ(origines(copie),
            Textes{"fake_base 0 16199999486868686070344608547099140905277600487 -1"});
  copie = t;
  copie.create_fake_base2(copie, 1);
  EXPECT_EQ(origines(copie),
            Textes{"fake_base2 0 43733331420202020368588726122114880846952113149 -1"});
  EXPECT_EQ(MyRandom()(2147483647), 203767567);
  EXPECT_EQ(ordre(t), "0123456789");
}

TEST(Tirages, HowManyRows) {
  constexpr int le_moins = std::numeric_limits<int>::min();
  const struct {
    int exemples;
    double n;  // an int as it stands, or a ratio
    bool ratio;
    int permutes, tires;
  } cas[] = {{10, 1000, false, 10, 1000},
             {10, -1, false, 10, 0},
             {10, 0, false, 0, 0},
             {1, 5, false, 1, 5},
             {0, 5, false, 0, 0},
             {4, le_moins, false, 4, 0},
             {7, 0.49, true, 3, 3},
             {7, 2.5, true, 7, 17},
             {7, -0.1, true, 0, 0},
             {7, -0.5, true, 7, 0},
             {7, pas_un_nombre, true, 0, 0},
             {7, -1e300, true, 7, 0},
             {0, infini, true, 0, 0}};
  for (const auto& c : cas) {
    const BaseBuffer source = reperes(c.exemples);
    const auto nombre = [&](auto faire) {
      return c.ratio ? faire(c.n) : faire(static_cast<int>(c.n));
    };
    BaseBuffer t(source), out;
    nombre([&](auto n) { return t.create_fake_base(out, n); });
    EXPECT_EQ(out.nb_expl(), c.permutes) << c.n;
    nombre([&](auto n) { return t.create_fake_base2(out, n); });
    EXPECT_EQ(out.nb_expl(), c.tires) << c.n;
    nombre([&](auto n) { return t.create_fakes(n); });
    EXPECT_EQ(t.nb_expl(), c.exemples + c.permutes) << c.n;
  }
  BaseBuffer t = reperes(7), out;
  t.create_fake_base(out, 1e300);  // more than an int holds is still all of them
  EXPECT_EQ(out.nb_expl(), 7);
}

TEST(Tirages, WhereASplitCuts) {
  const Lignes tous = reperes(4)._expl;
  const std::pair<double, const char*> cas[] = {
      {0.25, "0|123"}, {0.9999, "012|3"}, {1.7, "0123|"},     {infini, "0123|"},
      {0.0, "|0123"},  {-0.5, "|0123"},   {-infini, "|0123"}, {pas_un_nombre, "|0123"}};
  for (const auto& [ratio, parts] : cas) {
    BaseBuffer source = reperes(4), a, b;
    source.sep_buffer(ratio, a, b, false);
    EXPECT_EQ(ordre(a) + '|' + ordre(b), parts) << ratio;
    EXPECT_EQ(source._expl, tous);
  }
  // Into itself, or twice into the same table: both parts, one after the other.
  BaseBuffer t = reperes(4), a, b = cible_occupee();
  t.sep_buffer(0.25, t, a, false);
  EXPECT_EQ(ordre(t) + '|' + ordre(a), "0|123");
  t = reperes(4);
  t.sep_buffer(0.25, a, t, false);
  EXPECT_EQ(ordre(a) + '|' + ordre(t), "0|123");
  EXPECT_TRUE(t._nom == "reperes" && t._attr.size() == 50U);
  t = reperes(4);
  t.sep_buffer(0.25, b, b, false);
  EXPECT_TRUE(b._expl == tous && !b._aff.at("vieux"));
  t.sep_buffer(0.25, t, t, false);
  EXPECT_EQ(t._expl, tous);
  BaseBuffer vide;
  vide.sep_buffer(0.5, a, b, true);
  EXPECT_EQ(a.nb_expl() + b.nb_expl(), 0);
}

// What a short example lacks is left out; what it has is used; nothing is read past its end.
TEST(Tirages, SyntheticRowsFromShortOnes) {
  BaseBuffer t = reperes(3), permutes, tires;
  for (auto& ligne : t._expl) ligne.resize(4);
  t.create_fake_base(permutes, 3);
  t.create_fake_base2(tires, 20);
  t.create_fakes(2);
  EXPECT_EQ(permutes.nb_expl() + tires.nb_expl() + t.nb_expl(), 3 + 20 + 5);
  t._expl.erase(t._expl.begin(), t._expl.begin() + 3);
  for (const Lignes& lignes : {permutes._expl, tires._expl, t._expl})
    for (const auto& ligne : lignes) {
      EXPECT_EQ(ligne.at(2).substr(1) + ligne.at(3).substr(1), ":2:3");
      EXPECT_TRUE(ligne.size() > 4 && ligne.back() == "-1");
    }
}
