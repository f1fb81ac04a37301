#include "vtk/coins.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "mesh/numbering.h"
#include "vtk/sommets.h"

namespace topomine {

namespace {

/// True for a vertex of the files: linking makes up one at the origin for a number without vertex.
bool est_un_sommet(const Base& base, int v) {
  const auto trouve = base.vrtxs.find(v);
  return trouve != base.vrtxs.end() && trouve->second._id() == v;
}

using Place = std::size_t;
constexpr Place nb_places = nb_faces_bloc;
/// The four edges of a face in the order of its slots: around it.
using Tour = std::array<int, nb_edges_face>;

/// The block slots around slot s, in the order of a face's own edge slots.
constexpr std::array<Place, 4> autour(Place s) {
  const int axe = static_cast<int>(s) % 3, l = axe == 0 ? 1 : 0, m = axe == 2 ? 1 : 2;
  std::array<Place, 4> places{};
  for (int q = 0; q < 4; ++q)
    places[static_cast<Place>(q)] = static_cast<Place>(place_face(q / 2, q % 2 == 0 ? l : m));
  return places;
}

Tour edges_de(const Face& face) {
  Tour tour{};
  for (int p = 0; p < nb_edges_face; ++p) tour[static_cast<Place>(p)] = face._edge(p);
  return tour;
}

/// The different ways to lay a face into its slot: turned and turned over.
std::vector<Tour> poses(const Tour& tour) {
  std::vector<Tour> toutes;
  for (Place r = 0; r < 4; ++r)
    for (const bool retournee : {false, true}) {
      Tour pose{};
      for (Place p = 0; p < 4; ++p) pose[retournee ? (r + 4 - p) % 4 : (r + p) % 4] = tour[p];
      if (std::ranges::count(toutes, pose) == 0) toutes.push_back(pose);
    }
  return toutes;
}

/// Lays the six faces of a block so that neighbours agree on the edge between them. An empty slot
/// is a face that has shrunk to a line or a point.
class Assemblage {
 public:
  Assemblage(const Base& base, const Block& bloc) : base_(base) {
    for (Place s = 0; s < nb_places; ++s) {
      const int f = bloc._face(static_cast<int>(s));
      const auto face = base.faces.find(f);
      if (f == 0)
        ordre_vides_.push_back(s);
      else if (face != base.faces.end() && face->second._id() == f)
        presentes_.push_back({s, poses(edges_de(face->second))});
    }
    for (auto& ligne : edges_) ligne.fill(edge_inconnue);
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
    Place place;
    std::vector<Tour> poses;
  };

  /// Writes the edges around slot s where nothing is known yet, then goes on; undone afterwards.
  template <class Suite>
  void essayer(Place s, const Tour& pose, Suite suite) {
    if (--essais_ < 0) return;
    const auto voisins = autour(s);
    std::array<bool, 4> mises{};
    bool accord = true;
    for (Place q = 0; q < 4 && accord; ++q) {
      const int la = edges_[s][voisins[q]];
      if (pose[q] == edge_inconnue) continue;
      mises[q] = la == edge_inconnue;
      accord = mises[q] || la == pose[q];
      if (mises[q]) mettre(s, voisins[q], pose[q]);
    }
    if (accord) suite();
    for (Place q = 0; q < 4; ++q)
      if (mises[q]) mettre(s, voisins[q], edge_inconnue);
  }

  void mettre(Place s, Place t, int edge) { edges_[s][t] = edges_[t][s] = edge; }

  void poser_presente(Place rang, int ignorees) {
    if (rang == presentes_.size()) return poser_vide(0);
    const Presente& p = presentes_[rang];
    for (const Tour& pose : p.poses)
      essayer(p.place, pose, [&] { poser_presente(rang + 1, ignorees); });
    if (ignorees > 0) poser_presente(rang + 1, ignorees - 1);
  }

  /// Shrunk along one axis or the other: the two edges along it are points, the other two are one.
  void poser_vide(Place rang) {
    if (rang == ordre_vides_.size()) return garder();
    const Place s = ordre_vides_[rang];
    const auto voisins = autour(s);
    for (const Place q : {Place{0}, Place{1}}) {
      const int la = edges_[s][voisins[q]], bas = edges_[s][voisins[q + 2]];
      Tour pose{};
      pose[q] = pose[q + 2] = la != edge_inconnue ? la : bas;
      essayer(s, pose, [&] { poser_vide(rang + 1); });
    }
  }

  void garder() {
    Sommets sommets(base_, 8);
    for (Place s = 0; s < nb_places; ++s)
      for (Place t = s + 1; t < nb_places; ++t) {
        if (s % 3 == t % 3) continue;
        // Corners have bit n set on the maximum side of axis n.
        const Place libre = Place{1} << (3 - s % 3 - t % 3);
        const Place a = (s / 3) << (s % 3) | (t / 3) << (t % 3);
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
  std::vector<Place> ordre_vides_;
  std::array<std::array<int, nb_places>, nb_places> edges_;
  int essais_{};
  std::optional<CoinsBloc> meilleurs_;
  double volume_{};
};

}  // namespace

std::optional<CoinsBloc> coins_bloc(const Base& base, const Block& bloc) {
  CoinsBloc coins{};
  bool tous = true;
  for (int c = 0; c < 8 && tous; ++c) {
    const int v = base.blk_vrtx_ijk(bloc._id(), c & 1, c >> 1 & 1, c >> 2);
    coins[static_cast<Place>(c)] = v;
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
  for (const auto& [p, q, r] : {std::array<Place, 3>{1, 2, 3}, {2, 1, 3}, {1, 3, 2}}) {
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

Vec position(const Base& base, int vertex) {
  Vec p;
  base.vrtxs.at(vertex).get_pos(p.x, p.y, p.z);
  return p;
}

double volume(const std::array<Vec, 8>& coins) {
  // The volume under a bilinear face is the mean over its two triangulations. Taken from corner 0;
  // faces there add only their curvature.
  constexpr auto faces = std::to_array<std::array<Place, 4>>(
      {{0, 4, 6, 2}, {0, 1, 5, 4}, {0, 2, 3, 1}, {1, 3, 7, 5}, {2, 6, 7, 3}, {4, 5, 7, 6}});
  double somme = 0;
  for (const auto& [a, b, c, d] : faces) {
    const Vec A = coins[a] - coins[0], B = coins[b] - coins[0], C = coins[c] - coins[0],
              D = coins[d] - coins[0];
    somme += det(A, B, C) + det(A, C, D) + det(A, B, D) + det(B, C, D);
  }
  return somme / 12;
}

double volume(const Base& base, const CoinsBloc& coins) {
  std::array<Vec, 8> positions;
  for (Place c = 0; c < 8; ++c) positions[c] = position(base, coins[c]);
  return volume(positions);
}

}  // namespace topomine
