#include <gtest/gtest.h>

#include <iostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "fuzz/proprietes.h"
#include "tests/robustness/allocations.h"
#include "tests/support/cas.h"
#include "tests/support/dossier.h"

using namespace topomine;

// Every allocation of an operation is refused in turn. It must answer by its result; if it claims
// success all the same, its result must be the right one.

namespace {

constexpr char climite[] =
    "Damas code;BCCODE;Family;\n"
    "11;1;fam_C avec un nom qui ne tient pas dans un texte court;\n"
    " +0000000000000000000000000000000002a;2;fam_H;\n"
    "9999; 9999;une autre famille dont le nom est aussi bien long;\n";

/// Catches std::cout and std::cerr in room of its own: what it catches is written while memory is
/// refused.
class Tableau : public std::streambuf {
 public:
  Tableau() : cout_(std::cout.rdbuf(this)), cerr_(std::cerr.rdbuf(this)) {
    setp(place_, place_ + sizeof place_);
  }
  ~Tableau() override {
    std::cout.rdbuf(cout_);
    std::cerr.rdbuf(cerr_);
  }
  std::string_view texte() const { return {place_, static_cast<std::size_t>(pptr() - pbase())}; }

 private:
  char place_[1 << 16];
  std::streambuf* cout_;
  std::streambuf* cerr_;
};

/// A case on disk, with texts that need a stream, and a C piece whose family is a long text.
class Memoire : public ::testing::Test {
 protected:
  Memoire() : cas_(grille("petite", {2, 1, 1})) {
    cas_.base.nom = "mesh_case_1";
    cas_.base.type = "nrm";
    Piece p;
    p._fam_BC("fam_C avec un nom qui ne tient pas dans un texte court");
    p._nom(p._fam_BC());
    p._topology('C');
    cas_.base.pieces[p._fam_BC()] = p;
    ecrire_cas(cas_.base, dossier_);
    std::string vrtxs = xml_vrtxs(cas_.base);
    for (std::size_t i = 0; (i = vrtxs.find("<Y>", i)) != std::string::npos; i += 4)
      vrtxs.insert(i + 3, "+000000000000000000000000");
    dossier_.ecrire("mesh_case_1/mesh_case_1_nrm.vrtx", vrtxs);
    dossier_.ecrire("climite.cfg", climite);
    oublier_configuration();
  }
  ~Memoire() override { oublier_configuration(); }

  Base neuve() const { return Base("mesh_case_1", dossier_.chemin(), "nrm"); }
  Base chargee() const {
    const Tableau muet;
    Base base = neuve();
    base.disp = false;
    EXPECT_TRUE(base.load_all());
    return base;
  }

  Dossier dossier_;
  Cas cas_;
};

TEST_F(Memoire, LoadClcfgAnswersByItsResult) {
  const std::string chemin = dossier_.chemin();
  const long echecs = a_chaque_refus([&](const Refus& refus) {
    bool reussi = false;
    {
      const Tableau capture;
      Base base;
      refus([&] { reussi = base.load_clcfg(chemin); });
      EXPECT_EQ(reussi, Base::init_cl_cfg);
      EXPECT_EQ(capture.texte(), reussi ? "" : "Erreur acquisition climite.cfg.... \n");
      if (reussi) {
        EXPECT_EQ(Base::list_CLim.size(), 2u);
        EXPECT_EQ(base._CL(2, "BCCODE"), "9999");
      }
    }
    oublier_configuration();
    return reussi;
  });
  EXPECT_GT(echecs, 20);
}

TEST_F(Memoire, LoadAllAnswersByItsResult) {
  const std::string attendue = image(chargee());
  oublier_configuration();
  const long echecs = a_chaque_refus([&](const Refus& refus) {
    bool reussi = false;
    {
      const Tableau muet;
      Base base = neuve();
      base.disp = false;
      refus([&] { reussi = base.load_all(); });
      EXPECT_TRUE(!reussi || image(base) == attendue) << "success, but another result";
    }
    oublier_configuration();
    return reussi;
  });
  EXPECT_GT(echecs, 1000);
}

TEST_F(Memoire, MakeLinkAnswersZero) {
  const long echecs = a_chaque_refus([&](const Refus& refus) {
    Base base(cas_.base);
    int fait = 0;
    refus([&] { fait = base.make_link(); });
    return fait == 1;
  });
  EXPECT_GT(echecs, 20);
}

TEST_F(Memoire, AddBaseAppendsAllOrNothingAndSaysSo) {
  Base base = chargee();
  BaseBuffer attendue;
  attendue.add_base(base);
  const long echecs = a_chaque_refus([&](const Refus& refus) {
    const Tableau capture;
    BaseBuffer table;
    refus([&] { table.add_base(base); });
    const std::string dit(capture.texte());
    const bool reussi = dit.empty();
    EXPECT_EQ(dit,
              reussi ? "" : "memoire insuffisante pour les exemples de la base " + base.nom + "\n");
    EXPECT_TRUE(table._expl == (reussi ? attendue._expl : std::vector<BaseBuffer::Exemple>()));
    return reussi;
  });
  EXPECT_GT(echecs, 20);
}

/// A table whose values need streams here and there, and more room once normalised.
BaseBuffer table_d_essai() {
  BaseBuffer table;
  for (int i = 0; i < 6; ++i) {
    table._expl.emplace_back(table._attr.size(), std::to_string(i * i));
    table._expl.back()[5] = std::string("+0.00000000000000000000000000").append(std::to_string(i));
    table._expl.back()[0] = "une base dont le nom est aussi bien long " + std::to_string(i);
  }
  return table;
}

TEST_F(Memoire, NormalizeAnswersZero) {
  const BaseBuffer source = table_d_essai();
  BaseBuffer attendue(source);
  ASSERT_EQ(attendue.normalize(), 1);
  const long echecs = a_chaque_refus([&](const Refus& refus) {
    BaseBuffer table(source);
    int fait = 0;
    refus([&] { fait = table.normalize(); });
    EXPECT_TRUE(fait == 0 || table._expl == attendue._expl) << "success, but another result";
    return fait == 1;
  });
  EXPECT_GT(echecs, 40);
}

TEST_F(Memoire, SplittingLeavesTheTablesAsTheyWere) {
  const BaseBuffer source = table_d_essai();
  const long echecs = a_chaque_refus([&](const Refus& refus) {
    BaseBuffer table(source), un, deux;
    int fait = 0;
    refus([&] { fait = table.sep_buffer(0.5, un, deux, true); });
    EXPECT_TRUE(table._expl == source._expl);
    EXPECT_EQ(un.nb_expl() + deux.nb_expl(), fait == 1 ? 6 : 0);
    EXPECT_EQ(un._nom, "base_de_donnees");
    return fait == 1;
  });
  EXPECT_GT(echecs, 40);
}

TEST_F(Memoire, SyntheticExamplesAreAllThereOrNone) {
  const BaseBuffer source = table_d_essai();
  using Faire = int (*)(BaseBuffer&, BaseBuffer&);
  for (const Faire faire :
       {Faire([](BaseBuffer&t, BaseBuffer& /*out*/) { return t.create_fakes(3); }),
        Faire([](BaseBuffer&t, BaseBuffer&out) { return t.create_fake_base(out, 3); }),
        Faire([](BaseBuffer&t, BaseBuffer&out) { return t.create_fake_base2(out, 3); })}) {
    const long echecs = a_chaque_refus([&](const Refus& refus) {
      BaseBuffer table(source), out;
      int fait = 0;
      refus([&] { fait = faire(table, out); });
      EXPECT_EQ(table.nb_expl() + out.nb_expl(), fait == 1 ? 9 : 6);
      return fait == 1;
    });
    EXPECT_GT(echecs, 20);
  }
}

}  // namespace
