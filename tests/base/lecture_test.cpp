#include <gtest/gtest.h>
#include <tinyxml.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"
#include "tests/support/capture.h"
#include "tests/support/cas.h"

using namespace topomine;

namespace {

// Elements stand in another order than they are read.
std::string bloc(const std::string& ident, const std::string& type, const std::string& erik,
                 const std::string& cases) {
  const auto cell = [](const char* nom, int v) { return el(nom, el("Cell", v)); };
  return el("B", el("Faces", cases), el("Type", type), el("Ident", ident),
            el("Volumes", cell("NSMB", 4), cell("Moyen", 3), cell("Mor", 2), cell("Exact", 1)),
            el("Erikson", el("Cell", erik)));
}

std::string place(const std::string& nom, const std::string& numero, int nb,
                  const std::string& sous, const std::string& v = "") {
  return el(nom, el("Sub" + sous, v), el("NbSub" + sous, nb), el("Numero", numero));
}

std::string place_face(const std::string& numero, int nb, const std::string& v = "") {
  return place("Face", numero, nb, "Face", v);
}

std::string edge(int ident, const char* nb, int carac = 1) {
  return el("E", el("Vertices", el("rmax", 72), el("rmin", 71)), el("NbVertex", nb),
            el("NumCaract", carac), el("Ident", ident));
}

const std::string sousfaces = "base comportant des sousfaces mulitples ou negatives....\n";

struct Reponse {
  bool resultat;
  std::string out, err;
};

Reponse lire(Marche marche, const std::string& xml, Base& b) {
  TiXmlDocument doc;
  EXPECT_TRUE(analyser_xml(xml, doc)) << xml;
  const Capture c;
  const bool resultat = marche(b, doc, "f.essai", console());
  return {resultat, c.out(), c.err()};
}

TEST(Blocs, SubFaceRuleAndSlots) {
  Base b;
  const std::string cases = place_face("6", 1, "60") + place_face("1", 0, "99") +
                            place_face("2", 3) + place("Autre", "4", -1, "Face");
  const std::string xml = el("Blocks", bloc("7", "30", "0.5", cases), bloc("3", "31", "1", cases));
  const Reponse r = lire(parcourir_blocs, xml, b);
  EXPECT_TRUE(r.resultat);
  EXPECT_EQ(r.out, "save bloc 7 ... done.\nsave bloc 3 ... done.\n");
  EXPECT_EQ(r.err, sousfaces + sousfaces + sousfaces + sousfaces);
  ASSERT_EQ(b.blocs.size(), 2U);
  std::vector<int> cases_lues;
  for (int s = 0; s < 6; ++s) cases_lues.push_back(b.blocs[7]._face(s));
  EXPECT_EQ(cases_lues, (std::vector<int>{0, 3, 0, -1, 0, 60}));

  // Entries are added or replaced, and nothing shows when the output is off.
  b._disp(false);
  const std::string seule = place_face("1", 1, "11");
  EXPECT_EQ(
      lire(parcourir_blocs, el("Blocks", bloc("3", "5", "1", cases), bloc("3", "6", "1", seule)), b)
          .out,
      "");
  EXPECT_TRUE(lire(parcourir_blocs, "<Blocks/>", b).resultat);
  EXPECT_TRUE(b.blocs.size() == 2 && b.blocs[3]._type() == 6 && b.blocs[3]._face(0) == 11);
  EXPECT_EQ(b.blocs[3]._face(5), 0) << "the work record is cleared between blocks";
}

TEST(Blocs, ASlotNumberedOutsideOneToSixIsIgnoredWithAWarning) {
  for (const char* numero : {"0", "7", "2147483647", "-2147483648"}) {
    Base b;
    const std::string xml =
        el("Blocks", bloc("42", "30", "1", place_face(numero, 3) + place_face("2", 1, "5")));
    const Reponse r = lire(parcourir_blocs, xml, b);
    EXPECT_EQ(r.out, "save bloc 42 ... done.\n");
    EXPECT_EQ(r.err, sousfaces + "Attention au bloc 42, Numero de face " + numero +
                         " hors de 1 \340 6 : case ignor\351e\n");
    for (int s = 0; s < 6; ++s) EXPECT_EQ(b.blocs[42]._face(s), s == 1 ? 5 : 0) << numero;
  }
  // A text that is no number stays in the way, and the numbers before it are taken again.
  Base b;
  std::string xml = el("Blocks", bloc("42", "34", "0.5", place_face("1", 1, "9")));
  xml.replace(xml.find("<Cell>1<"), 8, "<Cell>abc<");
  EXPECT_TRUE(lire(parcourir_blocs, xml, b).resultat);
  EXPECT_TRUE(b.blocs[42]._volexa() == 0.5 && b.blocs[42]._volnsm() == 0.5);
}

// One conversion per reading: what fails keeps the last number of its kind, whatever the field;
// what a read does not take stays ahead of the next text.
TEST(Blocs, TextsThatAreNotWhollyANumber) {
  struct {
    const char *type, *erik;
    int type_lu;
    double erik_lu;
  } const lignes[] = {{"-", "-", 42, 4},
                      {" 31 ", "\n.5", 31, 0.5},
                      {"1.5", "2", 1, 0.52},
                      {"9999999999", "1e999", 42, 4},
                      {"<!-- 33 -->x", "1", 33, 1},
                      {"<![CDATA[7]]>", "1", 7, 1}};
  for (const auto& l : lignes) {
    Base b;
    const std::string cases = place_face("1", 0);
    lire(parcourir_blocs,
         el("Blocks", bloc("9", "30", "1", cases), bloc("42", l.type, l.erik, cases)), b);
    EXPECT_EQ(b.blocs[42]._type(), l.type_lu) << l.type;
    EXPECT_EQ(b.blocs[42]._erik(), l.erik_lu) << l.type << ' ' << l.erik;
  }
}

TEST(Faces, ListsSlotsAndTheEndOfTheEdges) {
  Base b;
  const auto cote = [](const char* nom, const char* numero, int nb, const char* v) {
    return place(nom, numero, nb, "Edge", v);
  };
  const auto face = [](int ident, const std::string& reste) {
    return el("F", el("Type", 2), el("NumCaract", 1), el("Ident", ident), reste);
  };
  const std::string codes =
      el("Surfaces", el("S", 6)) + el("Boundary_Conditions", el("a", 12), el("b", 12));
  const std::string xml =
      el("Faces",
         face(10, codes + cote("Edge", "2", 1, "32") + cote("Edges", "5", 1, "35") +
                      cote("Edge2", "0", 2, "")),
         face(11, cote("Edge", "1", 0, "") + el("Info", "x") + cote("Edge", "2", 1, "9")),
         face(12, cote("Edge", "1", -1, "") + "<!--fin-->"),
         face(13, cote("Edge", "1", 1, "3") + "<Edg/>"));
  const Reponse r = lire(parcourir_faces, xml, b);
  EXPECT_TRUE(r.resultat);
  EXPECT_EQ(r.out,
            "save face 10 ... done.\nfin des edges... avec value = Info\nsave face 11 ... done.\n"
            "fin des edges... avec value = fin\nsave face 12 ... done.\n"
            "fin des edges... avec value = Edg\nsave face 13 ... done.\n");
  const std::string sousedges = "base comportant des sousedges multiples ou negatives....\n";
  EXPECT_EQ(r.err, sousedges + sousedges);
  const Face dix = b.faces[10];
  EXPECT_TRUE(dix._BC(0) == 12 && dix._BC(1) == 12 && dix.nb_BC() == 2 && dix._surf(0) == 6);
  EXPECT_TRUE(dix.nb_edge() == 6 && dix._edge(1) == 32 && dix._type() == 2 && dix._carac() == 1);
  // The edges beyond the fourth live on in the work record; the four slots and the lists do not.
  for (const auto& [n, edge_0] : {std::pair{11, 0}, {12, -1}, {13, 3}}) {
    const Face f = b.faces[n];
    EXPECT_TRUE(f.nb_edge() == 6 && f._edge(4) == 35 && f._edge(5) == 2) << n;
    EXPECT_EQ(f._edge(0), edge_0);
    EXPECT_EQ(f._edge(1), 0) << "an element after the end of the edges is not read";
    EXPECT_EQ(f.nb_BC() + f.nb_surf(), 0);
  }
}

TEST(Faces, MoreEdgesThanAnyFaceHasFailTheFile) {
  std::string cases;
  for (int i = 0; i < 996; ++i) cases += place("Edge", "0", 0, "Edge");
  const auto face = [](int ident, const std::string& reste) {
    return el("F", el("Ident", ident), el("NumCaract", 1), el("Type", 2), reste);
  };
  Base b;
  const std::string une = place("Edge", "0", 0, "Edge");
  const Reponse r = lire(parcourir_faces, el("Faces", face(10, cases), face(11, une)), b);
  EXPECT_TRUE(!r.resultat && b.faces[10].nb_edge() == 1000 && !b.faces.contains(11));
  EXPECT_EQ(r.err, "Erreur avec la face 11, plus de 1000 edges ...\n");
}

// A text ends at its first NUL, whatever follows it.
TEST(Textes, EndAtTheFirstNul) {
  for (const char* nul : {"&#0;", "&#256;"}) {
    const std::string n(nul), xml = "<?xml version='1.0' encoding='ISO-8859-1'?>";
    Base b;
    lire(parcourir_blocs,
         xml + el("Blocks", bloc("42", "31" + n + "9", "2.5" + n, place_face("1" + n, 1, "7" + n))),
         b);
    EXPECT_TRUE(b.blocs[42]._type() == 31 && b.blocs[42]._erik() == 2.5);
    EXPECT_TRUE(b.blocs[42]._volnsm() == 4 && b.blocs[42]._face(0) == 7);
    const std::string faces = el("Faces", el("F", el("Ident", 1), el("NumCaract", 1), el("Type", 2),
                                             place("Edge", "1", 0, "Edge"), "fin" + n + "suite"));
    EXPECT_EQ(lire(parcourir_faces, xml + faces, b).out,
              "fin des edges... avec value = fin\nsave face 1 ... done.\n");
    const std::string piece =
        el("p", el("nom", "P" + n + "x"), el("family", "f" + n + "x"), el("topologie", "C"),
           el("special", "A"), el("special", "B" + n + "x"));
    const std::string scene =
        el("definition_scene", el("liste_pieces", piece), el("liste_raccords"));
    lire(parcourir_scene, xml + scene, b);
    EXPECT_EQ(sortie([&] { b.Print(6, false); }),
              "Piece : P (f) , topologie en C\n   particualrit\351s : B   \n\n");
    EXPECT_TRUE(b.pieces.contains("f"));
  }
}

TEST(Edges, OtherThanTwoVerticesEndsTheReading) {
  Base b;
  const Reponse r = lire(parcourir_edges, el("Edges", edge(4, "2"), edge(5, "3"), edge(6, "2")), b);
  EXPECT_FALSE(r.resultat);
  EXPECT_EQ(r.out, "save edge 4 ... done.\n");
  EXPECT_EQ(r.err, "Erreur avec l'edge 5 ...\n");
  ASSERT_EQ(b.edges.size(), 1U);
  EXPECT_TRUE(b.edges[4]._vrtx(0) == 71 && b.edges[4]._vrtx(1) == 72);
  // A count that does not parse is the integer before it: here the characteristic number.
  EXPECT_TRUE(lire(parcourir_edges, el("Edges", edge(6, "-", 2)), b).resultat);
  EXPECT_EQ(lire(parcourir_edges, el("Edges", edge(7, "-")), b).err, "Erreur avec l'edge 7 ...\n");
}

TEST(Vrtxs, ProjectionsGoOnAsLongAsTheNameBegins) {
  const auto xyz = [](const char* nom, const char* x, const char* y, const char* z) {
    return el(nom, el("Z", z), el("X", x), el("Y", y));
  };
  const auto proj = [&](const char* nom, int fam) {
    return el(nom, xyz("Normale", "0", "0", "1"), xyz("Coord", "4", "5", "6"), el("Famille", fam));
  };
  Base b;
  const std::string xml =
      el("Vertices",
         el("V", el("Ident", 1), xyz("Coord", "1", "-2.5", "3e2"), proj("Proj", 8),
            proj("Projection", 9), "<Info/>", proj("Proj", 10)),
         el("V", xyz("Coord", "1", "1", "1"), el("Ident", 2)));
  EXPECT_EQ(lire(parcourir_vrtxs, xml, b).out,
            "save vertex 1 ... done.\nsave vertex 2 ... done.\n");
  const std::string vu = sortie([&] { b.vrtxs[1].Print(); });
  EXPECT_TRUE(vu.starts_with("Vertex 1\nCoordonn\351es (1,-2.5,300)\nNb projections : 2\n")) << vu;
  EXPECT_NE(vu.find("     Fam_surf : 9\n     Coordonn\351es  (4,5,6)\n     Normale      (0,0,1)\n"),
            std::string::npos);
  EXPECT_EQ(b.vrtxs[2].nb_proj(), 0);
}

TEST(Scene, SpecialsTopologiesAndFamilies) {
  const auto piece = [](const char* nom, const char* fam, const char* topo,
                        const std::string& reste) {
    return el("p", el("nom", nom), el("family", fam), el("topologie", topo), reste);
  };
  const auto raccord = [](const char* type, const char* autre) {
    return el("r", el("type", type), el("piece", "P1"), el(autre, "P2"));
  };
  const std::string ouvre = el("special", "A");
  Base b;
  const std::string xml =
      el("definition_scene",
         el("liste_pieces", piece("un", "f1", " h", ouvre + el("special", "B") + el("n", " C c ")),
            piece("deux", "f2", "HO", ouvre), piece("trois", "f3", "C", ""),
            piece("autre", "f1", "C", ouvre), piece("x", "f4", "x", ouvre)),
         el("liste_raccords", raccord("c45x", "piece"), raccord("C90", "nom"), raccord("C60", "z"),
            raccord("c9", "z")));
  EXPECT_TRUE(lire(parcourir_scene, xml, b).resultat);
  // "HO" leaves its O to the third piece, whose C the fourth reads, and so on.
  EXPECT_EQ(sortie([&] { b.Print(6, false); }),
            "Piece : un (f1) , topologie en H\n   particualrit\351s : B   C c   \n\n"
            "Piece : deux (f2) , topologie en H\n\n"
            "Piece : trois (f3) , topologie en O\n   particualrit\351s : trois   f3   C   \n\n"
            "Piece : x (f4) , topologie en C\n\n");
  EXPECT_EQ(
      sortie([&] { b.Print(7, false); }),
      "Raccord P1 // P2 : C45\nRaccord P1 // P2 : C90\nRaccord P1 // P2 : \nRaccord P1 // P2 : \n");
  Piece p = b.pieces["f3"];
  EXPECT_EQ(p._topology('x'), 'O') << "any other letter leaves it";
  p.clear();
  EXPECT_EQ(sortie([&] { p.Print(); }),
            "Piece :  (f3) , topologie en " + std::string(1, '\0') + "\n\n");
}

TEST(Scene, TheAircraftIsListedInItsOrder) {
  Base b;
  const Reponse r = lire(parcourir_plane, xml_scene(grille("3", {1, 1, 1}).base), b);
  EXPECT_EQ(r.out + r.err, "");
  EXPECT_EQ(sortie([&] { b.avion.Print(); }),
            "R\351f\351rences Avion\n Nom     : A 3\n Famille : avion\n Longueur : 1.5\n"
            " Envirgure: 2.5\n Hauteur  : 3.5\n Span voilure : 4.5\n Surf Voilure : 6.5\n"
            " Corde : 5.5\n Sweep : 7.5\n Nb moteur : 2\n\n");
}

// --- Files that cannot be loaded

struct Chargeur {
  const char* suite;
  bool (Base::*charger)();
  const char* avant_echec;
  std::string (*document)(const Base&);
};

const Chargeur chargeurs[] = {{".def", &Base::load_plane, "\n", xml_scene},
                              {".def", &Base::load_scene, "\n", xml_scene},
                              {"_nrm.blck", &Base::load_blocs, "", xml_blocs},
                              {"_nrm.face", &Base::load_faces, "\n", xml_faces},
                              {"_nrm.edge", &Base::load_edges, "\n", xml_edges},
                              {"_nrm.vrtx", &Base::load_vrtxs, "\n", xml_vrtxs}};

void exiger_echec(const Chargeur& c, const Dossier& d) {
  Base b("n", d.chemin(), "nrm");
  b.gen_nom_base();
  const Capture capture;
  EXPECT_FALSE((b.*c.charger)());
  EXPECT_EQ(capture.out(), "parsing fichier " + b.nom_base + c.suite + " ... " + c.avant_echec +
                               "probleme de lecture du fichier\n");
  EXPECT_EQ(b.blocs.size() + b.faces.size() + b.edges.size() + b.vrtxs.size() + b.pieces.size(),
            0U);
}

TEST(Fichiers, ThatCannotBeLoaded) {
  const Dossier d;
  for (const Chargeur& c : chargeurs) {
    const std::string fichier = std::string("n/n") + c.suite;
    const std::filesystem::path chemin = d.chemin() + fichier;
    SCOPED_TRACE(fichier);
    exiger_echec(c, d);  // no such file
    std::filesystem::create_directories(chemin);
    exiger_echec(c, d);
    std::filesystem::remove(chemin);
    std::string bon = c.document(grille("n", {1, 1, 1}).base), profond;
    for (int i = 0; i <= 1000; ++i) profond = "<a>" + profond + "</a>";
    bon.insert(bon.rfind('<'), profond);
    for (const std::string& contenu :
         {std::string(), std::string(" \n"), std::string("\177ELF\0\1<a", 8),
          std::string("<Blocks></Faces>"), std::string("{\"a\": 1}"), bon}) {
      d.ecrire(fichier, contenu);
      exiger_echec(c, d);
    }
    if (geteuid() != 0) {  // root reads everything
      std::filesystem::permissions(chemin, std::filesystem::perms::none);
      exiger_echec(c, d);
    }
    std::filesystem::remove(chemin);
  }
}

TEST(Fichiers, TruncatedAnywhereAreNotWellFormed) {
  const Base b = grille("n", {1, 1, 1}).base;
  for (const Chargeur& c : chargeurs) {
    const std::string xml = "<?xml version='1.0'?>\r\n<!-- d -->\n" + c.document(b);
    std::string acceptes;
    for (std::size_t n = 0; n <= xml.rfind('>'); n += n < 200 || n + 200 > xml.size() ? 1 : 7) {
      TiXmlDocument doc;
      if (analyser_xml(xml.substr(0, n), doc) && doc.RootElement())
        acceptes += ' ' + std::to_string(n);
    }
    EXPECT_EQ(acceptes, "") << c.suite;
    TiXmlDocument doc;
    EXPECT_TRUE(analyser_xml(xml + "<!-- f -->\n", doc));
  }
}

TEST(Fichiers, LoadAllStopsAtTheFirstFailureAndKeepsWhatWasRead) {
  const Dossier d;
  Base::init_cl_cfg = true;
  for (const char* absent : {"blck", "face", "edge", "vrtx"}) {
    ecrire_cas(grille("n", {2, 1, 1}).base, d);
    std::filesystem::remove(d.chemin() + "n/n_nrm." + absent);
    Base b("n", d.chemin(), "nrm");
    b._disp(false);
    const Capture c;
    EXPECT_FALSE(b.load_all());
    EXPECT_TRUE(c.out().ends_with("probleme de lecture du fichier\n"));
    EXPECT_EQ(c.err(), "");
    EXPECT_TRUE(b.avion._name() == "A n" && b.pieces.size() == 2 && b.vrtxs.empty());
    EXPECT_EQ(b.blocs.empty(), *absent == 'b');
  }
  Base b("ailleurs", "nulle/part/", "nrm");
  b.nom_base = d.chemin() + "n/n";
  ecrire_cas(grille("n", {2, 1, 1}).base, d);
  const Capture c;
  EXPECT_TRUE(b.load_all()) << "a prefix that is set is used as it stands";
}

}  // namespace
