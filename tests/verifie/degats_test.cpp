#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/dossier.h"
#include "tests/support/execution.h"
#include "tests/support/rangees.h"
#include "verifie/catalogue.h"
#include "verifie/regles.h"

using namespace topomine;

namespace {

/// A copy of real cases.
class Reelle {
 public:
  Reelle() { std::filesystem::copy(TOPOMINE_CASES, dossier_.chemin(), recursif_); }
  const std::string& chemin() const { return dossier_.chemin(); }
  /// "nrm.face", "def", or the name of a file that is all bases' own.
  static std::string fichier(const std::string& base, const std::string& court) {
    if (court == "climite.cfg") return court;
    return base + "/" + base + (court == "def" ? "." : "_") + court;
  }
  std::string lire(const std::string& nom) const { return dossier_.lire(nom); }
  void ecrire(const std::string& nom, const std::string& texte) const {
    dossier_.ecrire(nom, texte);
  }

 private:
  static constexpr auto recursif_ = std::filesystem::copy_options::recursive;
  Dossier dossier_;
};

using Lignes = std::vector<std::string>;

/// "V040 face:16 face 3: ..." for each finding, by the end of the file's name.
Lignes dits(const std::string& chemin, const std::string& base, const Lignes& modes) {
  Voisinage voisinage{lire_config(chemin), {base, "mesh_case_5"}, {}};
  std::vector<Constat> constats = verifier(voisinage.config);
  std::vector<CasLu> cas_lus;
  for (const std::string& mode : modes) {
    cas_lus.push_back(lire_cas(base, chemin, mode));
    for (const Constat& c : verifier(cas_lus.back(), voisinage)) constats.push_back(c);
  }
  for (const Constat& c : comparer_modes(cas_lus, constats)) constats.push_back(c);
  Lignes lignes;
  for (const Constat& c : constats) {
    std::string ligne = nom(c.code) + ' ' + c.fichier.substr(c.fichier.rfind('.') + 1) + ':' +
                        std::to_string(c.ligne) + ' ' + c.sorte + (c.numero.empty() ? "" : " ") +
                        c.numero + ": " + c.quoi;
    for (std::size_t i; (i = ligne.find(chemin)) != std::string::npos;)
      ligne.erase(i, chemin.size());
    lignes.push_back(visible(ligne));
  }
  return lignes;
}

/// In `texte` after the first `apres`, the first `de` becomes `vers`; "..." in `de` stands for any
/// text.
bool remplacer(std::string& texte, std::string_view apres, std::string_view de,
               std::string_view vers) {
  const std::size_t ancre = texte.find(apres);
  const std::size_t points = de.find("...");
  const std::size_t debut =
      ancre == std::string::npos ? ancre : texte.find(de.substr(0, points), ancre);
  if (debut == std::string::npos) return false;
  std::size_t fin = debut + std::min(points, de.size());
  if (points != std::string_view::npos) {
    const std::string_view reste = de.substr(points + 3);
    fin = reste.empty() ? texte.size() : texte.find(reste, fin);
    if (fin == std::string::npos) return false;
    fin += reste.size();
  }
  texte.replace(debut, fin - debut, vers);
  return true;
}

/// Does what a line of the cases says: "FILE: [AFTER ... ]`FROM` => `TO`", or "FILE: = BASE FILE"
/// for a copy of another.
bool endommager(const Reelle& c, const std::string& base, const std::string& ligne) {
  if (const std::size_t egal = ligne.find(": = "); egal != std::string::npos) {
    const std::string de = ligne.substr(egal + 4);
    const std::size_t blanc = de.find(' ');
    c.ecrire(Reelle::fichier(base, ligne.substr(0, egal)),
             c.lire(Reelle::fichier(de.substr(0, blanc), de.substr(blanc + 1))));
    return true;
  }
  const std::size_t deux_points = ligne.find(": "), accent = ligne.find('`', deux_points),
                    fleche = ligne.find("` => `", accent);
  if (fleche == std::string::npos || !ligne.ends_with('`')) return false;
  const auto octets = [&](std::size_t debut, std::size_t fin) {
    return octets_de(ligne.substr(debut, fin - debut));
  };
  const std::string fichier = Reelle::fichier(base, ligne.substr(0, deux_points));
  std::string texte = c.lire(fichier);
  if (!remplacer(
          texte,
          accent > deux_points + 2 ? octets(deux_points + 2, ligne.rfind(" ... `", accent)) : "",
          octets(accent + 1, fleche), octets(fleche + 6, ligne.size() - 1)))
    return false;
  c.ecrire(fichier, texte);
  return true;
}

}  // namespace

// Of each case, "BASE MODE... : words", the whole findings are compared, but for those of the
// sound base.
TEST(Degats, EachIsSaidOnceAtItsLineInTheseWords) {
  const Reelle c;
  std::map<std::string, Lignes> sains;
  comparer_rangees(TOPOMINE_CASES "../verifie/degats.txt", [&](const Rangee& r) {
    std::istringstream titre(r.titre.substr(0, r.titre.find(" :"))), degats(r.entree);
    std::string base, mot;
    Lignes modes;
    titre >> base;
    while (titre >> mot) modes.push_back(mot);
    const auto [sain, nouveau] = sains.try_emplace(titre.str());
    if (nouveau) sain->second = dits(c.chemin(), base, modes);
    std::map<std::string, std::string> avant;
    for (std::string degat; std::getline(degats, degat);) {
      const std::string fichier = Reelle::fichier(base, degat.substr(0, degat.find(": ")));
      avant.try_emplace(fichier, c.lire(fichier));
      EXPECT_TRUE(endommager(c, base, degat)) << degat;
    }
    std::string vus;
    for (const std::string& ligne : dits(c.chemin(), base, modes))
      if (std::ranges::find(sain->second, ligne) == sain->second.end()) vus += ligne + '\n';
    for (const auto& [fichier, texte] : avant) c.ecrire(fichier, texte);
    return vus;
  });
}

// Where all blocks are curved, none of their values can be had from the corners.
TEST(Degats, AVertexFarOffAmongCurvedBlocks) {
  const Reelle c;
  const std::string blocs = Reelle::fichier("mesh_case_8", "ext.blck");
  const std::regex volume("(<(?:Exact|Mor|Moyen|NSMB)><Cell>)([^<]*)");
  const std::string droits = c.lire(blocs);
  std::string courbes;
  auto reste = droits.cbegin();
  for (std::sregex_iterator v(droits.begin(), droits.end(), volume), fin; v != fin; ++v) {
    courbes.append(reste, (*v)[2].first).append(std::to_string(1.3 * std::stod((*v)[2])));
    reste = (*v)[2].second;
  }
  c.ecrire(blocs, courbes.append(reste, droits.cend()));
  EXPECT_EQ(dits(c.chemin(), "mesh_case_8", {"ext"}), Lignes{});
  ASSERT_TRUE(
      endommager(c, "mesh_case_8", "ext.vrtx: <Ident>46< ... `100.6136642` => `1006.136642`"));
  EXPECT_EQ(dits(c.chemin(), "mesh_case_8", {"ext"}),
            Lignes{"V049 vrtx:161 vertex 46: les volumes de ses 6 bloc(s) sont loin de ceux de "
                   "leurs sommets"});
}

TEST(Degats, AWholeCaseMirrored) {
  const Reelle c;
  const std::string fichier = Reelle::fichier("mesh_case_6", "min.vrtx");
  std::string texte = c.lire(fichier);
  for (std::size_t i = 0; (i = texte.find("<X>", i)) != std::string::npos; i += 3)
    texte[i + 3] == '-' ? texte.erase(i + 3, 1) : texte.insert(i + 3, "-");
  c.ecrire(fichier, texte);
  EXPECT_EQ(dits(c.chemin(), "mesh_case_6", {"min"}),
            Lignes{"V053 vrtx:1 fichier: tous les blocs tournent a gauche, cas en miroir"});
}

// What the modes have, each entity and each number of it, in memory: in files most of these would
// be findings of one mode.
TEST(Degats, ModesAreComparedEntityByEntity) {
  using Cas = std::vector<CasLu>;
  std::vector<CasLu> sains;
  for (const char* mode : {"ext", "nrm", "min"})
    sains.push_back(lire_cas("mesh_case_6", TOPOMINE_CASES, mode));
  for (CasLu& r : sains) r.lus.fill(true);
  const auto bloc = [](CasLu& r, int n) -> Block& { return r.base.blocs.at(n); };
  const double nan = std::nan("");
  struct {
    std::size_t modes;  // the first ones
    std::function<void(Cas&)> changer;
    Lignes dits;
  } const rangees[]{
      {3, [](Cas&) {}, {}},
      {3,
       [](Cas& c) { c[2].base.blocs.erase(4); },
       {"V095 min bloc 4: manque, il est dans le mode ext"}},
      {3,
       [](Cas& c) { c[1].base.vrtxs[901] = {}; },
       {"V095 nrm vertex 901: n'est pas dans le mode ext"}},
      {3,
       [](Cas& c) { c[0].base.edges.erase(7); },
       {"V095 ext edge 7: manque, il est dans le mode nrm"}},
      {3,
       [](Cas& c) { c[0].base.faces[901] = {}, c[2].base.faces[901] = {}; },
       {"V095 nrm face 901: manque, il est dans le mode ext"}},
      {2,
       [](Cas& c) { c[0].base.blocs.erase(4); },
       {"V095 nrm bloc 4: n'est pas dans le mode ext"}},
      {3,
       [&](Cas& c) { bloc(c[1], 1)._type(30); },
       {"V096 nrm bloc 1: nombres autres que dans le mode ext"}},
      {3,
       [&](Cas& c) { bloc(c[1], 1)._erik(2); },
       {"V096 nrm bloc 1: nombres autres que dans le mode ext"}},
      {3,
       [&](Cas& c) { bloc(c[0], 1)._volexa(2); },
       {"V096 ext bloc 1: nombres autres que dans le mode nrm"}},
      {3,
       [&](Cas& c) { bloc(c[2], 2)._volmor(2); },
       {"V096 min bloc 2: nombres autres que dans le mode ext"}},
      {2,
       [&](Cas& c) { bloc(c[0], 2)._volmoy(2); },
       {"V096 nrm bloc 2: nombres autres que dans le mode ext"}},
      {3,
       [&](Cas& c) { bloc(c[0], 1)._volnsm(nan), bloc(c[1], 1)._volnsm(nan); },
       {"V096 min bloc 1: nombres autres que dans le mode ext"}},
      {3,
       [&](Cas& c) {
         for (int m : {0, 1, 2}) bloc(c[static_cast<std::size_t>(m)], 1)._volnsm(m);
       },
       {"V096 ext bloc 1: nombres autres que dans le mode nrm",
        "V096 nrm bloc 1: nombres autres que dans le mode ext",
        "V096 min bloc 1: nombres autres que dans le mode ext"}},
      {3,
       [&](Cas& c) {
         for (CasLu& r : c) bloc(r, 1)._volnsm(1e9);
         bloc(c[0], 1)._volnsm(1e9 + 0.5);
       },
       {}},
      {3,
       [&](Cas& c) {
         for (CasLu& r : c) bloc(r, 1)._volnsm(1e9);
         bloc(c[0], 1)._volnsm(1e9 + 2);
       },
       {"V096 ext bloc 1: nombres autres que dans le mode nrm"}},
      {3,
       [](Cas& c) { c[1].base.vrtxs.at(1)._posZ(7); },
       {"V096 nrm vertex 1: nombres autres que dans le mode ext"}},
      {3,
       [&](Cas& c) { bloc(c[1], 1)._face(5, 9); },
       {"V097 nrm bloc 1: liens autres que dans le mode ext"}},
      {3,
       [](Cas& c) { c[1].base.faces.at(1)._edge(3, 9); },
       {"V097 nrm face 1: liens autres que dans le mode ext"}},
      {3,
       [](Cas& c) { c[1].base.edges.at(1)._vrtx(1, 9); },
       {"V097 nrm edge 1: liens autres que dans le mode ext"}},
      {3,
       [](Cas& c) { c[2].base.faces.at(1).add_BC(9); },
       {"V098 min face 1: codes autres que dans le mode ext"}},
      {3,
       [](Cas& c) {
         c[2].lus[fic_face] = false;
         c[2].base.faces.clear(), c[0].base.edges.erase(7);
       },
       {"V095 ext edge 7: manque, il est dans le mode nrm"}},
  };
  for (const auto& r : rangees) {
    Cas cas(sains.begin(), sains.begin() + static_cast<std::ptrdiff_t>(r.modes));
    r.changer(cas);
    Lignes dits;
    for (const Constat& c : comparer_modes(cas, {}))
      dits.push_back(nom(c.code) + ' ' + c.fichier.substr(c.fichier.size() - 8, 3) + ' ' + c.sorte +
                     ' ' + c.numero + ": " + c.quoi);
    EXPECT_EQ(dits, r.dits);
  }
  // What has been said of an entity, or of a whole file, is enough.
  Cas cas = sains;
  cas[2].base.blocs.erase(4);
  cas[2].base.faces.erase(4);
  EXPECT_EQ(comparer_modes(cas, {}).size(), 2U);
  const std::string blck = cas[1].noms[fic_blck];
  EXPECT_EQ(comparer_modes(cas, {{Code::type_faux, blck, 1, "bloc", "4", "x"}}).size(), 1U);
  EXPECT_EQ(comparer_modes(cas, {{Code::type_faux, blck, 1, "bloc", "5", "x"}}).size(), 2U);
  EXPECT_EQ(comparer_modes(cas, {{Code::xml_tolere, blck, 1, "fichier", "", "x"}}).size(), 2U);
  EXPECT_EQ(comparer_modes(cas, {{Code::base_vide, blck, 1, "fichier", "", "x"}}).size(), 0U);
}

// Files that give fewer digits, and so many volumes that are not those of the corners.
TEST(Degats, VolumesAreJudgedByWhatMostOfThemAre) {
  const Reelle c;
  const std::string fichier = Reelle::fichier("mesh_case_6", "min.blck"), avant = c.lire(fichier);
  /// Every volume with so many digits; with ten and times `facteur` in the first `nb` blocks, and
  /// twice that in the first of them.
  const auto dire = [&](int chiffres, std::size_t nb, double facteur, const char* mot,
                        std::size_t doubles) {
    std::string texte;
    std::size_t bloc = 0;
    std::istringstream lignes(avant);
    for (std::string ligne; std::getline(lignes, ligne); texte += ligne + '\n') {
      if (!ligne.starts_with("<Volumes>")) continue;
      const std::string balise = std::string("<") + mot + "><Cell>";
      for (std::size_t i = 0; (i = ligne.find("<Cell>", i)) != std::string::npos;) {
        const bool ici = *mot == '*' || ligne.substr(0, i + 6).ends_with(balise);
        const std::size_t fin = ligne.find('<', i += 6);
        std::ostringstream v;
        v << std::setprecision(ici && bloc < nb && facteur != 1 ? 10 : chiffres)
          << std::stod(ligne.substr(i, fin - i)) * (ici && bloc < nb ? facteur : 1) *
                 (ici && bloc < doubles ? 2 : 1);
        ligne.replace(i, fin - i, v.str());
      }
      ++bloc;
    }
    c.ecrire(fichier, texte);
    const Lignes vus = dits(c.chemin(), "mesh_case_6", {"min"});
    return std::to_string(vus.size()) +
           (vus.empty() ? "" : ' ' + vus[0].substr(0, vus[0].find(' ', 5)));
  };
  const struct {
    int chiffres;
    std::size_t nb;
    double facteur;
    const char *mot, *dit;
    std::size_t doubles = 0;
  } rangees[]{
      {9, 1, 1, "Exact", "0"},
      {8, 1, 1, "Exact", "0"},
      {7, 1, 1, "Exact", "0"},
      {6, 1, 1, "Exact", "0"},
      {5, 1, 1, "Exact", "2 V057 blck:14"},
      {10, 1, 1 + 1e-7, "Mor", "1 V057 blck:4"},
      {8, 1, 1 + 2.06e-8, "Mor", "0"},
      {8, 1, 1 + 2.07e-8, "Mor", "1 V057 blck:4"},
      {7, 1, 1 + 2.047e-6, "Mor", "0"},
      {7, 1, 1 + 2.048e-6, "Mor", "1 V057 blck:4"},
      {5, 1, 1 + 2.047e-5, "Mor", "2 V057 blck:14"},
      {5, 1, 1 + 2.048e-5, "Mor", "3 V057 blck:4"},
      {10, 11, 1.5, "Mor", "11 V057 blck:4"},
      {10, 12, 1.5, "Mor", "0"},
      {10, 1, 1.5, "*", "1 V049 vrtx:3"},
      {10, 2, 1.5, "*", "1 V049 vrtx:27"},
      {10, 3, 1.5, "*", "0"},
      {10, 11, 4.5, "Exact", "11 V052 blck:4"},
      {10, 12, 1.8, "Exact", "0"},
      {10, 12, 3, "Exact", "0"},
      {10, 12, 4.5, "Exact", "1 V058 vrtx:1"},
      {10, 12, 0.2, "Exact", "13 V051 blck:4"},
      {10, 12, 2.5, "Exact", "11 V057 blck:24", 2},
      {10, 12, 2.5, "Exact", "4 V051 blck:4", 3},
      {10, 12, 2.01, "Exact", "1 V058 vrtx:1", 3},
      {10, 11, 2.5, "Exact", "11 V052 blck:4", 5},
  };
  for (const auto& r : rangees)
    EXPECT_EQ(dire(r.chiffres, r.nb, r.facteur, r.mot, r.doubles), r.dit);
}

// Collapsed blocks are the same whatever their axes are called.
TEST(Degats, BlocksTurned) {
  const Reelle c;
  for (const char* base : {"mesh_case_1", "mesh_case_3"}) {
    const std::string fichier = Reelle::fichier(base, "min.blck");
    for (int tour = 1; tour < 3; ++tour) {
      std::string texte = c.lire(fichier);
      const std::string_view balise = "<Face><Numero>";
      for (std::size_t i = 0; (i = texte.find(balise, i)) != std::string::npos;) {
        char& n = texte[i += balise.size()];
        n = static_cast<char>(n < '4' ? '1' + (n - '0') % 3 : '4' + (n - '3') % 3);
      }
      c.ecrire(fichier, texte);
      for (const std::string& ligne : dits(c.chemin(), base, {"min"}))
        EXPECT_TRUE(ligne.starts_with("V037 ")) << ligne;
      ASSERT_TRUE(endommager(c, base, "min.blck: <Ident>2< ... `<Mor><Cell>` => `<Mor><Cell>1`"));
      std::size_t nb = 0;
      for (const std::string& ligne : dits(c.chemin(), base, {"min"}))
        nb += ligne.starts_with("V057 blck:14 bloc 2: Mor 1") || ligne.starts_with("V051 blck:14");
      EXPECT_EQ(nb, 1U) << base << tour;
      c.ecrire(fichier, texte);
    }
  }
}

// Not one finding but the notices of blocks that are meant to be collapsed.
TEST(Degats, SoundCasesAreLeftAlone) {
  const Dossier engendre;
  ASSERT_EQ(lancer(MAKE_CASES_PROGRAM, ".", {engendre.chemin(), "--blocs", "200"}).statut, 0);
  for (const std::string& chemin : {std::string(TOPOMINE_CASES), engendre.chemin()})
    for (int b = 1; b <= 8; ++b)
      for (const std::string& ligne :
           dits(chemin, "mesh_case_" + std::to_string(b), {"ext", "nrm", "min"}))
        EXPECT_TRUE(ligne.starts_with("V037 ")) << chemin << b << ligne;
}
