#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/base.h"
#include "base/lecture/climite.h"

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
  std::vector<std::string> familles_C;
  for (const auto& [famille, piece] : pieces) {
    if (piece._topology() == 'C') familles_C.push_back(piece._fam_BC());
  }
  if (familles_C.empty()) return 1;
  // An unknown code has the empty family, and so can match a piece whose family is empty.
  std::map<int, bool> code_C;
  const std::string colonne_famille = "Family";
  const auto est_C = [&](int code) {
    const auto [place, nouveau] = code_C.try_emplace(code, false);
    if (nouveau) {
      const std::string* valeur = chercher_CL(code, colonne_famille);
      const std::string_view famille = valeur ? std::string_view(*valeur) : std::string_view();
      place->second = std::ranges::count(familles_C, famille) > 0;
    }
    return place->second;
  };
  for (auto& [numero, bloc] : blocs) {
    if (bloc._typeC()) continue;
    if (std::ranges::any_of(BC_blk_face(numero), est_C) ||
        std::ranges::any_of(BC_blk_edge(numero), est_C))
      bloc._typeC(true);
  }
  return 1;
}
