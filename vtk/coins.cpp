#include "vtk/coins.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "mesh/numbering.h"

namespace topomine {

namespace {

/// True for a vertex of the files: linking makes up one at the origin for a number without vertex.
bool est_un_sommet(const Base& base, int v) {
  const auto trouve = base.vrtxs.find(v);
  return trouve != base.vrtxs.end() && trouve->second._id() == v;
}

constexpr int effacee = 0;    // the edge has shrunk to a point
constexpr int inconnue = -1;  // nothing says which edge it is

/// The edge between two corners, by their ranks.
struct Cote {
  std::size_t a, b;
  int edge;
  std::array<int, 2> bouts{};
};

/// Finds the vertices of corners from the edges between them.
class Sommets {
 public:
  Sommets(const Base& base, std::size_t nb) : base_(base), coins_(nb) {}

  /// False when the edge's ends are not known.
  bool joindre(std::size_t a, std::size_t b, int edge) {
    if (edge == inconnue) return true;
    Cote cote{a, b, edge, {}};
    if (edge != effacee) {
      const auto bouts = bouts_edge(base_, edge);
      if (!bouts) return false;
      cote.bouts = *bouts;
    }
    cotes_.push_back(cote);
    return true;
  }

  bool resoudre() {
    const auto libre = [&](std::size_t c) { return !coins_[c] && determine(c); };
    std::size_t c = 0;
    while (c < coins_.size() && !libre(c)) ++c;
    if (c == coins_.size())
      return std::ranges::all_of(coins_, [](const auto& v) { return v.has_value(); });
    return std::ranges::any_of(candidats(c), [&](int v) {
      coins_[c] = v;
      const bool trouve = resoudre();
      if (!trouve) coins_[c].reset();
      return trouve;
    });
  }

  template <std::size_t N>
  std::array<int, N> coins() const {
    std::array<int, N> v{};
    for (std::size_t i = 0; i < N; ++i) v[i] = *coins_[i];
    return v;
  }

 private:
  static std::size_t autre(const Cote& cote, std::size_t c) {
    return cote.a == c ? cote.b : cote.a;
  }

  /// True when an edge at corner c leaves few vertices to it.
  bool determine(std::size_t c) const {
    return std::ranges::any_of(cotes_, [&](const Cote& cote) {
      return (cote.a == c || cote.b == c) && (cote.edge != effacee || coins_[autre(cote, c)]);
    });
  }

  bool convient(std::size_t c, int v) const {
    return std::ranges::all_of(cotes_, [&](const Cote& cote) {
      if (cote.a != c && cote.b != c) return true;
      const std::optional<int>& w = coins_[autre(cote, c)];
      if (cote.edge == effacee) return !w || *w == v;
      const auto [p, q] = cote.bouts;
      return (v == p && (!w || *w == q)) || (v == q && (!w || *w == p));
    });
  }

  std::vector<int> candidats(std::size_t c) const {
    std::vector<int> valeurs;
    const auto proposer = [&](int v) {
      if (std::ranges::count(valeurs, v) == 0 && convient(c, v)) valeurs.push_back(v);
    };
    for (const Cote& cote : cotes_) {
      if (cote.a != c && cote.b != c) continue;
      if (cote.edge != effacee)
        for (const int v : cote.bouts) proposer(v);
      else if (const auto& w = coins_[autre(cote, c)])
        proposer(*w);
    }
    return valeurs;
  }

  const Base& base_;
  std::vector<Cote> cotes_;
  std::vector<std::optional<int>> coins_;
};

using Slot = std::size_t;
constexpr Slot nb_slots = nb_faces_bloc;
/// The four edges of a face in the order of its slots: around it.
using Tour = std::array<int, nb_edges_face>;

/// The block slots around slot s, in the order of a face's own edge slots.
constexpr std::array<Slot, 4> autour(Slot s) {
  const int axe = static_cast<int>(s) % 3, l = axe == 0 ? 1 : 0, m = axe == 2 ? 1 : 2;
  std::array<Slot, 4> slots{};
  for (int q = 0; q < 4; ++q)
    slots[static_cast<Slot>(q)] = static_cast<Slot>(place_face(q / 2, q % 2 == 0 ? l : m));
  return slots;
}

Tour edges_de(const Face& face) {
  Tour tour{};
  for (int p = 0; p < nb_edges_face; ++p) tour[static_cast<Slot>(p)] = face._edge(p);
  return tour;
}

/// The different ways to lay a face into its slot: turned and turned over.
std::vector<Tour> poses(const Tour& tour) {
  std::vector<Tour> toutes;
  for (Slot r = 0; r < 4; ++r)
    for (const bool retournee : {false, true}) {
      Tour pose{};
      for (Slot p = 0; p < 4; ++p) pose[retournee ? (r + 4 - p) % 4 : (r + p) % 4] = tour[p];
      if (std::ranges::count(toutes, pose) == 0) toutes.push_back(pose);
    }
  return toutes;
}

/// Lays the six faces of a block so that neighbours agree on the edge between them. An empty slot
/// is a face that has shrunk to a line or a point.
class Assemblage {
 public:
  Assemblage(const Base& base, const Block& bloc) : base_(base) {
    for (Slot s = 0; s < nb_slots; ++s) {
      const int f = bloc._face(static_cast<int>(s));
      const auto face = base.faces.find(f);
      if (f == 0)
        ordre_vides_.push_back(s);
      else if (face != base.faces.end() && face->second._id() == f)
        presentes_.push_back({s, poses(edges_de(face->second))});
    }
    for (auto& ligne : edges_) ligne.fill(inconnue);
  }

  /// The corners, where `ignorees` faces fit in nowhere. Of several solutions (mirror images), the
  /// one with the largest volume.
  std::optional<CoinsBloc> resoudre(int ignorees) {
    essais_ = 1000;
    poser_presente(0, ignorees);
    return meilleurs_;
  }

 private:
  struct Presente {
    Slot slot;
    std::vector<Tour> poses;
  };

  /// Writes the edges around slot s where nothing is known yet, then goes on; undone afterwards.
  template <class Suite>
  void essayer(Slot s, const Tour& pose, Suite suite) {
    if (--essais_ < 0) return;
    const auto voisins = autour(s);
    std::array<bool, 4> mises{};
    bool accord = true;
    for (Slot q = 0; q < 4 && accord; ++q) {
      const int la = edges_[s][voisins[q]];
      if (pose[q] == inconnue) continue;
      mises[q] = la == inconnue;
      accord = mises[q] || la == pose[q];
      if (mises[q]) mettre(s, voisins[q], pose[q]);
    }
    if (accord) suite();
    for (Slot q = 0; q < 4; ++q)
      if (mises[q]) mettre(s, voisins[q], inconnue);
  }

  void mettre(Slot s, Slot t, int edge) { edges_[s][t] = edges_[t][s] = edge; }

  void poser_presente(Slot rang, int ignorees) {
    if (rang == presentes_.size()) return poser_vide(0);
    const Presente& p = presentes_[rang];
    for (const Tour& pose : p.poses)
      essayer(p.slot, pose, [&] { poser_presente(rang + 1, ignorees); });
    if (ignorees > 0) poser_presente(rang + 1, ignorees - 1);
  }

  /// Shrunk along one axis or the other: the two edges along it are points, the other two are one.
  void poser_vide(Slot rang) {
    if (rang == ordre_vides_.size()) return garder();
    const Slot s = ordre_vides_[rang];
    const auto voisins = autour(s);
    for (const Slot q : {Slot{0}, Slot{1}}) {
      const int la = edges_[s][voisins[q]], bas = edges_[s][voisins[q + 2]];
      Tour pose{};
      pose[q] = pose[q + 2] = la != inconnue ? la : bas;
      essayer(s, pose, [&] { poser_vide(rang + 1); });
    }
  }

  void garder() {
    Sommets sommets(base_, 8);
    for (Slot s = 0; s < nb_slots; ++s)
      for (Slot t = s + 1; t < nb_slots; ++t) {
        if (s % 3 == t % 3) continue;
        // Corners have bit n set on the maximum side of axis n.
        const Slot libre = Slot{1} << (3 - s % 3 - t % 3);
        const Slot a = (s / 3) << (s % 3) | (t / 3) << (t % 3);
        if (!sommets.joindre(a, a | libre, edges_[s][t])) return;
      }
    if (!sommets.resoudre()) return;
    const auto coins = sommets.coins<8>();
    const double v = volume(base_, coins);
    if (meilleurs_ && !(v > volume_)) return;
    meilleurs_ = coins;
    volume_ = v;
  }

  const Base& base_;
  std::vector<Presente> presentes_;
  std::vector<Slot> ordre_vides_;
  std::array<std::array<int, nb_slots>, nb_slots> edges_;
  int essais_ = 0;
  std::optional<CoinsBloc> meilleurs_;
  double volume_ = 0;
};

Position moins(const Position& a, const Position& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double produit_mixte(const Position& a, const Position& b, const Position& c) {
  return a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
         a[2] * (b[0] * c[1] - b[1] * c[0]);
}

}  // namespace

std::optional<CoinsBloc> coins_bloc(const Base& base, const Block& bloc) {
  CoinsBloc coins{};
  bool tous = true;
  for (int c = 0; c < 8 && tous; ++c) {
    const int v = base.blk_vrtx_ijk(bloc._id(), c & 1, c >> 1 & 1, c >> 2);
    coins[static_cast<Slot>(c)] = v;
    tous = v > 0 && est_un_sommet(base, v);
  }
  if (tous) return coins;
  Assemblage assemblage(base, bloc);
  for (const int ignorees : {0, 1, 2})
    if (const auto trouves = assemblage.resoudre(ignorees)) return trouves;
  return {};
}

std::optional<CoinsFace> coins_face(const Base& base, const Face& face) {
  const Tour tour = edges_de(face);
  // Around the face as its slots say, or else in another order in which the edges meet.
  for (const auto& [p, q, r] : {std::array<Slot, 3>{1, 2, 3}, {2, 1, 3}, {1, 3, 2}}) {
    Sommets sommets(base, 4);
    if (sommets.joindre(3, 0, tour[0]) && sommets.joindre(0, 1, tour[p]) &&
        sommets.joindre(1, 2, tour[q]) && sommets.joindre(2, 3, tour[r]) && sommets.resoudre())
      return sommets.coins<4>();
  }
  return {};
}

std::optional<std::array<int, 2>> bouts_edge(const Base& base, int edge) {
  const auto trouve = base.edges.find(edge);
  if (trouve == base.edges.end() || trouve->second._id() != edge) return {};
  const std::array<int, 2> bouts{trouve->second._vrtx(0), trouve->second._vrtx(1)};
  if (!est_un_sommet(base, bouts[0]) || !est_un_sommet(base, bouts[1])) return {};
  return bouts;
}

Position position(const Base& base, int vertex) {
  Position p{};
  base.vrtxs.at(vertex).get_pos(p[0], p[1], p[2]);
  return p;
}

double volume(const std::array<Position, 8>& coins) {
  // Under a bilinear face lies the mean of what lies under its two cuts into triangles; the faces
  // at corner 0 have nothing under them but their bulge.
  constexpr std::array<std::array<Slot, 4>, 6> faces{
      {{0, 4, 6, 2}, {0, 1, 5, 4}, {0, 2, 3, 1}, {1, 3, 7, 5}, {2, 6, 7, 3}, {4, 5, 7, 6}}};
  double somme = 0;
  for (const auto& [a, b, c, d] : faces) {
    const Position A = moins(coins[a], coins[0]), B = moins(coins[b], coins[0]),
                   C = moins(coins[c], coins[0]), D = moins(coins[d], coins[0]);
    somme += produit_mixte(A, B, C) + produit_mixte(A, C, D) + produit_mixte(A, B, D) +
             produit_mixte(B, C, D);
  }
  return somme / 12;
}

double volume(const Base& base, const CoinsBloc& coins) {
  std::array<Position, 8> positions;
  for (Slot c = 0; c < 8; ++c) positions[c] = position(base, coins[c]);
  return volume(positions);
}

}  // namespace topomine
