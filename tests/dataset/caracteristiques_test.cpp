#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <random>
#include <sstream>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "dataset/schema.h"
#include "tests/dataset/tables.h"
#include "tests/support/exemple_litteral.h"

using namespace topomine;

namespace {

Block bloc(int id, double v) {
  Block b;
  b._id(id);
  b._type(30 + id);
  b._erik(v);
  b._volexa(v + 10);
  b._volmor(v * 2);
  b._volmoy(v * 3);
  b._volnsm(v / 4);
  return b;
}

Face face(std::initializer_list<int> blocs, std::initializer_list<int> codes, int edge) {
  Face f;
  for (int b : blocs) f.add_bloc(b);
  for (int c : codes) f.add_BC(c);
  f._edge(1, edge);
  return f;
}

// Block 7 between a face seen twice by block 3, a block that does not exist and block 5.
Base base_a_la_main(const std::string& nom) {
  Base::list_CLim = {{10, {{"BCCODE", "3"}}},
                     {11, {{"BCCODE", "9999"}}},
                     {12, {{"BCCODE", "20"}}},
                     {13, {{"BCCODE", "13"}}},
                     {14, {{"Family", "sans BCCODE"}}}};
  Base base(nom, "", "");
  base.blocs = {{3, bloc(3, 1)}, {7, bloc(7, 1234567)}, {5, bloc(5, 4)}, {-2, bloc(-2, 0.5)}};
  base.blocs[7]._face(0, 100);
  base.blocs[7]._face(4, 101);
  base.blocs[7]._face(5, 999);  // in no table
  base.blocs[7]._typeC(true);
  base.blocs[5]._face(2, 102);
  base.faces = {{100, face({3, 7, 3}, {10, 10, 14}, 500)},
                {101, face({7, 55, 5}, {11, 12}, 500)},
                {102, face({3, 5}, {14, 13}, 501)}};
  base.edges[500].add_BC(10);
  base.edges[500].add_BC(77);  // unknown: counts as the code before it
  base.edges[501].add_BC(14);  // unknown and first: 0, which has no column
  return base;
}

// A row from its first values and the few counts that are not 0.
BaseBuffer::Exemple ligne(const std::string& debut, const std::map<std::string, int>& comptes,
                          const char* typeC = "-1") {
  std::istringstream mots(debut);
  BaseBuffer::Exemple e{std::istream_iterator<std::string>(mots), {}};
  for (const char* sorte : {"f", "e"})
    for (int code : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 9999}) {
      const auto it = comptes.find(avec(sorte, code));
      e.push_back(std::to_string(it == comptes.end() ? 0 : it->second));
    }
  e.insert(e.end(), {typeC, "3", "1"});
  return e;
}

}  // namespace

TEST(Features, RowsOfABaseMadeByHand) {
  BaseBuffer t;
  t._expl.push_back({"avant"});
  t.hide_attr("type");
  const BaseBuffer avant(t);
  Base base = base_a_la_main("mesh_case_4");
  base.blocs[9] = base.blocs[7];  // a block under another key is asked for by its own number
  t.add_base(base);
  ASSERT_EQ(t.nb_expl(), 6);
  EXPECT_EQ(t._expl[5], t._expl[4]);
  EXPECT_EQ(t._expl[0], avant._expl[0]);
  EXPECT_TRUE(t._attr == avant._attr && t._aff == avant._aff && t._nom == avant._nom);
  // Without neighbours, all ten statistics are 0.
  EXPECT_EQ(t._expl[1], ligne("mesh_case_4 -2 28 0 0.5 10.5 1.5 1 0.125 0 0 0 0 0 0 0 0 0 0", {}));
  // One neighbour: its own values, no variance.
  EXPECT_EQ(t._expl[3],
            ligne("mesh_case_4 5 35 1 4 14 12 8 1 1 0 11 0 3 0 2 0 0.25 0", {{"f13", 1}}));
  // Neighbours 3, 3, 55 (no block: counted, without values) and 5.
  EXPECT_EQ(t._expl[4],
            ligne("mesh_case_4 7 37 4 1.23457e+06 1.23458e+06 3.7037e+06 2.46913e+06 308642"
                  " 2 2 12 2 6 18 4 8 0.5 0.125",
                  {{"f3", 3}, {"f9999", 1}, {"e3", 4}}, "1"));
}

TEST(Features, NumBaseAndOrderOfCalls) {
  BaseBuffer t;
  for (const char* nom : {"mesh_case_8", "mesh_case_1", "autre", "mesh_case_", "mesh_case_2"}) {
    Base base(nom, "", "");
    t.add_base(base);  // without blocks: no example
    base.blocs[1]._id(1);
    t.add_base(base);
  }
  std::string vus;
  for (const auto& e : t._expl) vus += e.at(col_base) + "=" + e.at(col_Num_Base) + " ";
  EXPECT_EQ(vus, "mesh_case_8=7 mesh_case_1=0 autre=0 mesh_case_=0 mesh_case_2=1 ");
}

// Lists long and short, faces of many blocks, and BCCODE texts that spoil the reading of others.
TEST(Features, AreThoseOfTheListsThemselves) {
  const char* const textes[]{"3", "7",  "9999",        "20",  "",    " 1", "2\r", "+4", "4x", "x",
                             "-", "5-", "99999999999", "1 2", "--3", "6 ", "1e5", "-8", " +"};
  std::mt19937 hasard(7);
  const auto tirer = [&](std::size_t n) { return static_cast<int>(hasard() % n); };
  for (int essai = 0; essai < 400; ++essai) {
    Base::list_CLim.clear();
    const int nb_textes = essai % 3 == 0 ? 4 : 19;
    for (int code = 1; code < 12; ++code)
      Base::list_CLim[code]["BCCODE"] = textes[tirer(static_cast<std::size_t>(nb_textes))];
    Base base("mesh_case_3", "", "");
    const auto lister = [&](auto& entite) {
      for (int nb = tirer(4) == 0 ? tirer(90) : tirer(4); nb > 0; --nb) entite.add_BC(tirer(13));
    };
    for (int n = 0; n <= 4; ++n) lister(base.edges[n]);
    for (int n = 0; n <= 5; ++n) {
      lister(base.faces[n]);
      for (int i = tirer(3) == 0 ? tirer(80) : 4; i > 0; --i) base.faces[n]._edge(i, tirer(6));
      for (int nb = tirer(2) == 0 ? tirer(40) : 2; nb > 0; --nb) base.faces[n].add_bloc(tirer(12));
    }
    for (int n = 1; n <= 9; ++n) {
      // Two of them under another's number.
      base.blocs[n] = bloc(n == 9 ? 4 : n == 4 ? 5 : n, 0.1 * tirer(1000));
      for (int i = 0; i < 6; ++i) base.blocs[n]._face(i, tirer(7));
    }
    BaseBuffer table;
    table.add_base(base);
    Lignes attendues;
    for (const auto& [cle, b] : base.blocs) attendues.push_back(exemple_litteral(base, b));
    ASSERT_EQ(table._expl, attendues) << essai;
  }
}
