#include <gtest/gtest.h>
#include <tinyxml.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <sstream>

#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"
#include "tests/support/cas.h"

using namespace topomine;

// What a document that TinyXML reads must have, and what the program says when it has not.

namespace {

struct Lecteur {
  const char* signature;
  Marche marche;
  std::string (*document)(const Base&);
  const char* entite;  // path to the entity that loses something; "*" is the last child
  const char* textes;  // paths in it to texts that must be, and their elements too: fault "node"
};

// In a path "Face+" is the second element of that name.
const Lecteur plane{"bool Base::load_plane()", parcourir_plane, xml_scene,
                    "definition_scene/reference_avion",
                    "name family fuse_length fuse_width height wing_span corde wing_area sweep "
                    "nb_engine"};
const Lecteur pieces{"bool Base::load_scene()", parcourir_scene, xml_scene,
                     "definition_scene/liste_pieces/*", "nom family topologie"};
const Lecteur raccords{"bool Base::load_scene()", parcourir_scene, xml_scene,
                       "definition_scene/liste_raccords/*", "type"};
const Lecteur blocs{"bool Base::load_blocs()", parcourir_blocs, xml_blocs, "Blocks/*",
                    "Ident Type Erikson/Cell Volumes/Exact/Cell Volumes/Mor/Cell "
                    "Volumes/Moyen/Cell Volumes/NSMB/Cell Faces/Face+/Numero "
                    "Faces/Face+/NbSubFace Faces/Face+/SubFace"};
const Lecteur faces{"bool Base::load_faces()", parcourir_faces, xml_faces, "Faces/*",
                    "Ident NumCaract Type Edge+/Numero Edge+/NbSubEdge Edge/SubEdge"};
const Lecteur edges{"bool Base::load_edges()", parcourir_edges, xml_edges, "Edges/*",
                    "Ident NumCaract NbVertex Vertices/rmin Vertices/rmax"};
const Lecteur vrtxs{"bool Base::load_vrtxs()", parcourir_vrtxs, xml_vrtxs, "Vertices/*",
                    "Ident Coord/X Coord/Y Coord/Z Proj/Famille Proj/Coord/Z Proj+/Normale/X"};

enum Essai { texte = 1, element = 2, les_deux = 3 };  // what is taken away, one run for each

const char* const spe = "node->FirstChild()->Value()";
const char* const pc = "node->FirstChild()";

const struct {
  const Lecteur& lecteur;
  const char *chemin, *expr;
  int essais;
} autres[] = {{plane, "", "avion", element},
              {pieces, "special+", spe, texte},
              {raccords, "piece", pc, les_deux},
              {raccords, "autre", pc, texte},
              {blocs, "Erikson", "node", element},
              {blocs, "Volumes", "volm", element},
              {blocs, "Volumes/Exact", "node", element},
              {blocs, "Faces", "facs", element},
              {blocs, "Faces/Face", "face", element},
              {faces, "Boundary_Conditions/*", "node", texte},
              {faces, "Surfaces/*", "node", texte},
              {faces, "Edge", "hnode", element},
              {edges, "Boundary_Conditions/*", "node", texte},
              {edges, "Vertices", "node", element},
              {vrtxs, "Coord", "node", element},
              {vrtxs, "Proj/Normale", "node", element}};

// A document whose last entities have all that can be taken away.
std::string document(const Lecteur& lecteur) {
  Base b = grille("boite", {2, 1, 1}).base;
  b.faces.rbegin()->second.add_BC(3);
  b.faces.rbegin()->second.add_surf(4);
  b.edges.rbegin()->second.add_BC(5);
  for (int k : {1, 2}) b.vrtxs.rbegin()->second.add_proj_pt(k, 1, 2, 3, 4, 5, 6);
  b.raccords.push_back(b.raccords[0]);
  return lecteur.document(b);
}

TiXmlNode* atteindre(TiXmlNode* n, const std::string& chemin) {
  std::istringstream noms(chemin);
  for (std::string nom; n && std::getline(noms, nom, '/');) {
    const bool second = nom.back() == '+';
    if (second) nom.pop_back();
    n = nom == "*" ? n->LastChild() : n->FirstChild(nom.c_str());
    if (n && second) n = n->NextSibling(nom.c_str());
  }
  return n;
}

std::string litteral(const std::string& s) {
  std::string motif;
  for (char c : s) motif += std::string(std::strchr("().*[]+?", c) ? "\\" : "") + c;
  return motif;
}

// The walk ends the program after a message that names all of this, in this order.
void exiger_faute(const Lecteur& lecteur, const TiXmlDocument& doc, const std::string& expr,
                  const std::string& entite) {
  EXPECT_EXIT(
      {
        Base b;
        b._disp(false);
        lecteur.marche(b, doc, "fichier.essai", console());
      },
      testing::KilledBySignal(SIGABRT),
      "base.*" + litteral(lecteur.signature) + ".*" + litteral(expr) + ".*fichier\\.essai.*" +
          entite);
}

void essayer(const Lecteur& lecteur, const std::string& chemin, const char* expr, Essai essai) {
  SCOPED_TRACE(lecteur.signature + (' ' + chemin + ' ') + std::to_string(essai));
  TiXmlDocument doc;
  ASSERT_TRUE(analyser_xml(document(lecteur), doc));
  TiXmlNode* entite = atteindre(&doc, lecteur.entite);
  TiXmlNode* n = entite ? atteindre(entite, chemin) : nullptr;
  ASSERT_TRUE(n);
  // An entity is named by its rank as long as it has no number.
  std::string nom;
  if (entite->FirstChild("Ident") && chemin != "Ident") {
    nom = "\\b" + entite->FirstChild("Ident")->FirstChild()->ValueStr() + "\\b";
  } else if (lecteur.entite[std::strlen(lecteur.entite) - 1] == '*') {
    int rang = 1;
    for (const TiXmlNode* p = entite; (p = p->PreviousSibling());) ++rang;
    nom = "\\b" + std::to_string(rang) + "\\b";
  }
  if (essai == texte) {
    n->Clear();
  } else {
    TiXmlNode* parent = n->Parent();
    const std::string valeur = n->Value();
    while (TiXmlNode* enfant = parent->FirstChild(valeur.c_str())) parent->RemoveChild(enfant);
  }
  exiger_faute(lecteur, doc, expr, nom);
}

TEST(FautesDeathTest, EachIsNamedAndEndsByAbort) {
  for (const Lecteur& l : {plane, pieces, raccords, blocs, faces, edges, vrtxs}) {
    std::istringstream chemins(l.textes);
    for (std::string chemin; chemins >> chemin;)
      for (Essai essai : {texte, element}) essayer(l, chemin, "node", essai);
  }
  for (const auto& l : autres)
    for (Essai essai : {texte, element})
      if (l.essais & essai) essayer(l.lecteur, l.chemin, l.expr, essai);
}

TEST(FautesDeathTest, AMissingTopElementOrList) {
  const auto sans = [](const Lecteur& l, const std::string& xml) {
    TiXmlDocument doc;
    ASSERT_TRUE(analyser_xml(xml, doc));
    exiger_faute(l, doc, "", "");
  };
  for (const Lecteur& l : {plane, pieces, blocs, faces, edges, vrtxs})
    sans(l, "<Autre><Blocks/></Autre>");
  for (const char* liste : {"liste_pieces", "liste_raccords"})
    sans(pieces, el("definition_scene", el(liste)));
}

// The parser loads a document without any element when there is something else in it.
TEST(FautesDeathTest, ADocumentWithoutElement) {
  for (const char* xml :
       {"<?xml version='1.0'?>", "<!-- vide -->\n", "<!DOCTYPE x>", "<!-- --> texte <Blocks/>"}) {
    const Dossier d;
    d.ecrire("n/n_nrm.blck", xml);
    d.ecrire("n/n.def", xml);
    for (const auto charger : {&Base::load_blocs, &Base::load_plane, &Base::load_scene})
      EXPECT_EXIT(
          {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            Base b("n", d.chemin(), "nrm");
            b.gen_nom_base();
            (b.*charger)();
          },
          testing::KilledBySignal(SIGABRT), "parsing fichier .* done. \nbase: .*absent ou vide")
          << xml;
  }
}

// Every child of a list is an entity, and a text is the first child node, comments included.
TEST(FautesDeathTest, ACommentInTheWrongPlace) {
  const struct {
    const Lecteur& lecteur;
    const char* avant;  // where the comment goes: before the first such text
    const char* expr;
  } places[] = {{blocs, "<Block>", "node"}, {blocs, "</Faces>", "node"},
                {faces, "<Item>", "node"},  {vrtxs, "</Vertices>", "node"},
                {pieces, "</piece>", spe},  {raccords, "<autre>", pc}};
  for (const auto& p : places) {
    SCOPED_TRACE(std::string(p.lecteur.signature) + ' ' + p.avant);
    std::string xml = document(p.lecteur);
    xml.insert(xml.find(p.avant), "<!-- 5 -->");
    TiXmlDocument doc;
    ASSERT_TRUE(analyser_xml(xml, doc));
    exiger_faute(p.lecteur, doc, p.expr, "");
  }
}

}  // namespace
