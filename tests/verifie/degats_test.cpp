#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/dossier.h"
#include "tests/support/execution.h"
#include "verifie/catalogue.h"
#include "verifie/regles.h"

using namespace topomine;

namespace {

constexpr char base_[] = "mesh_case_6";

/// A copy of two real cases.
class Reelle {
 public:
  Reelle() {
    const std::filesystem::path de = TOPOMINE_CASES;
    std::filesystem::copy(de / "climite.cfg", dossier_.chemin());
    for (const char* b : {base_, "mesh_case_5"})
      std::filesystem::copy(de / b, dossier_.chemin() + b);
  }
  const std::string& chemin() const { return dossier_.chemin(); }
  std::string fichier(const std::string& mode, const std::string& sorte) const {
    if (sorte == "cfg") return "climite.cfg";
    const std::string debut = std::string(base_) + "/" + base_;
    return debut + (sorte == "def" ? "." : "_" + mode + ".") + sorte;
  }
  std::string lire(const std::string& nom) const { return dossier_.lire(nom); }
  void ecrire(const std::string& nom, const std::string& texte) const {
    dossier_.ecrire(nom, texte);
  }

 private:
  Dossier dossier_;
};

/// "V040 face:16" for each finding, notices of blocks that are meant to be collapsed left out.
std::string dits(const std::string& chemin, const std::string& base,
                 const std::vector<std::string>& modes) {
  Voisinage voisinage{lire_config(chemin), {base, "mesh_case_5"}, {}};
  std::vector<Constat> constats = verifier(voisinage.config);
  std::vector<CasLu> cas_lus;
  for (const std::string& mode : modes) {
    cas_lus.push_back(lire_cas(base, chemin, mode));
    for (const Constat& c : verifier(cas_lus.back(), voisinage)) constats.push_back(c);
  }
  for (const Constat& c : comparer_modes(cas_lus, constats)) constats.push_back(c);
  std::string texte;
  for (const Constat& c : constats) {
    if (c.code == Code::bloc_degenere) continue;
    EXPECT_TRUE(!c.quoi.empty() && !c.sorte.empty()) << nom(c.code);
    texte += (texte.empty() ? "" : " ") + nom(c.code) + " " +
             c.fichier.substr(c.fichier.rfind('.') + 1) + ":" + std::to_string(c.ligne);
  }
  return texte;
}

/// After the first `apres`, the first `de` becomes `vers`; "..." in `de` stands for any text.
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

struct Degat {
  const char *mode, *sorte, *apres, *de, *vers, *dit;
};

const Degat degats[]{
    // Boundaries.
    {"ext", "face", "", "<Boundary_Conditions>...</Boundary_Conditions>", "", "V040 face:3"},
    {"nrm", "face", "", "<Boundary_Conditions>...</Boundary_Conditions>", "", "V040 face:3"},
    {"nrm", "face", "<Ident>4<", "</Type>",
     "</Type><Boundary_Conditions><BC>104</BC></Boundary_Conditions>", "V041 face:24"},
    {"ext", "face", "", "<BC>203<", "<BC>777<", "V042 face:3"},
    {"ext", "edge", "", "<BC>203<", "<BC>777<", "V042 edge:3"},
    {"ext", "edge", "", "<BC>203<", "<BC>302<", "V043 edge:3"},
    {"ext", "edge", "", "<BC>203</BC>", "", "V044 edge:3"},
    {"nrm", "edge", "", "<Boundary_Conditions>...</Boundary_Conditions>", "", "V044 edge:3"},
    {"min", "edge", "", "</NumCaract>",
     "</NumCaract><Boundary_Conditions><BC>203</BC></Boundary_Conditions>", "V044 edge:3"},
    {"ext", "face", "", "<BC>203<", "<BC>302<", "V045 face:3"},
    {"nrm", "face", "", "<BC>203<", "<BC>302<", "V045 face:3"},
    {"nrm", "blck", "<Ident>4<", "<Type>33<", "<Type>34<", "V046 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Type>33<", "<Type>40<", "V047 blck:33"},
    {"nrm", "face", "", "</BC>", "</BC><BC>104</BC>", "V048 face:3"},
    {"nrm", "edge", "", "</BC>", "</BC><BC>203</BC>", "V048 edge:3"},
    {"nrm", "cfg", "", "\n104;1;", "\n104;2;", "V093 cfg:5"},
    {"nrm", "cfg", "", "\n104;1;paroi_bed;", "", "V042 face:10"},
    {"nrm", "cfg", "", "default;\n", "default;\n \t", ""},
    // Geometry.
    {"nrm", "face", "<Ident>4<",
     "<SubEdge>6</SubEdge></Edge>\n<Edge><Numero>2</Numero><NbSubEdge>1</NbSubEdge><SubEdge>8<",
     "<SubEdge>8</SubEdge></Edge>\n<Edge><Numero>2</Numero><NbSubEdge>1</NbSubEdge><SubEdge>6<",
     "V033 face:25"},
    {"nrm", "face", "<Ident>4<", "<SubEdge>8<", "<SubEdge>100<", "V033 face:26"},
    {"nrm", "edge", "<Ident>7<", "<rmax>14<", "<rmax>2<", "V034 edge:9"},
    {"nrm", "edge", "<Ident>7<", "<rmax>14<", "<rmax>60<", "V039 edge:9"},
    {"nrm", "blck", "<Ident>4<", "<Exact><Cell>0.0", "<Exact><Cell>0.", "V052 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<Exact><Cell>0.0", "<Exact><Cell>0.00", "V052 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<Exact><Cell>0.040", "<Exact><Cell>0.041", "V057 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<Exact><Cell>", "<Exact><Cell>-", "V050 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<Mor><Cell>0.0", "<Mor><Cell>0.", "V051 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<NSMB><Cell>0.0", "<NSMB><Cell>0.00", "V051 blck:34"},
    {"nrm", "blck", "<Ident>4<", "</Cell></Moyen>", "e200</Cell></Moyen>", "V055 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<Cell>0.9530", "<Cell>1.9530", "V054 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Cell>0.9530", "<Cell>0.9531", "V057 blck:34"},
    {"ext", "vrtx", "<Ident>20<", "<X>-", "<X>-9", "V059 vrtx:78"},
    {"min", "vrtx", "<Ident>20<", "<X>-0.17", "<X>-0.1", "V049 vrtx:41"},
    {"min", "vrtx", "<Ident>20<", "</X>", "e200</X>", "V055 vrtx:41"},
    // Files of another case.
    {"nrm", "def", "", "<name>mesh_case_6<", "<name>mesh_case_5<", "V068 def:4"},
    {"nrm", "def", "", "<nb_engine>", "<nb_engine>-", "V069 def:13"},
    {"nrm", "def", "", "<family>paroi_cube<", "<family>paroi_cubes<", "V060 def:19"},
    {"nrm", "def", "", "<piece><nom>cube<...</piece>", "", "V070 face:519"},
    {"nrm", "def", "", "<topologie>C<", "<topologie>X<", "V065 def:18"},
    // What the reading drops.
    {"nrm", "blck", "<Ident>4<", "0.0404", "0.04<!-- x -->04", "V014 blck:34"},
    {"nrm", "blck", "<Ident>4<", "0.0404", "0.04<![CDATA[04]]>", "V014 blck:34"},
    {"nrm", "blck", "<Ident>4<", "0.0404", "0.04<b/>04", "V014 blck:34"},
    {"nrm", "blck", "<Ident>4<", "<Cell>0.0404", "<Cell><!-- x -->0.0404", "V011 blck:34"},
    {"nrm", "blck", "<Ident>4<", "</Type>", "</Type><Type>33</Type>", "V015 blck:33"},
    {"nrm", "edge", "<Ident>7<", "</rmin>", "</rmin><rmin>9</rmin>", "V015 edge:9"},
    {"nrm", "face", "", "<Boundary_Conditions>", "<Boundary_Conditions/><Boundary_Conditions>",
     "V015 face:3"},
    {"nrm", "face", "", "<Boundary_Conditions>...</Boundary_Conditions>",
     "<Boundary_Conditions><!-- aucun --></Boundary_Conditions>", "V013 face:3"},
    {"nrm", "face", "", "<Boundary_Conditions>...</Boundary_Conditions>",
     "<!-- <Boundary_Conditions><BC>203</BC></Boundary_Conditions> -->", "V040 face:3"},
    {"nrm", "face", "", "<Boundary_Conditions>...</Boundary_Conditions>",
     "<Boundary_Condition><BC>203</BC></Boundary_Condition>", "V040 face:3"},
    {"nrm", "blck", "", "<Blocks>", "<Blocks><!-- un -->", "V013 blck:2"},
    {"nrm", "blck", "", "<Blocks>...</Blocks>", "<Blocks></Blocks>", "V019 blck:2"},
    {"nrm", "face", "<Ident>4<", "</Edge>", "</Edge><!-- ici -->", "V018 face:25"},
    {"nrm", "vrtx", "", "</Proj>", "</Proj><Info/>", "V018 vrtx:4"},
    {"nrm", "vrtx", "", "\n<Proj><Famille>3", "<Info/>\n<Proj><Famille>3", "V018 vrtx:4"},
    {"nrm", "def", "", "<nom>bed",
     "<nom>b\xc3\xa9"
     "d",
     "V007 def:16"},
    {"nrm", "def", "", "<nom>bed",
     "<nom>b\x92"
     "d",
     "V007 def:16"},
    {"nrm", "blck", "<Ident>4<", "</Type>", "&</Type>", "V028 blck:33"},
    {"nrm", "blck", "<Block><Ident>4<", "<Block>", "", "V003 blck:42"},
    // XML that does not parse.
    {"nrm", "blck", "<Ident>4<", "</Faces>", "", "V003 blck:42"},
    {"nrm", "blck", "<Ident>4<", "</Block>", "", "V003 blck:43"},
    {"nrm", "face", "<Ident>4<", "</Edge>", "", "V003 face:26"},
    {"nrm", "blck", "<Ident>4<", "</Volumes>", "</Volume>", "V003 blck:34"},
    {"nrm", "face", "<Ident>4<", "</Face>", "</Face></Face>", "V003 face:29"},
    {"nrm", "blck", "<Ident>4<", "</Type>", "< </Type>", "V003 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Type>", "<!-- <Type>", "V003 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Type>", "<Type", "V003 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Type>", "<Type a>", "V003 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Type>", "<Type a=\"x>", "V003 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<SubFace>20...", "", "V003 blck:40"},
    {"nrm", "blck", "", "...", "", "V004 blck:1"},
    {"nrm", "blck", "", "<Blocks>...", "", "V004 blck:1"},
    {"nrm", "vrtx", "", "<Vertices>...</Vertices>", "<Sommets/>", "V006 vrtx:1"},
    // Elements, texts, numbers.
    {"nrm", "blck", "<Ident>4<", "<Type>33</Type>", "", "V010 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Type>33<", "<Type><", "V011 blck:33"},
    {"nrm", "blck", "<Ident>4<", "<Exact><Cell>0.0", "<Exact><Cell>0,0", "V012 blck:34"},
    {"nrm", "edge", "<Ident>7<", "<rmax>14</rmax>", "", "V010 edge:9"},
    {"nrm", "vrtx", "<Ident>20<", "<X>-", "<X>1e999", "V012 vrtx:78"},
    {"nrm", "edge", "<Ident>7<", "<NbVertex>2<", "<NbVertex>3<", "V027 edge:9"},
    {"nrm", "blck", "", "<Ident>4<", "<Ident>3<", "V021 blck:33"},
    {"nrm", "face", "", "<Ident>4<", "<Ident>3<", "V021 face:24"},
    {"nrm", "edge", "", "<Ident>4<", "<Ident>3<", "V021 edge:6"},
    {"nrm", "vrtx", "", "<Ident>4<", "<Ident>-4<", "V020 vrtx:17"},
    {"nrm", "blck", "", "<Ident>4<", "<Ident>0<", "V020 blck:33"},
    {"nrm", "vrtx", "", "<Ident>4<", "<Ident>x<", "V012 vrtx:17"},
    {"nrm", "blck", "<Ident>4<", "<Numero>2<", "<Numero>1<", "V023 blck:37"},
    {"nrm", "blck", "<Ident>4<", "<Numero>6<", "<Numero>7<", "V022 blck:41"},
    {"nrm", "blck", "<Ident>4<", "<Face><Numero>6<...</Face>", "", "V024 blck:35"},
    {"nrm", "blck", "<Ident>4<", "<NbSubFace>1<", "<NbSubFace>3<", "V025 blck:36"},
    {"nrm", "blck", "<Ident>4<", "<SubFace>17<", "<SubFace>-17<", "V026 blck:36"},
    // Links.
    {"nrm", "blck", "", "<Block><Ident>4<...</Block>", "", "V029 blck:34"},
    {"nrm", "face", "", "<Face><Ident>14<...</Face>\n", "", "V030 blck:29"},
    {"nrm", "edge", "", "<Edge><Ident>14<...</Edge>", "", "V030 face:46"},
    {"nrm", "vrtx", "", "<Vertex><Ident>14<...</Vertex>", "", "V030 edge:8"},
    {"nrm", "blck", "<Ident>4<", "<SubFace>17<", "<SubFace>9999<", "V030 blck:36"},
    {"nrm", "blck", "<Ident>4<", "<SubFace>17<", "<SubFace>90<", "V035 blck:36"},
    {"nrm", "blck", "<Ident>4<", "1</NbSubFace><SubFace>17</SubFace>", "0</NbSubFace>",
     "V036 blck:36"},
    {"nrm", "face", "<Ident>4<", "1</NbSubEdge><SubEdge>6</SubEdge>", "0</NbSubEdge>",
     "V036 face:25"},
    {"nrm", "edge", "", "</Edges>",
     "<Edge><Ident>900</Ident><NumCaract>1</NumCaract><NbVertex>2</NbVertex><Vertices><rmin>1</"
     "rmin><rmax>60</rmax></Vertices></Edge></Edges>",
     "V031 edge:139"},
};

}  // namespace

TEST(Degats, EachIsSaidOnceAtItsLine) {
  const Reelle c;
  for (const Degat& d : degats) {
    const std::string fichier = c.fichier(d.mode, d.sorte);
    const std::string avant = c.lire(fichier);
    std::string texte = avant;
    ASSERT_TRUE(remplacer(texte, d.apres, d.de, d.vers)) << d.de << " " << d.dit;
    c.ecrire(fichier, texte);
    EXPECT_EQ(dits(c.chemin(), base_, {d.mode}), d.dit)
        << d.sorte << " " << d.apres << ": " << d.de << " -> " << d.vers;
    c.ecrire(fichier, avant);
  }
}

TEST(Degats, AFileOfAnotherCaseIsOneFinding) {
  const Reelle c;
  for (const auto& [sorte, dit] : {std::pair{"blck", "V038 face:1"},
                                   {"face", "V038 face:1"},
                                   {"edge", "V038 edge:1"},
                                   {"vrtx", "V058 vrtx:1"},
                                   {"def", "V071 def:1"}}) {
    const std::string fichier = c.fichier("nrm", sorte), avant = c.lire(fichier);
    std::string autre = fichier;
    for (std::size_t i; (i = autre.find('6')) != std::string::npos;) autre[i] = '5';
    c.ecrire(fichier, c.lire(autre));
    EXPECT_EQ(dits(c.chemin(), base_, {"nrm"}), dit) << sorte;
    c.ecrire(fichier, avant);
  }
}

TEST(Degats, TwoFacesOfABlockExchanged) {
  const Reelle c;
  const std::string fichier = c.fichier("nrm", "blck");
  for (const auto& [autre, dit] : {std::pair{"19", "V053 blck:35"}, {"18", "V035 blck:36"}}) {
    const std::string avant = c.lire(fichier), slot = std::string("<SubFace>") + autre + "<";
    std::string texte = avant;
    ASSERT_TRUE(remplacer(texte, "<Ident>4<", slot, "<SubFace>#<"));
    ASSERT_TRUE(remplacer(texte, "<Ident>4<", "<SubFace>17<", slot));
    ASSERT_TRUE(remplacer(texte, "<Ident>4<", "<SubFace>#<", "<SubFace>17<"));
    c.ecrire(fichier, texte);
    EXPECT_EQ(dits(c.chemin(), base_, {"nrm"}), dit);
    c.ecrire(fichier, avant);
  }
}

TEST(Degats, VerticesInOnePlaceAndTheWholeCaseMirrored) {
  const Reelle c;
  const std::string fichier = c.fichier("min", "vrtx"), avant = c.lire(fichier);
  const auto xyz = [&](int v) {
    const std::size_t i = avant.find("<Coord>", avant.find("<Ident>" + std::to_string(v) + "<"));
    return avant.substr(i, avant.find("</Coord>", i) - i);
  };
  std::string texte = avant;
  ASSERT_TRUE(remplacer(texte, "<Ident>14<", xyz(14), xyz(12)));
  c.ecrire(fichier, texte);
  EXPECT_EQ(dits(c.chemin(), base_, {"min"}), "V056 vrtx:29");
  texte = avant;
  for (std::size_t i = 0; (i = texte.find("<X>", i)) != std::string::npos; i += 3)
    texte[i + 3] == '-' ? texte.erase(i + 3, 1) : texte.insert(i + 3, "-");
  c.ecrire(fichier, texte);
  EXPECT_EQ(dits(c.chemin(), base_, {"min"}), "V053 vrtx:1");
}

TEST(Degats, ModesThatDisagree) {
  const Reelle c;
  const Degat entre_modes[]{
      {"min", "face", "", "<BC>104<", "<BC>203<", "V098 face:9"},
      {"min", "edge", "<Ident>7<", "<rmin>2</rmin><rmax>14<", "<rmin>14</rmin><rmax>2<",
       "V097 edge:9"},
      {"ext", "vrtx", "<Ident>20<", "0808</X>", "0908</X>", "V096 vrtx:78"},
      {"min", "vrtx", "</Vertices>", "</Vertices>", "</Vertices>", ""},
  };
  const std::vector<std::string> tous{"ext", "nrm", "min"};
  for (const Degat& d : entre_modes) {
    const std::string fichier = c.fichier(d.mode, d.sorte), avant = c.lire(fichier);
    std::string texte = avant;
    ASSERT_TRUE(remplacer(texte, d.apres, d.de, d.vers)) << d.de;
    c.ecrire(fichier, texte);
    EXPECT_EQ(dits(c.chemin(), base_, tous), d.dit);
    c.ecrire(fichier, avant);
  }
}

// Not one finding but the notices of blocks that are meant to be collapsed.
TEST(Degats, SoundCasesAreLeftAlone) {
  const Dossier engendre;
  ASSERT_EQ(lancer(MAKE_CASES_PROGRAM, ".", {engendre.chemin(), "--blocs", "200"}).statut, 0);
  for (const std::string& chemin : {std::string(TOPOMINE_CASES), engendre.chemin()})
    for (int b = 1; b <= 8; ++b)
      EXPECT_EQ(dits(chemin, "mesh_case_" + std::to_string(b), {"ext", "nrm", "min"}), "")
          << chemin << b;
}
