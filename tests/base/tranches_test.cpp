#include "base/lecture/tranches.h"

#include <gtest/gtest.h>

#include <tuple>

#include "base/configuration.h"
#include "base/lecture/chargement.h"
#include "dataset/basebuffer.h"
#include "tests/support/cas.h"

using namespace topomine;

namespace {

/// The parts that a text is cut into, each at least that long, separated by "|".
std::string parts(const std::string& texte, std::size_t taille) {
  const Coupe c = reperer_coupe(texte, taille);
  std::string p;
  for (std::size_t i = 0; i + 1 < c.bornes.size(); ++i)
    p += (i > 0 ? "|" : "") + texte.substr(c.bornes[i], c.bornes[i + 1] - c.bornes[i]);
  return p;
}

}  // namespace

TEST(Tranches, CutsBetweenEntitiesOfPlainDocumentsOnly) {
  for (const auto& [texte, attendu] : {
           std::pair{"<?xml version='1.0' ?>\n<A> <b>1</b><c/>\n<b><d>2</d></b> </A>\n",
                     " <b>1</b>|<c/>|\n<b><d>2</d></b>| "},
           {"<A><b><A>1</A></b></A>", "<b><A>1</A></b>|"},
           {"<azAZ09_><b/></azAZ09_>", "<b/>|"},
           {"<A><b>1</b></A><A></A>", ""},
           {"<A><b>1</b></A> x", ""},
           {"<A><b>1</b>", ""},
           {"<A><b>1</b></B>", ""},
           {"<A><b x='>'>1</b></A>", ""},
           {"<A x='1'><b>1</b></A>", ""},
           {"<A><!-- <b> --><b>1</b></A>", ""},
           {"<A><![CDATA[</A>]]><b>1</b></A>", ""},
           {"<!DOCTYPE A><A><b>1</b></A>", ""},
           {"<A><b>1</ b></A>", ""},
           {"<A></>", ""},
           {"<definition_scene><b>1</b><c>2</c></definition_scene>", ""},
           {"", ""},
       })
    EXPECT_EQ(parts(texte, 1), attendu) << texte;
}

TEST(Tranches, ALargeBaseIsReadAsAWhole) {
  const Dossier d;
  Cas cas = grille("grande", {12, 12, 12});
  ecrire_cas(cas.base, d);
  ASSERT_GT(d.lire("grande/grande_nrm.face").size(), taille_a_couper);
  EXPECT_TRUE(Tranches(d.lire("grande/grande_nrm.face"), taille_tranche).commencer());
  const auto table = [&] {
    oublier_configuration();
    Base base("grande", d.chemin(), "nrm");
    BaseBuffer t;
    EXPECT_TRUE(charger(base).fait && !base.disp);
    t.add_base(base);
    return t._expl;
  };
  Base entiere("grande", d.chemin(), "nrm");
  BaseBuffer t;
  testing::internal::CaptureStdout();
  oublier_configuration();
  entiere._disp(false);
  EXPECT_TRUE(entiere.load_all());
  testing::internal::GetCapturedStdout();
  t.add_base(entiere);
  ASSERT_GT(t._expl.size(), 1000U);
  EXPECT_EQ(table(), t._expl);

  // What the first block leaves unread becomes part of the numbers of all the others.
  const std::string blocs = d.lire("grande/grande_nrm.blck");
  d.ecrire("grande/grande_nrm.blck", std::string(blocs).insert(blocs.find("</Cell>"), " 7"));
  Base decalee("grande", d.chemin(), "nrm"), attendue("grande", d.chemin(), "nrm");
  EXPECT_TRUE(charger(decalee).fait);
  attendue.nom_base = d.chemin() + "grande/grande";
  testing::internal::CaptureStdout();
  attendue._disp(false);
  EXPECT_TRUE(attendue.load_blocs());
  testing::internal::GetCapturedStdout();
  ASSERT_EQ(decalee.blocs.size(), attendue.blocs.size());
  for (const auto& [numero, bloc] : attendue.blocs) {
    EXPECT_EQ(decalee.blocs[numero]._volexa(), bloc._volexa()) << numero;
    EXPECT_EQ(decalee.blocs[numero]._face(5), bloc._face(5)) << numero;
  }

  // What is wrong is said as of the whole file: that it cannot be parsed comes before any fault.
  for (const auto& [fausse_fin, fautif, dit] :
       {std::tuple{true, false, "probleme de lecture du fichier "},
        {false, true, "Blocks/Block/Faces/Face/Numero absent ou vide"},
        {true, true, "probleme de lecture du fichier "}}) {
    std::string texte = blocs;
    if (fautif) texte.insert(texte.find("<Numero>"), "<Numero/>");
    if (fausse_fin) texte.replace(texte.rfind("</Blocks>"), 9, "</Bloc>");
    d.ecrire("grande/grande_nrm.blck", texte);
    Base base("grande", d.chemin(), "nrm");
    const Chargement c = charger(base);
    EXPECT_FALSE(c.fait || base.disp);
    EXPECT_NE(c.raison.find(dit), std::string::npos) << c.raison;
  }

  // What a base held before stays when the loading fails.
  for (const int sorte : {0, 1, 2, 3}) {
    Base base("grande", d.chemin(), "nrm");
    if (sorte == 0) base.vrtxs[7] = {};
    if (sorte == 1) base.pieces["f"] = {};
    if (sorte == 2) base.raccords.emplace_back()._pc1("p");
    EXPECT_FALSE(charger(base).fait);
    const bool raccord = !base.raccords.empty() && base.raccords[0]._pc1() == "p";
    EXPECT_EQ(base.vrtxs.size() + base.pieces.count("f") + raccord, sorte < 3 ? 1U : 0U);
  }
}
