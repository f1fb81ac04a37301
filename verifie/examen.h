#pragma once

#include <array>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "verifie/lecture_stricte.h"
#include "verifie/maille.h"

namespace topomine {

/// What the rules look at and write to. They run in the order of one table (regles.cpp): those that
/// say what is wrong with a link mend it in `maille`, or mark the entity as one that later rules
/// cannot judge, so that one fault is one finding.
struct Examen {
  CasLu& cas;
  const ConfigLue& config;
  Maille maille;
  std::vector<const Block*> blocs;
  std::vector<const Face*> faces;
  std::vector<const Edge*> edges;
  /// By file and rank: said already, and nothing that goes by its links can be said any more.
  std::array<std::vector<bool>, nb_fichiers> douteux;
  /// The links between two files are mostly wrong, which has been said: nothing else is looked at.
  bool liens_perdus = false;

  Examen(CasLu& cas_lu, const ConfigLue& configuration);

  bool lus(std::initializer_list<Fichier> fichiers) const;
  const Rangs& rangs(Fichier f) const;
  int numero(Fichier f, int rang) const { return rangs(f).numero(rang); }
  bool est_douteux(Fichier f, int rang) const;
  void douter(Fichier f, int rang);
  /// A finding of an entity of one of the four mesh files; champ: see Constat.
  void signaler(Code code, Fichier f, int rang, const std::string& quoi,
                const std::string& champ = {});
  /// One of the whole file.
  void signaler(Code code, Fichier f, const std::string& quoi, int ligne = 1);
};

/// "bloc", "face", "edge", "vertex".
const char* sorte(Fichier f);
/// "3, 7, 9", with "..." after the sixth.
std::string enumerer(std::span<const int> numeros);

using Regle = void (*)(Examen&);

// Links (regles_liens.cpp, regles_tours.cpp, regles_assemblage.cpp)
void regle_references(Examen& x);
void regle_tours(Examen& x);
void regle_assemblage(Examen& x);
void regle_comptes(Examen& x);
// Boundaries (regles_bords.cpp)
void regle_codes_connus(Examen& x);
void regle_codes_de_face(Examen& x);
void regle_codes_d_edge(Examen& x);
void regle_types(Examen& x);
// Geometry (regles_geometrie.cpp with regles_recalcul.cpp, regles_positions.cpp)
void regle_projections(Examen& x);
void regle_volumes(Examen& x);
void regle_confondus(Examen& x);
// Scene (regles_scene.cpp)
void regle_pieces(Examen& x);

}  // namespace topomine
