#include "verifie/releve.h"

#include <tinyxml.h>

#include <algorithm>
#include <utility>

#include "base/lecture/lectures.h"
#include "verifie/journal_constats.h"

namespace topomine {

namespace {

/// Why the parser refuses a document, by its error number. The others it keeps to itself: they come
/// after one of these, and the first error counts.
const char* raison(int numero) {
  switch (numero) {
    case TiXmlBase::TIXML_ERROR_FAILED_TO_READ_ELEMENT_NAME:
      return "nom d'element illisible";
    case TiXmlBase::TIXML_ERROR_READING_ELEMENT_VALUE:
      return "contenu d'element sans fin";
    case TiXmlBase::TIXML_ERROR_READING_ATTRIBUTES:
      return "attributs mal formes";
    case TiXmlBase::TIXML_ERROR_PARSING_EMPTY:
      return "balise vide mal formee";
    case TiXmlBase::TIXML_ERROR_READING_END_TAG:
      return "balise de fin absente ou autre que celle du debut";
    case TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY:
      return "document vide";
    default:
      return "document mal forme";
  }
}

/// Parses one file; says why when it cannot be.
bool ouvrir(Releve& r, Fichier f, TiXmlDocument& doc) {
  const auto refuser = [&](int ligne, const std::string& quoi, const std::string& remede) {
    r.signaler(f, ligne, "fichier", "", quoi, remede);
    return false;
  };
  std::string texte;
  if (const Lecture lecture = lire_fichier(r.noms[f], texte); lecture != Lecture::faite)
    return refuser(1, dire(lecture), "mettre un fichier XML a sa place, que l'on puisse lire");
  if (analyser_xml(std::move(texte), doc, true)) {
    if (doc.RootElement()) return true;
    return refuser(1, "coupe avant son premier element", "le fournir en entier");
  }
  if (!doc.Error())
    return refuser(1, "imbrication ou nombre d'attributs au-dela de 1000",
                   "simplifier le document");
  return refuser(std::max(doc.ErrorRow(), 1),
                 std::string("XML illisible, ") + raison(doc.ErrorId()) + ", colonne " +
                     std::to_string(std::max(doc.ErrorCol(), 1)),
                 "corriger le document a cet endroit");
}

struct SorteDeFichier {
  const char* suffixe;
  const char* racine;
  Marche marche;
};

bool parcourir_def(Base& base, const TiXmlDocument& doc, const std::string& fichier,
                   Journal& journal) {
  return parcourir_plane(base, doc, fichier, journal) &&
         parcourir_scene(base, doc, fichier, journal);
}

/// By Fichier.
constexpr std::array<SorteDeFichier, nb_fichiers> sortes{{
    {".def", "definition_scene", parcourir_def},
    {".blck", "Blocks", parcourir_blocs},
    {".face", "Faces", parcourir_faces},
    {".edge", "Edges", parcourir_edges},
    {".vrtx", "Vertices", parcourir_vrtxs},
}};

}  // namespace

const char* dire(Lecture lecture) {
  switch (lecture) {
    case Lecture::absente:
      return "absent";
    case Lecture::interdite:
      return "interdit de lecture";
    case Lecture::boucle:
      return "lien qui tourne en rond";
    case Lecture::dossier:
      return "dossier au lieu d'un fichier";
    case Lecture::special:
      return "tube ou peripherique au lieu d'un fichier";
    case Lecture::interrompue:
      return "la lecture s'est arretee en chemin";
    case Lecture::faite:
      break;
  }
  return "lu";
}

void relever_document(Releve& r, Fichier f, const TiXmlDocument& doc) {
  const SorteDeFichier& sorte = sortes[f];
  if (!doc.FirstChild(sorte.racine)) {
    r.signaler(f, 1, "fichier", "", std::string("pas d'element ") + sorte.racine,
               "mettre le contenu dans cet element");
    return;
  }
  r.lus[f] = true;
  r.base.disp = false;
  JournalConstats journal(r, f);
  sorte.marche(r.base, doc, r.noms[f], journal);
}

int Releve::ligne(Fichier f, int numero) const {
  const auto trouve = lignes[f].find(numero);
  return trouve == lignes[f].end() ? 1 : trouve->second;
}

void Releve::signaler(Fichier f, int ligne, const std::string& sorte, const std::string& numero,
                      const std::string& quoi, const std::string& remede, Gravite gravite) {
  constats.push_back({noms[f], ligne, sorte, numero, quoi, remede, gravite});
}

Releve relever(const std::string& nom, const std::string& chemin, const std::string& mode) {
  Releve r;
  r.base = Base(nom, chemin, mode);
  r.base.gen_nom_base();
  for (const Fichier f : {fic_def, fic_blck, fic_face, fic_edge, fic_vrtx}) {
    const std::string milieu = f == fic_def ? "" : "_" + mode;
    r.noms[f] = r.base.nom_base + milieu + sortes[f].suffixe;
    if (TiXmlDocument doc; ouvrir(r, f, doc)) relever_document(r, f, doc);
  }
  return r;
}

}  // namespace topomine
