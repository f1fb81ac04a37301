#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/configuration.h"
#include "verifie/catalogue.h"
#include "verifie/examen.h"

namespace topomine {

namespace {

/// Families of the codes that faces or edges bear.
struct Vues {
  std::set<std::string> toutes;
  std::map<std::string, int> parois;  // with a face that bears it
};

Vues familles_vues(const Examen& x) {
  std::set<int> codes;
  std::map<int, int> de_face;
  for (std::size_t f = 0; f < x.faces.size(); ++f)
    for (int i = 0; i < x.faces[f]->nb_BC(); ++i) {
      codes.insert(x.faces[f]->_BC(i));
      if (!x.est_douteux(fic_face, static_cast<int>(f)))
        de_face.try_emplace(x.faces[f]->_BC(i), static_cast<int>(f));
    }
  for (const Edge* e : x.edges)
    for (int i = 0; i < e->nb_BC(); ++i) codes.insert(e->_BC(i));
  Vues vues;
  for (const int code : codes) {
    const auto l = x.config.codes.find(code);
    if (l == x.config.codes.end()) continue;
    vues.toutes.insert(l->second.famille);
    if (const auto f = de_face.find(code); f != de_face.end() && l->second.bccode == bccode_paroi)
      vues.parois.try_emplace(l->second.famille, f->second);
  }
  return vues;
}

/// Says which pieces have a family that no code bears, or are in C and on no block; true when there
/// are any. vues: null when it is not known what the blocks see.
bool dire_familles(Examen& x, const Vues* vues) {
  std::set<std::string> connues;
  for (const auto& [code, l] : x.config.codes) connues.insert(l.famille);
  bool une_inconnue = false;
  for (const auto& entree : x.cas.base.pieces) {
    const std::string& famille = entree.first;  // clang 14 captures no structured binding
    const Piece& piece = entree.second;
    const auto dire = [&](Code code, const std::string& quoi) {
      x.cas.signaler(code, fic_def, x.cas.lignes_pieces[famille], "piece", citer(piece._nom()),
                     "famille " + entre_apostrophes(famille) + quoi);
    };
    const bool c = piece._topology() == 'C';
    if (!connues.contains(famille)) {
      une_inconnue = true;
      dire(c ? Code::famille_c_inconnue : Code::famille_inconnue,
           " qu'aucun code de climite.cfg ne porte");
    } else if (c && vues && !vues->toutes.contains(famille)) {
      une_inconnue = true;
      dire(Code::famille_c_non_vue, " d'une piece en C qu'aucun bloc ne voit");
    }
  }
  return une_inconnue;
}

}  // namespace

void regle_pieces(Examen& x) {
  const auto erreur_dans = [](const std::vector<Constat>& constats, const std::string& fichier) {
    return std::ranges::any_of(constats, [&](const Constat& c) {
      return c.fichier == fichier && fiche(c.code).gravite == Gravite::erreur;
    });
  };
  // A family that is not known follows from a row that could not be read.
  if (!x.lus({fic_def}) || !x.config.lue || erreur_dans(x.config.constats, x.config.nom)) return;
  const bool maille = x.lus({fic_blck, fic_face, fic_edge});
  const Vues vues = maille ? familles_vues(x) : Vues{};
  const auto& pieces = x.cas.base.pieces;
  bool une_vue = pieces.empty() || vues.parois.empty();
  for (const auto& [famille, piece] : pieces) une_vue = une_vue || vues.toutes.contains(famille);
  if (!une_vue) {
    x.signaler(Code::scene_d_un_autre_cas, fic_def, "aucun bloc ne voit une piece de cette scene");
    return;
  }
  // A wall without its piece follows from these.
  if (dire_familles(x, maille ? &vues : nullptr) || x.cas.perdus[fic_def] > 0 ||
      erreur_dans(x.cas.constats, x.cas.noms[fic_def]))
    return;
  if (pieces.empty() && !vues.parois.empty()) {
    x.signaler(Code::paroi_sans_piece, fic_def,
               "aucune piece, " + std::to_string(vues.parois.size()) +
                   " famille(s) de paroi bordent les blocs",
               x.cas.ligne_avion("liste_pieces"));
    return;
  }
  for (const auto& [famille, f] : vues.parois)
    if (!pieces.contains(famille))
      x.signaler(Code::paroi_sans_piece, fic_face, f,
                 "paroi de famille " + entre_apostrophes(famille) + " que la scene ne nomme pas");
}

}  // namespace topomine
