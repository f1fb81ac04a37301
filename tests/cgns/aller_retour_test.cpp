#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "base/configuration.h"
#include "base/lecture/chargement.h"
#include "dataset/schema.h"
#include "mesh/hexaedre.h"
#include "tests/cgns/modele_de_base.h"
#include "tests/topodata/programme.h"

namespace topomine {

namespace {

namespace fs = std::filesystem;

struct Charge {
  Base base;
  BaseBuffer table;
};

Charge charger_cas(const std::string& chemin, const std::string& nom, const std::string& mode) {
  oublier_configuration();
  Charge c{Base(nom, chemin, mode), {}};
  const Chargement fait = charger(c.base);
  EXPECT_TRUE(fait.fait) << nom << ' ' << fait.raison;
  c.table.add_base(c.base);
  return c;
}

/// climite.cfg with a family per code, as the mesh will name them, and the letters of the pieces.
void preparer(const Dossier& d, const Base& base) {
  std::string climite = "Damas code;BCCODE;Family;\n", codes, pieces;
  for (const auto& [code, ligne] : Base::list_CLim) {
    const std::string famille = famille_de(base, code);
    const std::string bccode = ligne.at("BCCODE");
    climite += std::to_string(code) + ";" + bccode + ";" + famille + ";\n";
    codes += famille + "," + bccode + "\n";
    if (const auto p = base.pieces.find(ligne.at("Family")); p != base.pieces.end())
      pieces += famille + "," + p->second._topology() + "\n";
  }
  d.ecrire("cas/climite.cfg", climite);
  d.ecrire("codes.csv", codes);
  d.ecrire("pieces.csv", pieces);
}

/// The columns that must come back the same, as one text per block.
std::vector<std::string> topologie(const BaseBuffer& t) {
  std::vector<std::string> lignes;
  for (const auto& exemple : t._expl) {
    std::string& ligne = lignes.emplace_back();
    for (std::size_t c = 0; c < schema.size(); ++c)
      if (c == col_type || c == col_nb_voisin || c == col_TypeC ||
          schema[c].nom.starts_with("BC_fam"))
        ligne += std::string(schema[c].nom) + "=" + exemple[c] + " ";
  }
  return lignes;
}

/// The corners of a zone, for the measures that the cases are made with.
Hexaedre hexaedre(const Modele& m, std::size_t z) {
  Hexaedre h;
  for (std::size_t c = 0; c < 8; ++c) {
    Ijk p{1, 1, 1};
    for (std::size_t a = 0; a < 3; ++a)
      if (c >> a & 1) p[a] = m.taille(z)[a];
    const std::size_t n = m.rang(z, p);
    h[c] = {m.xyz[z][0][n], m.xyz[z][1][n], m.xyz[z][2][n]};
  }
  return h;
}

/// Against the formulas on the corners, to 1e-9, and against the case's own numbers as far as the
/// ten digits of its coordinates go.
void comparer_mesures(const Modele& m, const Base& a, const Base& b, bool fin) {
  for (const auto& [n, x] : a.blocs) {
    const Block& y = b.blocs.at(n);
    const MesuresHexaedre formules = mesurer(hexaedre(m, static_cast<std::size_t>(n) - 1));
    const auto proche = [n = n](double formule, double cas, double lu, const char* quoi) {
      EXPECT_NEAR(std::abs(formule), lu, 1e-9 * std::abs(formule)) << quoi << " of block " << n;
      EXPECT_NEAR(cas, lu, 1e-6 * cas) << quoi << " of block " << n;
    };
    proche(formules.exact, x._volexa(), y._volexa(), "Exact");
    proche(formules.mor, x._volmor(), y._volmor(), "Mor");
    proche(formules.moyen, x._volmoy(), y._volmoy(), "Moyen");
    if (fin) continue;
    proche(formules.nsmb, x._volnsm(), y._volnsm(), "NSMB");
    EXPECT_NEAR(x._erik(), y._erik(), 1e-6) << "block " << n;
  }
}

}  // namespace

// Every block comes back as it was, however its zone names its axes.
TEST(AllerRetour, TheTableOfACollection) {
  Dossier d;
  const std::string cas = TOPOMINE_CASES;
  std::set<std::array<int, 3>> vues;
  std::size_t n = 0;
  for (int numero = 1; numero <= 8; ++numero)
    for (const bool fin : {false, true}) {
      const std::string nom = "mesh_case_" + std::to_string(numero);
      const Charge avant = charger_cas(cas, nom, "nrm");
      preparer(d, avant.base);
      const Modele droit = modele_de(avant.base, fin);
      Modele m = droit;
      for (std::size_t z = 0; z < m.s.zones.size(); ++z)
        tourner(m, z, transformations()[(n++ * 7) % 48]);
      for (const Jonction& j : m.s.jonctions) vues.insert(j.passage.t);
      ecrire_cgns(m, d.chemin() + "m.cgns", fin ? Fichiers::hdf5 : Fichiers::adf);
      const Resultat r = topodata(
          {"importe", d.chemin() + "m.cgns", d.chemin() + "cas", nom, "--mode", "toutes", "--force",
           "--codes", d.chemin() + "codes.csv", "--pieces", d.chemin() + "pieces.csv"});
      ASSERT_EQ(r.statut, 0) << r.erreur;
      for (const std::string mode : {"ext", "nrm", "min"}) {
        const Charge a = charger_cas(cas, nom, mode);
        const Charge b = charger_cas(d.chemin() + "cas/", nom, mode);
        const auto attendues = topologie(a.table), lues = topologie(b.table);
        ASSERT_EQ(attendues.size(), lues.size());
        for (std::size_t l = 0; l < lues.size(); ++l)
          EXPECT_EQ(attendues[l], lues[l]) << nom << ' ' << mode << ", block " << l + 1;
        const Resultat v = topodata({"verifie", d.chemin() + "cas", mode, "--bases", nom});
        EXPECT_EQ(v.sortie.find("[erreur]"), std::string::npos) << v.sortie;
        comparer_mesures(droit, a.base, b.base, fin);
      }
    }
  EXPECT_EQ(vues.size(), 48U);
}

}  // namespace topomine
