#include <gtest/gtest.h>
#include <tinyxml.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <regex>

#include "base/lecture/lectures.h"
#include "base/lecture/xml.h"
#include "fuzz/outils.h"
#include "tests/support/cas.h"
#include "tests/support/rangees.h"

using namespace topomine;

// What a document that TinyXML reads must have, and what is said when it has not.

namespace {

const std::map<std::string, Marche> marches{
    {"load_blocs", parcourir_blocs}, {"load_faces", parcourir_faces},
    {"load_edges", parcourir_edges}, {"load_vrtxs", parcourir_vrtxs},
    {"load_plane", parcourir_plane}, {"load_scene", parcourir_scene}};

/// The n-th node in the order of the document; null when there are not as many.
TiXmlNode* noeud(TiXmlNode& racine, int& n) {
  for (TiXmlNode* e = racine.FirstChild(); e; e = e->NextSibling()) {
    if (n-- == 0) return e;
    if (TiXmlNode* trouve = noeud(*e, n)) return trouve;
  }
  return nullptr;
}

std::string chemin(const TiXmlNode& n) {
  return (n.Parent()->Parent() ? chemin(*n.Parent()) + "/" : "") + n.Value();
}

/// The document without its n-th node and those of the same name beside it, with that node empty,
/// or with a comment before it: what is done, and the fault. "." without one, "" behind the last.
std::string essayer(const std::string& lecteur, const std::string& xml, int n, int dommage) {
  DocumentXml doc;
  if (!analyser_xml(xml, doc)) return "?";
  TiXmlNode* const cible = noeud(doc.arbre(), n);
  if (!cible) return {};
  if (cible->ToText()) return ".";
  std::string ligne = (dommage == 0 ? "- " : dommage == 1 ? "0 " : "+ ") + chemin(*cible) + " : ";
  TiXmlNode& parent = *cible->Parent();
  const std::string nom = cible->Value();
  if (dommage == 0)
    while (TiXmlNode* enfant = parent.FirstChild(nom.c_str())) parent.RemoveChild(enfant);
  else if (dommage == 1)
    cible->Clear();
  else
    parent.InsertBeforeChild(cible, TiXmlComment("5"));
  Base b;
  b._disp(false);
  JournalEssai journal;
  if (sans_faute([&] { marches.at(lecteur)(b, doc, "f.essai", journal); })) return ".";
  static const std::regex message(
      "base: bool Base::(\\w+)\\(\\): Assertion `(.*)' failed\\.\nfichier f\\.essai(.*) absent ou "
      "vide");
  std::smatch m;
  EXPECT_TRUE(std::regex_match(journal.dit, m, message) && m[1] == lecteur) << journal.dit;
  return ligne + m[2].str() + m[3].str() + "\n";
}

}  // namespace

TEST(Fautes, EachIsNamedWithItsFileAndItsEntity) {
  for (const Rangee& r : lire_rangees(TOPOMINE_CASES "../base/fautes.txt")) {
    std::string vues;
    for (int n = 0; !essayer(r.titre, r.entree, n, 0).empty(); ++n)
      for (const int dommage : {0, 1, 2})
        if (const std::string ligne = essayer(r.titre, r.entree, n, dommage); ligne != ".")
          vues += ligne;
    EXPECT_EQ(vues, r.attendu) << r.titre;
  }
}

// The parser loads a document without any element when there is something else in it.
TEST(FautesDeathTest, EndTheProgramByAbort) {
  for (const char* xml :
       {"<?xml version='1.0'?>", "<!-- vide -->\n", "<!DOCTYPE x>", "<!-- --> texte <Blocks/>"}) {
    const Dossier d;
    for (const char* fin : {".def", "_nrm.blck", "_nrm.face", "_nrm.edge", "_nrm.vrtx"})
      d.ecrire(std::string("n/n") + fin, xml);
    for (const auto charger : {&Base::load_plane, &Base::load_scene, &Base::load_blocs,
                               &Base::load_faces, &Base::load_edges, &Base::load_vrtxs})
      EXPECT_EXIT(
          {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            Base b("n", d.chemin(), "nrm");
            b.gen_nom_base();
            (b.*charger)();
          },
          testing::KilledBySignal(SIGABRT),
          "parsing fichier .* done. \nbase: bool Base::load_.*\nfichier .*absent ou vide\n")
          << xml;
  }
}
