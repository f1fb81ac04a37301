#include <algorithm>
#include <string>
#include <string_view>

#include "base/lecture/lectures.h"
#include "base/lecture/xml.h"
#include "dataset/basebuffer.h"
#include "fuzz/cibles.h"
#include "fuzz/outils.h"
#include "fuzz/proprietes.h"
#include "tests/support/verifier_liens.h"
#include "texte/affichable.h"
#include "verifie/catalogue.h"
#include "verifie/journal_constats.h"

using namespace topomine;

namespace {

/// How one reading of a document ended.
struct Essai {
  Base base;
  bool finie = false;  // no structural fault
  bool reussie = false;
};

/// What was said.
std::string lire(Essai& l, const DocumentXml& doc, Marche marche) {
  JournalEssai journal;
  l.finie = sans_faute([&] { l.reussie = marche(l.base, doc, "entree", journal); });
  return journal.dit;
}

/// Nothing from the document ends a line or moves a cursor. A piece without a letter shows its NUL.
bool sans_commande(std::string_view dit) {
  while (!dit.empty()) {
    std::string_view ligne = dit.substr(0, dit.find('\n'));
    dit.remove_prefix(std::min(ligne.size() + 1, dit.size()));
    if (ligne.ends_with('\0')) ligne.remove_suffix(1);
    if (affichable(ligne) != ligne) return false;
  }
  return true;
}

/// Every text of a tree up to its first NUL.
void couper_aux_nuls(TiXmlNode& n) {
  for (TiXmlNode* e = n.FirstChild(); e; e = e->NextSibling()) {
    e->SetValue(std::string(e->Value()).c_str());
    couper_aux_nuls(*e);
  }
}

/// What follows a reading: links, queries, classes, rows, listings.
void exploiter(Base& base) {
  PROMET(base.make_link() == 1);
  PROMET(liens_reciproques(base));
  verifier_questions(base);
  PROMET(base.maj_typeC() == 1);
  BaseBuffer table;
  table.add_base(base);
  PROMET(static_cast<std::size_t>(table.nb_expl()) == base.blocs.size());
  for (const BaseBuffer::Exemple& ligne : table._expl) PROMET(ligne.size() == table._attr.size());
  Ecoute ecoute;
  base.Print(false);
  PROMET(sans_commande(ecoute.sortie()));
}

/// What the strict reading has no error about, the run reads, and reads alike.
void comparer_strict(const Essai& l, const DocumentXml& suivi, Fichier f) {
  CasLu cas;
  lire_document_strict(cas, f, suivi);
  for (const Constat& c : cas.constats) {
    PROMET(c.ligne >= 1 && !c.quoi.empty());
    if (fiche(c.code).gravite == Gravite::erreur) return;
  }
  PROMET(l.finie && l.reussie);
  verifier_strict(cas, f, l.base);
}

void essayer(std::string_view entree, Marche marche, Fichier f) {
  const std::string texte(entree);
  verifier_garde(texte);
  DocumentXml doc;
  const bool lisible = analyser_xml(texte, doc);
  DocumentXml suivi;
  PROMET(analyser_xml(texte, suivi, true) == lisible);  // with the lines of nodes, as verifie reads
  if (!lisible) return;

  Essai premiere, seconde;
  premiere.base.disp = seconde.base.disp = entree.size() % 2 != 0;
  const std::string dit = lire(premiere, doc, marche);
  PROMET(dit == lire(seconde, doc, marche));
  PROMET(premiere.finie == seconde.finie && premiere.reussie == seconde.reussie);
  PROMET(image(premiere.base) == image(seconde.base));
  PROMET(doc.racine() || !premiere.finie);
  PROMET(marche != parcourir_blocs || premiere.reussie == premiere.finie);
  PROMET(sans_commande(dit));
  if (texte.find("&#") != std::string::npos) {
    // A NUL comes from a numeric entity, and texts end at it: what follows changes nothing.
    DocumentXml coupe;
    analyser_xml(texte, coupe);
    couper_aux_nuls(coupe.arbre());
    Essai troisieme;
    troisieme.base.disp = premiere.base.disp;
    PROMET(dit == lire(troisieme, coupe, marche));
    PROMET(image(premiere.base) == image(troisieme.base));
  }
  for (const auto& [famille, piece] : premiere.base.pieces)
    PROMET((famille + piece._nom()).find('\0') == std::string::npos);
  comparer_strict(premiere, suivi, f);
  if (!premiere.finie) return;

  // Read over what is there: entries are replaced, only junctions are listed again.
  lire(seconde, doc, marche);
  seconde.base.raccords = premiere.base.raccords;
  PROMET(image(premiere.base) == image(seconde.base));
  const Ecoute muette;
  if (premiere.reussie) exploiter(premiere.base);
}

bool parcourir_def(Base& base, const DocumentXml& doc, const std::string& fichier,
                   Journal& journal) {
  return parcourir_plane(base, doc, fichier, journal) &&
         parcourir_scene(base, doc, fichier, journal);
}

}  // namespace

void cible_bloc(std::string_view entree) {
  essayer(entree, parcourir_blocs, fic_blck);
}

void cible_face(std::string_view entree) {
  essayer(entree, parcourir_faces, fic_face);
}

void cible_edge(std::string_view entree) {
  essayer(entree, parcourir_edges, fic_edge);
}

void cible_vertex(std::string_view entree) {
  essayer(entree, parcourir_vrtxs, fic_vrtx);
}

void cible_scene(std::string_view entree) {
  essayer(entree, parcourir_def, fic_def);
}
