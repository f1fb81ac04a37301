#include "base/base.h"

using namespace topomine;

namespace {

constexpr int inconnu = -1;     // the block (face) is not in its table
constexpr int place_vide = -2;  // a designator was a local slot that holds 0
constexpr int hors_table = -3;  // one of the two entities to compare is not in its table
constexpr int rien_en_commun = 0;

template <class Entite>
const Entite* chercher(const std::map<int, Entite>& table, int numero) {
  const auto trouve = table.find(numero);
  return trouve == table.end() ? nullptr : &trouve->second;
}

/// First number of a's slots, in order, that b's slots hold too. Two empty slots match: 0.
template <class Entite, class Lire>
int premier_commun(const Entite& a, int nb_a, const Entite& b, int nb_b, Lire lire) {
  for (int p = 0; p < nb_a; ++p) {
    for (int q = 0; q < nb_b; ++q) {
      if (lire(a, p) == lire(b, q)) return lire(a, p);
    }
  }
  return rien_en_commun;
}

/// Vertex common to two edges, given by number.
int vrtx_commun(const std::map<int, Edge>& edges, int e1, int e2) {
  const Edge* a = chercher(edges, e1);
  const Edge* b = chercher(edges, e2);
  if (!a || !b) return hors_table;
  return premier_commun(*a, a->nb_vrtx(), *b, b->nb_vrtx(),
                        [](const Edge& e, int i) { return e._vrtx(i); });
}

}  // namespace

std::vector<int> Base::vois_bloc(int b) const {
  std::vector<int> voisins;
  const Block* bloc = chercher(blocs, b);
  if (!bloc) return voisins;
  for (int i = 0; i < bloc->nb_face(); ++i) {
    const int f = bloc->_face(i);
    const Face* face = f != 0 ? chercher(faces, f) : nullptr;
    if (!face) continue;
    for (int n = 0; n < face->nb_bloc(); ++n) {
      if (face->_bloc(n) != b) voisins.push_back(face->_bloc(n));
    }
  }
  return voisins;
}

int Base::blk_face(int b, int i) const {
  const Block* bloc = chercher(blocs, b);
  return bloc ? bloc->_face(i) : 0;
}

int Base::blk_edge(int b, int F1, int F2) const {
  const Block* bloc = chercher(blocs, b);
  if (!bloc) return inconnu;
  for (int* F : {&F1, &F2}) {
    if (*F < 0 || *F >= nb_faces_bloc) continue;
    *F = bloc->_face(*F);
    if (*F == 0) return place_vide;
  }
  const Face* f1 = chercher(faces, F1);
  const Face* f2 = chercher(faces, F2);
  if (!f1 || !f2) return hors_table;
  return premier_commun(*f1, f1->nb_edge(), *f2, f2->nb_edge(),
                        [](const Face& f, int i) { return f._edge(i); });
}

int Base::blk_vrtx_fac(int b, int F1, int F2, int F3) const {
  const int e1 = blk_edge(b, F1, F2);
  if (e1 < 1) return e1;
  const int e2 = blk_edge(b, F1, F3);
  if (e2 < 1) return e2;
  return vrtx_commun(edges, e1, e2);
}

int Base::blk_vrtx_ijk(int b, int i, int j, int k) const {
  return blk_vrtx_fac(b, place_face(i, 0), place_face(j, 1), place_face(k, 2));
}

int Base::fac_edge(int f, int i) const {
  const Face* face = chercher(faces, f);
  return face ? face->_edge(i) : 0;
}

int Base::fac_vrtx_edg(int f, int E1, int E2) const {
  const Face* face = chercher(faces, f);
  if (!face) return inconnu;
  for (int* E : {&E1, &E2}) {
    if (*E < 0 || *E >= nb_edges_face) continue;
    *E = face->_edge(*E);
    if (*E == 0) return place_vide;
  }
  return vrtx_commun(edges, E1, E2);
}

int Base::fac_vrtx_lm(int f, int l, int m) const {
  return fac_vrtx_edg(f, place_edge(l, 0), place_edge(m, 1));
}
