#include "base/lecture/document.h"

#include <exception>
#include <utility>

#include "base/lecture/fichier.h"
#include "base/lecture/journal.h"
#include "base/lecture/tranches.h"
#include "base/lecture/xml.h"

namespace topomine {

bool analyser_xml(std::string texte, DocumentXml& doc, bool suivi) {
  preparer_xml(texte);
  if (!xml_lisible(texte)) return false;
  return doc.analyser(texte, suivi);
}

std::optional<Depassement> hors_limites(std::string texte) {
  preparer_xml(texte);
  return depassement(texte);
}

bool lire_document(Base& base, const std::string& fichier, Marche marche, Echec echec,
                   Journal& journal) {
  journal.ouverture(fichier);
  try {
    std::string texte;
    if (lire_fichier(fichier, texte) == Lecture::faite) {
      if (texte.size() > taille_a_couper && journal.par_tranches()) {
        preparer_xml(texte);
        if (Tranches tranches(texte, taille_tranche); tranches.commencer())
          return marche(base, tranches.document(), fichier, journal);
      }
      DocumentXml doc;
      if (analyser_xml(std::move(texte), doc)) {
        journal.trace("done. ");
        return marche(base, doc, fichier, journal);
      }
    }
  } catch (const std::exception&) {
    // No memory for the document or for what it holds: it could not be loaded.
  }
  journal.illisible(fichier, echec == Echec::ligne_neuve);
  return false;
}

}  // namespace topomine
