#include <gtest/gtest.h>
#include <unistd.h>

#include <map>

#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"
#include "base/lecture/xml.h"
#include "tests/support/capture.h"
#include "tests/support/cas.h"
#include "tests/support/rangees.h"

using namespace topomine;

namespace {

struct Lecteur {
  Marche marche;
  int sorte;  // of the listing
};

const std::map<std::string, Lecteur> lecteurs{
    {"blocs", {parcourir_blocs, 1}}, {"faces", {parcourir_faces, 2}},
    {"edges", {parcourir_edges, 3}}, {"vertices", {parcourir_vrtxs, 4}},
    {"plane", {parcourir_plane, 5}}, {"scene", {parcourir_scene, 6}}};

/// Reads the documents, with a line "+++" between them, into one base.
std::string lire(const Lecteur& lecteur, std::string xml, bool parle) {
  Base b;
  b._disp(parle);
  const Capture c(true);
  for (std::size_t fin = 0; fin != std::string::npos; xml.erase(0, fin + 5)) {
    fin = xml.find("\n+++\n");
    DocumentXml doc;
    EXPECT_TRUE(analyser_xml(xml.substr(0, fin), doc)) << xml;
    std::cout << (lecteur.marche(b, doc, "f.essai", console()) ? "" : "false\n");
    if (fin == std::string::npos) break;
  }
  b.Print(lecteur.sorte, false);
  if (lecteur.sorte == 6) b.Print(7, false);
  for (const auto& [n, face] : b.faces)  // what the listing leaves out
    for (int i = 4; i < face.nb_edge(); ++i) std::cout << face._edge(i) << '\n';
  return visible(c.out());
}

TEST(Lecture, OfDocumentsOfEveryKind) {
  for (const Rangee& r : lire_rangees(TOPOMINE_CASES "../base/lectures.txt")) {
    const Lecteur& lecteur = lecteurs.at(r.titre.substr(0, r.titre.find(':')));
    EXPECT_EQ(lire(lecteur, r.entree, true), r.attendu) << r.titre;
    EXPECT_EQ(lire(lecteur, r.entree, false).find("save "), std::string::npos);
  }
}

TEST(Lecture, AFaceWithMoreEdgesThanAnyFaceHasFailsTheFile) {
  const std::string une = el("Edge", el("Numero", 0), el("NbSubEdge", 0));
  const auto face = [](int ident, const std::string& reste) {
    return el("F", el("Ident", ident), el("NumCaract", 1), el("Type", 2), reste);
  };
  std::string cases;
  for (int i = 0; i < 996; ++i) cases += une;
  const std::string vu =
      lire(lecteurs.at("faces"), el("Faces", face(10, cases), face(11, une)), true);
  EXPECT_TRUE(
      vu.starts_with("save face 10 ... done.\n"
                     "Erreur avec la face 11, plus de 1000 edges ...\nfalse\nFace 10\n"))
      << vu.substr(0, 200);
  EXPECT_TRUE(vu.find("Nb Edges: 1000\n") < vu.size() && vu.find("Face 11\n") > vu.size());
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
      DocumentXml doc;
      if (analyser_xml(xml.substr(0, n), doc) && doc.racine()) acceptes += ' ' + std::to_string(n);
    }
    EXPECT_EQ(acceptes, "") << c.suite;
    DocumentXml doc;
    EXPECT_TRUE(analyser_xml(xml + "<!-- f -->\n", doc));
  }
}

TEST(Fichiers, EndsOfLinesAreNewlines) {
  DocumentXml doc;
  ASSERT_TRUE(analyser_xml("<a><!--1\r\n2\r3\n\r--></a>", doc));
  EXPECT_STREQ(doc.racine().premier().valeur(), "1\n2\n3\n\n");
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
