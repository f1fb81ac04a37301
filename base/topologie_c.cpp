#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/base.h"
#include "base/configuration.h"

using namespace topomine;

namespace {

template <class Entite>
void ajouter_codes(std::vector<int>& codes, const Entite& entite) {
  for (int i = 0; i < entite.nb_BC(); ++i) codes.push_back(entite._BC(i));
}

/// Calls `voir` on each face of block b that the face table holds, by slot.
template <class Voir>
void pour_chaque_face(const Base& base, int b, Voir voir) {
  const auto bloc = base.blocs.find(b);
  if (bloc == base.blocs.end()) return;
  for (int i = 0; i < bloc->second.nb_face(); ++i) {
    const int f = bloc->second._face(i);
    if (f == 0) continue;
    if (const auto face = base.faces.find(f); face != base.faces.end()) voir(face->second);
  }
}

}  // namespace

std::vector<int> Base::BC_blk_face(int b) const {
  std::vector<int> codes;
  pour_chaque_face(*this, b, [&](const Face& face) { ajouter_codes(codes, face); });
  return codes;
}

std::vector<int> Base::BC_blk_edge(int b) const {
  std::vector<int> codes;
  pour_chaque_face(*this, b, [&](const Face& face) {
    for (int j = 0; j < face.nb_edge(); ++j) {
      if (const auto edge = edges.find(face._edge(j)); edge != edges.end())
        ajouter_codes(codes, edge->second);
    }
  });
  return codes;
}

int Base::maj_typeC() {
  std::set<std::string, std::less<>> familles_C;
  for (const auto& [famille, piece] : pieces) {
    if (piece._topology() == 'C') familles_C.insert(piece._fam_BC());
  }
  if (familles_C.empty()) return 1;
  // An unknown code has the empty family, and so can match a piece whose family is empty.
  std::unordered_map<int, bool> code_C;
  const std::string colonne(colonne_famille);
  const auto est_C = [&](int code) {
    const auto [place, nouveau] = code_C.try_emplace(code);
    if (nouveau) {
      const std::string* valeur = chercher_CL(code, colonne);
      const std::string_view famille = valeur ? std::string_view(*valeur) : std::string_view();
      place->second = familles_C.contains(famille);
    }
    return place->second;
  };
  const auto porte_C = [&](const auto& entite) {
    for (int i = 0; i < entite.nb_BC(); ++i)
      if (est_C(entite._BC(i))) return true;
    return false;
  };
  // Each list of codes is looked through once, however many blocks see it.
  std::unordered_set<int> edges_C, faces_C;
  for (const auto& [numero, edge] : edges)
    if (porte_C(edge)) edges_C.insert(numero);
  for (const auto& [numero, face] : faces) {
    bool voit = porte_C(face);
    for (int j = 0; j < face.nb_edge() && !voit; ++j) voit = edges_C.contains(face._edge(j));
    if (voit) faces_C.insert(numero);
  }
  for (auto& [numero, bloc] : blocs) {
    for (int i = 0; i < bloc.nb_face() && !bloc._typeC(); ++i)
      if (const int f = bloc._face(i); f != 0 && faces_C.contains(f)) bloc._typeC(true);
  }
  return 1;
}
