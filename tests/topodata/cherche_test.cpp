#include <gtest/gtest.h>

#include <sstream>

#include "base/base.h"
#include "base/lecture/chargement.h"
#include "tests/topodata/programme.h"

using namespace topomine;

TEST(Cherche, ListsTheBlocksThatMeetEveryCondition) {
  const Collection c;
  Base base("mesh_case_2", c.cas(), "nrm");
  ASSERT_TRUE(charger(base).fait);
  const auto cherche = [&](std::vector<std::string> conditions) {
    std::vector<std::string> mots{"voir", c.cas(), "nrm", "mesh_case_2"};
    for (const std::string& une : conditions) mots.insert(mots.end(), {"--cherche", une});
    return topodata(mots);
  };
  /// The lines wanted, and the count on the other output.
  const auto attendu = [&](auto dit) {
    std::ostringstream lignes;
    int n = 0;
    for (const auto& [numero, bloc] : base.blocs)
      if (const std::string texte = dit(bloc); !texte.empty()) {
        lignes << "Bloc " << numero << " : " << texte << '\n';
        ++n;
      }
    lignes << "topodata : " << n << " bloc(s) sur " << base.blocs.size() << '\n';
    return lignes.str();
  };
  const auto tout = [](const Resultat& r) { return r.sortie + r.erreur; };
  const auto faces_de = [&](const Block& b, const std::string& famille) {
    std::string faces;
    for (int s = 0; s < 6; ++s)
      for (int i = 0; i < base.faces.at(b._face(s)).nb_BC(); ++i)
        if (base._CL(base.faces.at(b._face(s))._BC(i), "Family") == famille)
          faces += (faces.empty() ? "" : ", ") + std::to_string(b._face(s));
    return faces;
  };
  const auto erikson = [](const Block& b) {
    std::ostringstream s;
    s << "erikson=" << b._erik();
    return s.str();
  };
  EXPECT_EQ(tout(cherche({"TypeC"})),
            attendu([](const Block& b) { return b._typeC() ? "TypeC=1" : ""; }));
  EXPECT_EQ(tout(cherche({" erikson <= 0.6 ", "!TypeC"})), attendu([&](const Block& b) {
              return b._erik() <= 0.6 && !b._typeC() ? erikson(b) + ", TypeC=-1" : "";
            }));
  EXPECT_EQ(tout(cherche({"erikson>0.5,erikson<0.6"})), attendu([&](const Block& b) {
              return b._erik() > 0.5 && b._erik() < 0.6 ? erikson(b) : "";
            }));
  EXPECT_EQ(tout(cherche({"famille=paroi_aile"})), attendu([&](const Block& b) {
              const std::string faces = faces_de(b, "paroi_aile");
              return faces.empty() ? "" : "famille=paroi_aile (face " + faces + ")";
            }));
  EXPECT_EQ(tout(cherche({"famille!=paroi_aile"})), attendu([&](const Block& b) {
              return faces_de(b, "paroi_aile").empty() ? "famille!=paroi_aile" : "";
            }));
  EXPECT_NE(cherche({"code=103"}).sortie, cherche({"code=104"}).sortie);
  EXPECT_EQ(tout(cherche({"BCCODE=77"})), attendu([](const Block&) { return ""; }));

  const std::pair<const char*, const char*> refus[]{
      {"eriksn<1", "attribut inconnu : 'eriksn' (le plus proche : erikson"},
      {"erikson<0,3", "attribut inconnu : '3'"},
      {"erikson<a", "condition 'erikson<a' : 'a' n'est pas un nombre"},
      {"erikson<", "condition 'erikson<' : il manque la valeur"},
      {"erikson", "condition 'erikson' : a comparer a une valeur"},
      {"famille=paroi_ail", "famille inconnue : 'paroi_ail' (la plus proche : paroi_aile)"},
      {"famille<3", "condition 'famille<3' : famille se compare par = ou !="},
      {"code=x", "condition 'code=x' : 'x' n'est pas un entier de -2147483648 a 2147483647"},
  };
  for (const auto& [condition, dit] : refus) {
    const Resultat r = cherche({"TypeC", condition});
    EXPECT_EQ(r.statut, 2);
    EXPECT_EQ(r.sortie, "");
    EXPECT_TRUE(r.erreur.starts_with(std::string("topodata : ") + dit)) << r.erreur;
  }
  EXPECT_EQ(cherche({","}).erreur, "topodata : --cherche : aucune condition\n");
}
