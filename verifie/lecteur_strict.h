#pragma once

#include <tinyxml.h>

#include <optional>
#include <string>
#include <string_view>

#include "verifie/releve.h"

namespace topomine {

// The strict reading of one document, shared by its walks. Internal to base/.

/// Where a strict walk stands: what it asks for and does not find, or cannot read, becomes a
/// finding of the entity under way, and the walk goes on without it.
class Lecteur {
 public:
  Lecteur(Releve& releve, Fichier fichier, const char* sorte)
      : r(releve), f_(fichier), sorte_(sorte) {}

  /// Another kind of entity comes, counted from the first.
  void changer_sorte(const char* sorte);
  /// The next entity is reached. False, after a finding, when it is no element at all.
  bool suivante(const TiXmlNode& entite);
  /// Reads "Ident" and keeps its line; nothing when the entity cannot be kept in a table.
  std::optional<int> ident(const TiXmlNode& entite);
  /// What messages call the entity from now on.
  void nommer(const std::string& nom) { numero_ = nom; }

  const TiXmlNode* enfant(const TiXmlNode* parent, const char* nom);
  /// The text of an element; nothing, after a finding, when it has none.
  const std::string* texte(const TiXmlNode* element);
  std::optional<int> entier(const TiXmlNode* element);
  std::optional<double> reel(const TiXmlNode* element);
  /// Number in the child `nom`, `defaut` when it cannot be read.
  int entier(const TiXmlNode& parent, const char* nom, int defaut = 0) {
    return entier(enfant(&parent, nom)).value_or(defaut);
  }
  /// Number in the "Cell" of the child `nom`.
  std::optional<double> cellule(const TiXmlNode* parent, const char* nom) {
    return reel(enfant(enfant(parent, nom), "Cell"));
  }
  template <class Ajouter>
  void pour_chaque_entier(const TiXmlNode& entite, const char* nom, Ajouter ajouter) {
    const TiXmlNode* liste = entite.FirstChild(nom);
    if (!liste) return;
    for (const TiXmlNode* n = liste->FirstChild(); n; n = n->NextSibling())
      if (const auto v = entier(n)) ajouter(*v);
  }

  /// The slots of a block or a face, one after the other.
  struct Cases {
    const char* quoi;  // "face" or "edge", for messages
    const char* nb;    // element that holds the number of sub-entities
    const char* sous;  // element that holds the one number
    int nb_cases;
    unsigned vues = 0;       // one bit per slot
    bool illisible = false;  // one of them has no number of its own: none can be called missing
  };
  /// Reads one slot; `ranger` receives its rank from 0 and its number, or 0.
  template <class Ranger>
  void lire_case(Cases& cases, const TiXmlNode& place, Ranger ranger) {
    if (const int numero = numero_de_case(cases, place); numero > 0)
      ranger(numero - 1, contenu_de_case(cases, numero, place));
  }
  void cases_manquantes(const Cases& cases, const TiXmlNode& entite);

  void signaler(const TiXmlNode& ou, const std::string& quoi, const std::string& remede,
                Gravite gravite = Gravite::erreur);

  Releve& r;

 private:
  int numero_de_case(Cases& cases, const TiXmlNode& place);
  int contenu_de_case(const Cases& cases, int numero, const TiXmlNode& place);

  Fichier f_;
  std::string sorte_;
  int rang_ = 0;
  std::string numero_;
};

/// Reads a document that was parsed with its lines, as the one of file `f`.
void relever_document(Releve& releve, Fichier f, const TiXmlDocument& doc);

/// Reads the text of a climite.cfg.
void relever_texte(ReleveConfig& releve, std::string_view texte);

// What each of the files holds, from its top element for the scene, entity by entity for the
// others.
void relever_scene(Lecteur& l, const TiXmlNode& scene);
void relever_bloc(Lecteur& l, const TiXmlNode& n);
void relever_face(Lecteur& l, const TiXmlNode& n);
void relever_edge(Lecteur& l, const TiXmlNode& n);
void relever_vertex(Lecteur& l, const TiXmlNode& n);

}  // namespace topomine
