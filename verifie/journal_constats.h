#pragma once

#include <set>
#include <string>
#include <string_view>

#include "base/lecture/fichier.h"
#include "base/lecture/journal.h"
#include "verifie/lecture_stricte.h"

namespace topomine {

class DocumentXml;
class Noeud;

/// What a file that could not be read is.
const char* texte_de(Lecture lecture);
Code code_de(Lecture lecture);

/// Reads the files once more, where there are findings, for the lines of their elements.
void preciser_lignes(CasLu& cas);

/// Reads a document that was parsed with its lines, as the one of file `f`.
void lire_document_strict(CasLu& cas, Fichier f, const DocumentXml& doc);

/// Reads the text of a climite.cfg.
void lire_config_strict(ConfigLue& config, std::string_view texte);

/// Turns what a strict reading of one file has to say into findings, each with the entity under way
/// and the line.
class JournalConstats final : public JournalStrict {
 public:
  JournalConstats(CasLu& cas, Fichier fichier) : r_(cas), f_(fichier) {}

  // Not used in a strict reading.
  void ouverture(const std::string& /*fichier*/) override {}
  void illisible(const std::string& /*fichier*/, bool /*ligne_neuve*/) override {}
  void trace(std::string_view /*ligne*/) override {}
  void avertissement(std::string_view /*ligne*/) override {}
  void echec(std::string_view /*ligne*/) override {}
  void faute(const Faute& /*faute*/) override {}

  void sorte(const char* sorte) override;
  bool entite(Noeud entite) override;
  void ident(Noeud entite, int numero) override;
  void nom_de_piece(std::string_view nom) override;
  void absent(Noeud parent, const char* nom) override;
  std::optional<std::string_view> texte(Noeud element) override;
  std::optional<int> entier(Noeud element) override;
  std::optional<double> reel(Noeud element) override;
  std::optional<Case> lire_case(Cases& cases, Noeud place) override;
  void cases_manquantes(const Cases& cases, Noeud entite) override;
  void famille(Noeud entite, const Piece& piece, const Piece& gardee, bool nouvelle) override;
  void ecart(Ecart ecart, Noeud ou, std::string_view texte) override;

 private:
  void signaler(Code code, Noeud ou, const std::string& quoi);
  /// That part of the entity under way could not be read, or the entity itself when it is its
  /// Ident. The ends of an edge are unknown whenever they are not there.
  void perdre(unsigned partie);
  void perdre(std::string_view element, Noeud parent);
  /// Says it of an element that could not be read, or of a link, which is lost then.
  void refuser(Code code, Noeud element, const std::string& quoi);
  void refuser_lien(Code code, Noeud ou, const std::string& quoi);
  Noeud enfant(Noeud parent, const char* nom);
  std::optional<int> entier(Noeud parent, const char* nom);
  /// The faces that share the slot; none unless there are as many as it says.
  std::vector<int> sous_faces(const Cases& cases, int nb, Noeud place);
  int contenu_de_case(const Cases& cases, int numero, Noeud place);

  CasLu& r_;
  Fichier f_;
  std::string sorte_;
  int rang_ = 0;
  std::string numero_;
  int ident_ = 0;                            // 0 when it is not known
  bool coupee_ = false;                      // the list of its edges: more of them may come
  std::set<std::string, std::less<>> noms_;  // of the pieces
};

}  // namespace topomine
