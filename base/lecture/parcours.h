#pragma once

#include <tinyxml.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/base.h"
#include "texte/nombres.h"

namespace topomine {

// What the readers of XML files share: opening with its trace, and a walk that knows where it
// stands. Internal to base/.

/// What comes after the message of a structural fault. Who must go on (charger, the fuzz targets)
/// puts a throw here; when it returns, the program is aborted all the same.
inline void (*suite_faute)() = &std::abort;

/// Parses a document held in memory; false when it is not well-formed, has no element, or goes
/// beyond the limits of xml_garde.h. `texte` is spent. suivi: with the line of each node, which
/// costs a tenth of the time.
bool analyser_xml(std::string texte, TiXmlDocument& doc, bool suivi = false);

using Marche = bool (*)(Base&, const TiXmlDocument&, const std::string& fichier);

/// Opens `fichier` with its "parsing fichier" trace and hands the document to `marche`. When it
/// cannot be loaded: `avant_echec` and "probleme de lecture du fichier" on standard output, false.
bool lire_document(Base& base, const std::string& fichier, std::string_view avant_echec,
                   Marche marche);

/// The block reader's failure message ends the line of the trace, the others' stand on their own.
inline constexpr std::string_view meme_ligne{};
inline constexpr std::string_view ligne_neuve = "\n";

// The walks, one per reader: the document is loaded, `fichier` only names it in messages.
bool parcourir_plane(Base& base, const TiXmlDocument& doc, const std::string& fichier);
bool parcourir_scene(Base& base, const TiXmlDocument& doc, const std::string& fichier);
bool parcourir_blocs(Base& base, const TiXmlDocument& doc, const std::string& fichier);
bool parcourir_faces(Base& base, const TiXmlDocument& doc, const std::string& fichier);
bool parcourir_edges(Base& base, const TiXmlDocument& doc, const std::string& fichier);
bool parcourir_vrtxs(Base& base, const TiXmlDocument& doc, const std::string& fichier);

/// A walk over the entities of one document. What the document must have and has not is a
/// structural fault: it says the reader, the failed expression, the file and the entity on standard
/// error, and goes to suite_faute, that is SIGABRT, in every build type. The expressions ("node",
/// "volm", "facs" ...) are fixed texts by which users know a fault. releve_fichiers.cpp walks the
/// same elements for `verifie`: a change of one is a change of both.
class Parcours {
 public:
  /// lecteur: the reader's signature. sorte: what an entity is called in messages.
  Parcours(const char* lecteur, const char* sorte, const std::string& fichier)
      : lecteur_(lecteur), sorte_(sorte), fichier_(fichier) {}

  /// Another kind of entity comes, counted from the first.
  void changer_sorte(const char* sorte);
  /// The next entity is reached; it has no number yet.
  void suivante();
  /// Reads the entity's "Ident"; messages name it by this number from now on.
  int ident(const TiXmlNode& entite);

  /// First child of that name; its absence is a fault.
  const TiXmlNode& enfant(const TiXmlNode& parent, const char* nom,
                          const char* expr = "node") const;
  /// Text of an element: the value of its first child node, whose absence is a fault.
  const std::string& texte(const TiXmlNode& element, const char* expr = "node") const;

  int entier(const TiXmlNode& element) { return nombres_.entier(texte(element)); }
  int entier(const TiXmlNode& parent, const char* nom) { return entier(enfant(parent, nom)); }
  double reel(const TiXmlNode& parent, const char* nom) {
    return nombres_.reel(texte(enfant(parent, nom)));
  }
  /// Calls `ajouter` with the number in each child of the optional element `nom`.
  template <class Ajouter>
  void pour_chaque_entier(const TiXmlNode& entite, const char* nom, Ajouter ajouter) {
    const TiXmlNode* liste = entite.FirstChild(nom);
    if (!liste) return;
    for (const TiXmlNode* n = liste->FirstChild(); n; n = n->NextSibling()) ajouter(entier(*n));
  }
  /// What a face or edge slot holds, by the number of its sub-entities in element `nb`: the number
  /// in element `sous` for exactly one, else the count itself, 0 or, after `avertissement` on
  /// standard error, what no single number can stand for.
  int contenu_case(const TiXmlNode& place, const char* nb, const char* sous,
                   std::string_view avertissement);

  char caractere(const TiXmlNode& parent, const char* nom) {
    return caracteres_.caractere(texte(enfant(parent, nom)));
  }

  [[noreturn]] void faute(const char* expr, const TiXmlNode* parent, std::string_view nom) const;

 private:
  const char* lecteur_;
  const char* sorte_;
  const std::string& fichier_;
  int rang_ = 0;
  std::optional<int> numero_;
  FluxNombres nombres_;  // one conversion for the whole reading
  FluxCaracteres caracteres_;
};

/// True when the node's value begins with `debut`.
inline bool nom_commence(const TiXmlNode& noeud, std::string_view debut) {
  return std::string_view(noeud.ValueStr()).starts_with(debut);
}

/// Stores a copy of the entity under its number, replacing an earlier one, between the two halves
/// of a "save face 12 ... done." line when the base shows its readers' output.
template <class Entite>
void ranger(const Base& base, std::string_view sorte, std::map<int, Entite>& table, int ident,
            const Entite& entite) {
  if (base.disp) std::cout << "save " << sorte << ' ' << ident;
  table.insert_or_assign(table.end(), ident, entite);  // files mostly come in ascending order
  if (base.disp) std::cout << " ... done." << std::endl;
}

}  // namespace topomine
