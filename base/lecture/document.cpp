#include "base/lecture/document.h"

#include <cstring>
#include <exception>
#include <utility>

#include "base/lecture/fichier.h"
#include "base/lecture/journal.h"
#include "base/lecture/tranches.h"
#include "base/lecture/xml.h"

namespace topomine {

namespace {

/// Line ends as XML wants them: "\r\n" and "\r" become "\n".
void normaliser_fins_de_ligne(std::string& texte) {
  if (texte.find('\r') == std::string::npos) return;
  std::size_t ecrit = 0;
  for (std::size_t lu = 0; lu < texte.size(); ++lu) {
    if (texte[lu] == '\r' && lu + 1 < texte.size() && texte[lu + 1] == '\n') continue;
    texte[ecrit++] = texte[lu] == '\r' ? '\n' : texte[lu];
  }
  texte.resize(ecrit);
}

/// The text as the parser sees it: it ends at its first NUL. In UTF-8 the parser takes up to four
/// bytes at once without a look at the last ones: a text that ends within a character must not lead
/// it further.
void preparer(std::string& texte) {
  normaliser_fins_de_ligne(texte);
  texte.resize(std::strlen(texte.c_str()));
  texte.append(4, '\0');
}

}  // namespace

bool analyser_xml(std::string texte, DocumentXml& doc, bool suivi) {
  preparer(texte);
  if (!xml_lisible(texte)) return false;
  return doc.analyser(texte, suivi);
}

std::optional<Depassement> hors_limites(std::string texte) {
  preparer(texte);
  return depassement(texte);
}

bool lire_document(Base& base, const std::string& fichier, Marche marche, Echec echec,
                   Journal& journal) {
  journal.ouverture(fichier);
  try {
    std::string texte;
    if (lire_fichier(fichier, texte) == Lecture::faite) {
      if (texte.size() > taille_a_couper && journal.par_tranches()) {
        preparer(texte);
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
