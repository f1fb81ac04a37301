#pragma once

#include <optional>
#include <string>
#include <string_view>

class Piece;

namespace topomine {

class Noeud;

/// A readable document lacks an element or a text that it must have.
struct Faute {
  std::string_view lecteur;  ///< signature of the reader, "bool Base::load_blocs()"
  std::string_view expr;  ///< fixed texts by which users know a fault: "node", "volm", "facs" ...
  std::string fichier;
  std::string entite;  ///< "bloc 12", "bloc de rang 3", or nothing
  std::string manque;  ///< names from the top element down to what is missing

  /// Two lines, the second without its end.
  std::string texte() const;
};

class JournalStrict;

/// Receives what a reading reports. Readers use nothing else for output.
class Journal {
 public:
  Journal() = default;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;
  virtual ~Journal() = default;

  /// A document is about to be loaded.
  virtual void ouverture(const std::string& fichier) = 0;
  /// It could not be. ligne_neuve: said on a line of its own, not at the end of the opening's.
  virtual void illisible(const std::string& fichier, bool ligne_neuve) = 0;
  /// A line on how the reading gets on.
  virtual void trace(std::string_view ligne) = 0;
  /// Odd, and read all the same.
  virtual void avertissement(std::string_view ligne) = 0;
  /// The reading ends and answers false.
  virtual void echec(std::string_view ligne) = 0;
  /// A fault that a run cannot continue after; throws; if it returns, the caller aborts.
  virtual void faute(const Faute& faute) = 0;
  /// True when a large document may be read in slices: entities of an early slice are then reported
  /// and stored before later slices are known to be well-formed.
  virtual bool par_tranches() { return false; }
  /// Null in a run.
  virtual JournalStrict* strict() { return nullptr; }
};

/// The journal of a run: traces and load failures on standard output, the rest on standard error.
Journal& console();

/// The slots of a block or a face, one after the other.
struct Cases {
  const char* quoi;  ///< "face" or "edge"
  const char* nb;    ///< element that holds the number of sub-entities
  const char* sous;  ///< element that holds the one number
  int nb_cases;
  std::string_view plusieurs;  ///< warning for a number of sub-entities other than 0 and 1
  unsigned vues = 0;           ///< one bit per slot, in a strict reading
  bool illisible = false;      ///< one has no number of its own: none can be called missing
};

struct Case {
  int numero;  ///< from 1; in a run not checked
  int contenu;
};

/// What is read without trouble and is wrong all the same.
enum class Ecart {
  reference_nulle,           ///< a number that must be positive
  edges_interrompues,        ///< something else than an edge ends the list
  projections_interrompues,  ///< something else than a projection ends the list
  nb_vertex,                 ///< other than 2
  topologie,                 ///< no letter that is known
  seconde_piece,             ///< a junction has one piece only
  piece_citee,               ///< by a junction: does it exist?
  type_raccord,              ///< no type that is known
};

/// The journal of a strict reading, which does not stop at faults and also checks what a run
/// accepts. A function that answers nothing has already reported why.
class JournalStrict : public Journal {
 public:
  JournalStrict* strict() final { return this; }

  /// What the entities that come are called.
  virtual void sorte(const char* sorte) = 0;
  /// The next entity is reached; false when it is no element and must be passed over.
  virtual bool entite(Noeud entite) = 0;
  /// The number in the entity's "Ident" has been read.
  virtual void ident(Noeud entite, int numero) = 0;
  /// The same for a piece, which has a name for a number.
  virtual void nom_de_piece(std::string_view nom) = 0;
  /// `parent` lacks the element `nom`, which it must have.
  virtual void absent(Noeud parent, const char* nom) = 0;
  /// What an element holds, as a whole: a text, or one number.
  virtual std::optional<std::string_view> texte(Noeud element) = 0;
  virtual std::optional<int> entier(Noeud element) = 0;
  virtual std::optional<double> reel(Noeud element) = 0;
  virtual std::optional<Case> lire_case(Cases& cases, Noeud place) = 0;
  /// All slots of the entity have been read: reports those that were not among them.
  virtual void cases_manquantes(const Cases& cases, Noeud entite) = 0;
  /// A piece has been put into the table, or found its family taken by `gardee`.
  virtual void famille(Noeud entite, const Piece& piece, const Piece& gardee, bool nouvelle) = 0;
  /// `texte` is what the element holds, where that is wrong.
  virtual void ecart(Ecart ecart, Noeud ou, std::string_view texte) = 0;
};

}  // namespace topomine
