#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>

#include "tests/topodata/programme.h"
#include "verifie/releve.h"

using namespace topomine;

namespace {

/// One fault in a clean case, and the line that says it; a fault that has consequences elsewhere
/// says how many lines there are in all.
struct Mutation {
  const char *fichier, *motif;
  std::string texte, dit;  // from the line number to the remedy
  Gravite gravite;
  std::ptrdiff_t nb = 1;
  const char* ou = fichier;  // where it is said
};

std::string attributs(int n) {
  std::string texte;
  for (int i = 0; i < n; ++i) texte += " a" + std::to_string(i) + "=\"\"";
  return texte;
}

constexpr char cfg[] = "climite.cfg", def[] = "mesh_case_2/mesh_case_2.def",
               blck[] = "mesh_case_2/mesh_case_2_nrm.blck",
               face[] = "mesh_case_2/mesh_case_2_nrm.face",
               edge[] = "mesh_case_2/mesh_case_2_nrm.edge",
               vrtx[] = "mesh_case_2/mesh_case_2_nrm.vrtx";
constexpr auto erreur = Gravite::erreur, avertissement = Gravite::avertissement;

const Mutation mutations[]{
    // Files that do not load.
    {blck, "^[^]*$", "", "1: fichier: XML illisible, document vide, colonne 1", erreur},
    {blck, "<Blocks>[^]*$", "", "1: fichier: coupe avant son premier element", erreur},
    {face, "</Faces>", "",
     "260: fichier: XML illisible, balise de fin absente ou autre que celle du debut, colonne 1",
     erreur},
    {edge, "<Edges>", "<Aretes>",
     "61: fichier: XML illisible, balise de fin absente ou autre que celle du debut, colonne 1",
     erreur},
    {vrtx, "<Vertices>([^]*)</Vertices>", "<Sommets>$1</Sommets>",
     "1: fichier: pas d'element Vertices", erreur},
    {blck, "^[^]*$", "text", "1: fichier: XML illisible, document vide, colonne 1", erreur},
    {blck, "<Block>", "<!-- ", "1: fichier: XML illisible, contenu d'element sans fin, colonne 1",
     erreur},
    {blck, "<Block>", "<Block/ >", "3: fichier: XML illisible, balise vide mal formee, colonne 8",
     erreur},
    {blck, "^[^]*$", "<Blocks", "1: fichier: XML illisible, nom d'element illisible, colonne 2",
     erreur},
    {blck, "^[^]*$", "<Blocks a", "1: fichier: XML illisible, attributs mal formes, colonne 9",
     erreur},
    {blck, "<Block>", "<Block" + attributs(1001) + ">",
     "1: fichier: imbrication ou nombre d'attributs au-dela de 1000", erreur},
    {def, "</reference_avion>", "",
     "22: fichier: XML illisible, balise de fin absente ou autre que celle du debut, colonne 1",
     erreur},
    // Missing elements and texts, texts that are no number.
    {blck, "<Type>\\d+</Type>", "", "3: bloc 1: pas d'element Type", erreur},
    {blck, "<Volumes>[^]*?</Volumes>", "", "3: bloc 1: pas d'element Volumes", erreur},
    {blck, "<NSMB><Cell>[^<]*<", "<NSMB><Cell><", "4: bloc 1: NSMB/Cell sans texte", erreur},
    {blck, "<Exact><Cell>[^<]*<", "<Exact><Cell>1,5<",
     "4: bloc 1: Exact/Cell n'est pas un nombre : '1,5'", erreur},
    {face, "<NumCaract>\\d+<", "<NumCaract>99999999999<",
     "3: face 1: NumCaract n'est pas un entier : '99999999999'", erreur},
    {face, "<BC>(\\d+)<", "<BC>$1x<", "3: face 1: BC n'est pas un entier : '103x'", erreur},
    {edge, "<NbVertex>2<", "<NbVertex>3<", "3: edge 1: NbVertex vaut 3, la base ne se charge pas",
     erreur},
    {edge, "<rmin>\\d+</rmin>", "", "3: edge 1: pas d'element rmin", erreur, 3},
    {vrtx, "<X>[^<]*<", "<X>1e999<", "3: vertex 1: X n'est pas un nombre : '1e999'", erreur},
    {vrtx, "<Famille>\\d+</Famille>", "", "4: vertex 1: pas d'element Famille", erreur},
    {def, "<corde>[^<]*<", "<corde>nan<", "10: reference_avion: corde n'est pas un nombre : 'nan'",
     erreur},
    {def, "<nom>aile</nom>", "", "16: piece de rang 1: pas d'element nom", erreur, 2},
    {blck, "<Blocks>", "<Blocks><!-- un -->",
     "2: bloc de rang 1: un commentaire ou un texte tient sa place", erreur},
    // Identifiers and slots.
    {blck, "<Ident>2<", "<Ident>1<", "13: bloc 1: numero deja pris ligne 3, il le remplace", erreur,
     5},
    {vrtx, "<Ident>1<", "<Ident>-1<", "3: vertex -1: numero nul ou negatif, rien ne s'y relie",
     erreur, 7},
    {blck, "<Numero>2<", "<Numero>1<", "7: bloc 1: face 1 donnee deux fois", erreur, 4},
    {blck, "<Numero>6<", "<Numero>7<", "11: bloc 1: face 7 hors de 1 a 6", erreur, 3},
    {blck, "<Face><Numero>6[^\n]*\n", "", "5: bloc 1: face 6 absente", erreur, 3},
    {blck, "<NbSubFace>1<", "<NbSubFace>3<",
     "6: bloc 1: face 1 : NbSubFace vaut 3, lu comme un numero", erreur, 3},
    {face, "<NbSubEdge>1<", "<NbSubEdge>0<", "5: face 1: edge 1 vide (NbSubEdge 0)", avertissement,
     2},
    {face, "</Edge>", "</Edge><!-- ici -->",
     "5: face 1: la liste des edges s'arrete a un autre element", avertissement, 5},
    // References and what nothing refers to.
    {blck, "<SubFace>1<", "<SubFace>9999<", "3: bloc 1: face 9999 n'existe pas", erreur, 2},
    {blck, "<SubFace>1<([^]*?)<SubFace>2<", "<SubFace>2<$1<SubFace>1<",
     "3: bloc 1: coins dont les trois faces n'ont pas de sommet commun : (1,0,0) (0,1,0) (1,0,1) "
     "(0,1,1)",
     erreur},
    {blck, "<SubFace>1<", "<SubFace>4<", "24: face 4: sur 3 blocs", erreur, 2, face},
    {face, "<SubEdge>1<", "<SubEdge>9999<", "3: face 1: edge 9999 n'existe pas", erreur, 2},
    {edge, "<rmax>\\d+<", "<rmax>9999<", "3: edge 1: vertex 9999 n'existe pas", erreur, 3},
    {face, "</Faces>",
     "<Face><Ident>900</Ident><NumCaract>1</NumCaract><Type>4</Type><Edge><Numero>1</"
     "Numero><NbSubEdge>1</NbSubEdge><SubEdge>1</SubEdge></Edge><Edge><Numero>2</"
     "Numero><NbSubEdge>1</NbSubEdge><SubEdge>2</SubEdge></Edge><Edge><Numero>3</"
     "Numero><NbSubEdge>1</NbSubEdge><SubEdge>3</SubEdge></Edge><Edge><Numero>4</"
     "Numero><NbSubEdge>1</NbSubEdge><SubEdge>4</SubEdge></Edge></Face></Faces>",
     "259: face 900: sur aucun bloc", avertissement},
    {edge, "</Edges>",
     "<Edge><Ident>900</Ident><NumCaract>1</NumCaract><NbVertex>2</NbVertex><Vertices><rmin>1</"
     "rmin><rmax>2</rmax></Vertices></Edge></Edges>",
     "61: edge 900: sur aucune face", avertissement},
    {vrtx, "</Vertices>",
     "<Vertex><Ident>900</Ident><Coord><X>0</X><Y>0</Y><Z>0</Z></Coord></Vertex></Vertices>",
     "119: vertex 900: sur aucune edge", avertissement},
    // Values.
    {blck, "<Exact><Cell>[^<]*<", "<Exact><Cell>-1<", "3: bloc 1: volume Exact nul ou negatif : -1",
     erreur},
    {blck, "<Mor><Cell>[^<]*<", "<Mor><Cell>1000<",
     "3: bloc 1: volume Mor (1000) plus de 10 fois l'exact (1.03434)", avertissement},
    {blck, "<Type>\\d+<", "<Type>40<", "3: bloc 1: type 40 hors de 30 a 39", erreur},
    {face, "<BC>\\d+<", "<BC>777<", "3: face 1: code 777 inconnu de climite.cfg", erreur},
    // The scene against the configuration.
    {def, "<family>paroi_aile<", "<family>paroi_elle<",
     "16: piece aile: famille 'paroi_elle' qu'aucun code de climite.cfg ne porte", erreur},
    {def, "<family>paroi_carlingue<", "<family>paroi_coque<",
     "17: piece carlingue: famille 'paroi_coque' qu'aucun code de climite.cfg ne porte",
     avertissement},
    {def, "<family>paroi_aile<", "<family>paroi_dome<",
     "16: piece aile: famille 'paroi_dome' d'une piece en C qu'aucun bloc ne voit", avertissement},
    {def, "<special>[^\n]*</piece>", "<note/></piece>", "16: piece aile: note sans texte", erreur},
    {def, "<topologie>C<", "<topologie>X<", "16: piece aile: topologie inconnue : 'X'", erreur},
    {def, "<family>paroi_carlingue<", "<family>paroi_aile<",
     "17: piece carlingue: famille 'paroi_aile' deja prise ligne 16, cette piece est ignoree",
     erreur},
    {def, "<raccord><piece>aile<", "<raccord><piece>elle<",
     "20: raccord de rang 1: piece 'elle' n'existe pas", avertissement},
    {def, "<type>C90<", "<type>C60<", "20: raccord de rang 1: type de raccord inconnu : 'C60'",
     avertissement},
    // The configuration.
    {cfg, "\n101;1;", "\n101;",
     "2: code 101: ligne courte, les champs manquants gardent ceux de la ligne precedente", erreur,
     2},
    {cfg, "\n101;1;", "\n101;1;2;", "2: code 101: ligne longue, la configuration ne se charge pas",
     erreur},
    {cfg, "\n101;1;paroi_dessus;", "\n101;1;paroi_dessus",
     "2: code 101: dernier champ sans point-virgule", erreur},
    {cfg, "\n102;", "\n101;", "3: code 101: code deja donne ligne 2, celle-ci la remplace", erreur},
    {cfg, "\n101;1;", "\n101;20;", "2: code 101: BCCODE 20 qu'aucune colonne ne compte",
     avertissement},
    {cfg, "\n101;1;", "\n101;un;", "2: code 101: BCCODE n'est pas un entier : 'un'", erreur},
    {cfg, "\n101;1;", "\n101a;1;", "2: code 101a: Damas code n'est pas un entier", erreur},
    {cfg, "BCCODE;", "BCCODE;BCCODE;", "1: entete: colonne BCCODE donnee deux fois", erreur, 42},
    {cfg, "\n102;", "\n\n102;", "3: code: ligne vide", avertissement},
    {cfg, "^[^]*$", " ", "1: fichier: vide", erreur},
    {cfg, "BCCODE;", "BCCODE ;", "1: entete: pas de colonne BCCODE", erreur},
};

}  // namespace

TEST(Verifie, FindsNothingInCleanCases) {
  const Collection c;
  for (const char* mode : {"ext", "nrm", "min"}) {
    const Resultat r = topodata({"verifie", c.cas(), mode});
    EXPECT_EQ(r.sortie + r.erreur, "");
    EXPECT_EQ(r.statut, 0);
  }
}

TEST(Verifie, SaysEachFaultWhereItIs) {
  const Collection c;
  for (const Mutation& m : mutations) {
    const std::string avant = lire(c.cas() + m.fichier);
    ASSERT_TRUE(c.changer(m.fichier, m.motif, m.texte)) << m.motif;
    const Resultat r = topodata({"verifie", c.cas(), "nrm", "--bases", "mesh_case_2"});
    const std::string debut = c.cas() + m.ou + ":" + m.dit + "; ";
    const std::size_t place = ("\n" + r.sortie).find("\n" + debut);
    ASSERT_NE(place, std::string::npos) << m.motif << " -> " << m.texte << "\n" << r.sortie;
    const std::string ligne = r.sortie.substr(place, r.sortie.find('\n', place) - place);
    EXPECT_TRUE(ligne.ends_with(m.gravite == erreur ? " [erreur]" : " [avertissement]")) << ligne;
    EXPECT_EQ(std::ranges::count(r.sortie, '\n'), m.nb) << r.sortie;
    EXPECT_EQ(r.statut, r.sortie.find("[erreur]") == std::string::npos ? 1 : 2);
    ecrire(c.cas() + m.fichier, avant);
  }
}

TEST(Verifie, SaysFilesThatAreNone) {
  const Collection c;
  namespace fs = std::filesystem;
  for (const char* fichier : {cfg, blck}) {
    const fs::path chemin = c.cas() + fichier;
    const std::pair<const char*, std::function<void()>> lignes[] = {
        {"absent", [] {}},
        {"dossier au lieu", [&] { fs::create_directory(chemin); }},
        {"lien qui tourne", [&] { fs::create_symlink(chemin.filename(), chemin); }},
        {"tube ou periph", [&] { fs::create_symlink("/dev/null", chemin); }}};
    for (const auto& [dit, mettre] : lignes) {
      fs::remove(chemin);
      mettre();
      const std::string sortie = topodata({"verifie", c.cas(), "nrm"}).sortie;
      EXPECT_NE(sortie.find(chemin.string() + ":1: fichier: " + dit), std::string::npos) << sortie;
    }
  }
}

TEST(Verifie, SortsByBaseFileAndLineAndCounts) {
  const Collection c;
  ASSERT_TRUE(c.changer("mesh_case_3/mesh_case_3_nrm.vrtx", "<Z>[^<]*<", "<Z><"));
  ASSERT_TRUE(c.changer(vrtx, "<Ident>1<", "<Ident>x<"));
  ASSERT_TRUE(c.changer(blck, "<Exact><Cell>[^<]*<", "<Exact><Cell>0<"));
  ASSERT_TRUE(c.changer(cfg, "\n101;1;", "\n101;20;"));
  std::filesystem::remove_all(c.cas() + "mesh_case_8");
  const Resultat r = topodata({"verifie", c.cas(), "nrm"});
  EXPECT_EQ(r.statut, 2);
  EXPECT_TRUE(
      r.sortie.starts_with(c.cas() +
                           "climite.cfg:2: code 101: BCCODE 20 qu'aucune colonne ne compte; "
                           "prendre 1 a 13 ou 9999 s'il doit compter [avertissement]\n" +
                           c.cas() + blck + ":3: bloc 1: volume Exact"))
      << r.sortie;
  std::size_t place = 0;
  for (const char* dit :
       {blck, edge, vrtx, "mesh_case_3_nrm.vrtx:3: vertex 1: Z sans texte",
        "mesh_case_8.def:1: fichier: absent", "mesh_case_8_nrm.vrtx:1: fichier"}) {
    const std::size_t suivante = r.sortie.find(dit, place);
    EXPECT_NE(suivante, std::string::npos) << dit << " out of order in\n" << r.sortie;
    place = std::max(place, std::min(suivante, r.sortie.size()));
  }
  EXPECT_TRUE(r.erreur.ends_with(", 1 avertissement(s)\n")) << r.erreur;
}
