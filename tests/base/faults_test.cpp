#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <sstream>

#include "base/xml_walk.h"
#include "tests/support/cas.h"

// What a document that TinyXML reads must have, and what the program says when it has not.

namespace {

struct Lecteur {
  const char* signature;
  Marche marche;
  std::string (*document)(const Base&);
  const char* entites;  // path to the element that holds the entities, "" for none
  const char* nommee;   // number of the last entity, "" where entities have none
};

const Lecteur plane{"bool Base::load_plane()", walk_plane, xml_scene, "", ""};
const Lecteur pieces{"bool Base::load_scene()", walk_scene, xml_scene,
                     "definition_scene/liste_pieces", ""};
const Lecteur raccords{"bool Base::load_scene()", walk_scene, xml_scene,
                       "definition_scene/liste_raccords", ""};
const Lecteur blocs{"bool Base::load_blocs()", walk_blocs, xml_blocs, "Blocks", "90"};
const Lecteur faces{"bool Base::load_faces()", walk_faces, xml_faces, "Faces", "112"};
const Lecteur edges{"bool Base::load_edges()", walk_edges, xml_edges, "Edges", "321"};
const Lecteur vrtxs{"bool Base::load_vrtxs()", walk_vrtxs, xml_vrtxs, "Vertices", "713"};

enum Essai { texte = 1, element = 2, les_deux = 3 };  // what is taken away, one run for each

struct Ligne {
  const Lecteur& lecteur;
  const char* chemin;  // in the last entity
  const char* expr = "node";
  int essais = les_deux;
};

const char* const spe = "node->FirstChild()->Value()";
const char* const pc = "node->FirstChild()";

const Ligne lignes[] = {{plane, "definition_scene/reference_avion", "avion", element},
                        {plane, "definition_scene/reference_avion/name"},
                        {plane, "definition_scene/reference_avion/family"},
                        {plane, "definition_scene/reference_avion/fuse_length"},
                        {plane, "definition_scene/reference_avion/fuse_width"},
                        {plane, "definition_scene/reference_avion/height"},
                        {plane, "definition_scene/reference_avion/wing_span"},
                        {plane, "definition_scene/reference_avion/corde"},
                        {plane, "definition_scene/reference_avion/wing_area"},
                        {plane, "definition_scene/reference_avion/sweep"},
                        {plane, "definition_scene/reference_avion/nb_engine"},
                        {pieces, "nom"},
                        {pieces, "family"},
                        {pieces, "topologie"},
                        {pieces, "special+", spe, texte},
                        {raccords, "piece", pc},
                        {raccords, "autre", pc, texte},
                        {raccords, "type"},
                        {blocs, "Ident"},
                        {blocs, "Type"},
                        {blocs, "Erikson", "node", element},
                        {blocs, "Erikson/Cell"},
                        {blocs, "Volumes", "volm", element},
                        {blocs, "Volumes/Exact", "node", element},
                        {blocs, "Volumes/Exact/Cell"},
                        {blocs, "Volumes/Mor/Cell"},
                        {blocs, "Volumes/Moyen/Cell"},
                        {blocs, "Volumes/NSMB/Cell"},
                        {blocs, "Faces", "facs", element},
                        {blocs, "Faces/Face", "face", element},
                        {blocs, "Faces/Face+/Numero"},
                        {blocs, "Faces/Face+/NbSubFace"},
                        {blocs, "Faces/Face+/SubFace"},
                        {faces, "Ident"},
                        {faces, "NumCaract"},
                        {faces, "Type"},
                        {faces, "Boundary_Conditions/Item", "node", texte},
                        {faces, "Surfaces/Item", "node", texte},
                        {faces, "Edge", "hnode", element},
                        {faces, "Edge+/Numero"},
                        {faces, "Edge+/NbSubEdge"},
                        {faces, "Edge/SubEdge"},
                        {edges, "Ident"},
                        {edges, "NumCaract"},
                        {edges, "Boundary_Conditions/Item", "node", texte},
                        {edges, "NbVertex"},
                        {edges, "Vertices", "node", element},
                        {edges, "Vertices/rmin"},
                        {edges, "Vertices/rmax"},
                        {vrtxs, "Ident"},
                        {vrtxs, "Coord", "node", element},
                        {vrtxs, "Coord/X"},
                        {vrtxs, "Coord/Y"},
                        {vrtxs, "Coord/Z"},
                        {vrtxs, "Proj/Famille"},
                        {vrtxs, "Proj/Coord/Z"},
                        {vrtxs, "Proj/Normale", "node", element},
                        {vrtxs, "Proj+/Normale/X"}};

// Two blocks or more, whose last entities have all that a line of the table can take away.
Base base_complete() {
  Base b = grille("boite", {2, 1, 1}).base;
  b.faces.erase(b.faces.upper_bound(112), b.faces.end());
  b.faces[112]._id(112);
  for (int i = 0; i < 4; ++i) b.faces[112]._edge(i, 301 + i);
  b.faces[112].add_BC(3);
  b.faces[112].add_surf(4);
  b.edges[321]._id(321);
  b.edges[321].add_BC(5);
  b.vrtxs[713]._id(713);
  for (int k : {1, 2}) b.vrtxs[713].add_proj_pt(k, 1, 2, 3, 4, 5, 6);
  b.raccords.push_back(b.raccords[0]);
  return b;
}

// Element at the end of a path, the second of its name where the name has a "+".
TiXmlNode* atteindre(TiXmlNode* n, const std::string& chemin) {
  std::istringstream noms(chemin);
  for (std::string nom; n && std::getline(noms, nom, '/');) {
    const bool second = nom.back() == '+';
    if (second) nom.pop_back();
    n = n->FirstChild(nom.c_str());
    if (n && second) n = n->NextSibling(nom.c_str());
  }
  return n;
}

std::string litteral(const std::string& s) {
  std::string motif;
  for (char c : s) motif += std::string(std::strchr("().*[]+?", c) ? "\\" : "") + c;
  return motif;
}

// The document of line l with one thing taken away, and the rank of the last entity; -1 when the
// line does not fit the document.
int abimer(const Ligne& l, Essai essai, TiXmlDocument& doc) {
  if (!analyser_xml(l.lecteur.document(base_complete()), doc)) return -1;
  TiXmlNode* depart = atteindre(&doc, l.lecteur.entites);
  int rang = 0;
  if (depart && *l.lecteur.entites) {
    for (const TiXmlNode* n = depart->FirstChild(); n; n = n->NextSibling()) ++rang;
    depart = depart->LastChild();
  }
  TiXmlNode* n = depart ? atteindre(depart, l.chemin) : nullptr;
  if (!n) return -1;
  if (essai == texte) {
    n->Clear();
    return rang;
  }
  TiXmlNode* parent = n->Parent();
  const std::string nom = n->Value();
  while (TiXmlNode* enfant = parent->FirstChild(nom.c_str())) parent->RemoveChild(enfant);
  return rang;
}

// `marche` on `doc` ends the program after a message that names all of this, in this order.
void exiger_faute(const Lecteur& lecteur, const TiXmlDocument& doc, const std::string& expr,
                  const std::string& entite) {
  EXPECT_EXIT(
      {
        Base b;
        b._disp(false);
        lecteur.marche(b, doc, "fichier.essai");
      },
      testing::KilledBySignal(SIGABRT),
      "base.*" + litteral(lecteur.signature) + ".*" + litteral(expr) + ".*fichier\\.essai.*" +
          entite);
}

TEST(FautesDeathTest, EachIsNamedAndEndsByAbort) {
  for (const Ligne& l : lignes)
    for (Essai essai : {texte, element}) {
      if (!(l.essais & essai)) continue;
      SCOPED_TRACE(std::string(l.lecteur.signature) + ' ' + l.chemin + ' ' + std::to_string(essai));
      TiXmlDocument doc;
      const int rang = abimer(l, essai, doc);
      ASSERT_GE(rang, 0);
      // An entity is named by its rank as long as it has no number.
      const bool sans_numero = !*l.lecteur.nommee || std::string_view(l.chemin) == "Ident";
      exiger_faute(l.lecteur, doc, l.expr,
                   !rang         ? ""
                   : sans_numero ? "\\b" + std::to_string(rang) + "\\b"
                                 : std::string("\\b") + l.lecteur.nommee + "\\b");
    }
}

TEST(FautesDeathTest, AMissingTopElementOrList) {
  for (const Lecteur& l : {plane, pieces, blocs, faces, edges, vrtxs}) {
    TiXmlDocument doc;
    ASSERT_TRUE(analyser_xml("<Autre><Blocks/></Autre>", doc));
    exiger_faute(l, doc, "", "");
  }
  for (const char* liste : {"liste_pieces", "liste_raccords"}) {
    TiXmlDocument doc;
    ASSERT_TRUE(analyser_xml(el("definition_scene", el(liste, "")), doc));
    exiger_faute(pieces, doc, "", "");
  }
}

// Every child of a list is an entity, and a text is the first child node, comments included.
TEST(FautesDeathTest, ACommentInTheWrongPlace) {
  struct {
    const Lecteur& lecteur;
    const char* avant;  // where the comment goes: before the first such text
    const char* expr;
  } const places[] = {
      {blocs, "<Block>", "node"}, {blocs, "</Faces>", "node"},    {edges, "</Boundary", "node"},
      {faces, "<Item>", "node"},  {vrtxs, "</Vertices>", "node"}, {pieces, "<piece>", "node"},
      {pieces, "</piece>", spe},  {raccords, "<autre>", pc},      {raccords, "</liste_r", pc}};
  for (const auto& p : places) {
    SCOPED_TRACE(std::string(p.lecteur.signature) + ' ' + p.avant);
    std::string xml = p.lecteur.document(base_complete());
    xml.insert(xml.find(p.avant), "<!-- 5 -->");
    TiXmlDocument doc;
    ASSERT_TRUE(analyser_xml(xml, doc));
    exiger_faute(p.lecteur, doc, p.expr, "");
  }
}

}  // namespace
