#include "verifie/releve.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/lecture/fichier.h"
#include "base/lecture/parcours.h"
#include "verifie/lecteur_strict.h"

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
  switch (lire_fichier(r.noms[f], texte)) {
    case Lecture::absente:
      return refuser(1, "absent ou interdit de lecture", "le fournir, ou en donner le droit");
    case Lecture::impossible:
      return refuser(1, "n'est pas un fichier lisible", "mettre un fichier XML a sa place");
    case Lecture::faite:
      break;
  }
  if (analyser_xml(std::move(texte), doc, true)) return true;
  if (!doc.Error() && doc.FirstChild())
    return refuser(1, "coupe avant son premier element", "le fournir en entier");
  if (!doc.Error())
    return refuser(1, "imbrication ou nombre d'attributs au-dela de 1000",
                   "simplifier le document");
  return refuser(std::max(doc.ErrorRow(), 1),
                 std::string("XML illisible, ") + raison(doc.ErrorId()) + ", colonne " +
                     std::to_string(std::max(doc.ErrorCol(), 1)),
                 "corriger le document a cet endroit");
}

using Relever = void (*)(Lecteur&, const TiXmlNode&);

struct Lu {
  const char* suffixe;
  const char* racine;
  const char* sorte;
  Relever relever;
};

/// By Fichier.
constexpr std::array<Lu, nb_fichiers> lectures{{
    {".def", "definition_scene", "scene", relever_scene},
    {".blck", "Blocks", "bloc", relever_bloc},
    {".face", "Faces", "face", relever_face},
    {".edge", "Edges", "edge", relever_edge},
    {".vrtx", "Vertices", "vertex", relever_vertex},
}};

}  // namespace

void relever_document(Releve& r, Fichier f, const TiXmlDocument& doc) {
  const Lu& l = lectures[f];
  const TiXmlNode* racine = doc.FirstChild(l.racine);
  if (!racine) {
    r.signaler(f, 1, "fichier", "", std::string("pas d'element ") + l.racine,
               "mettre le contenu dans cet element");
    return;
  }
  r.lus[f] = true;
  Lecteur lecteur(r, f, l.sorte);
  if (f == fic_def) return l.relever(lecteur, *racine);
  for (const TiXmlNode* n = racine->FirstChild(); n; n = n->NextSibling())
    if (lecteur.suivante(*n)) l.relever(lecteur, *n);
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
    r.noms[f] = r.base.nom_base + milieu + lectures[f].suffixe;
    if (TiXmlDocument doc; ouvrir(r, f, doc)) relever_document(r, f, doc);
  }
  return r;
}

}  // namespace topomine
