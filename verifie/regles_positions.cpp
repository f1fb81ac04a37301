#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "texte/nombres.h"
#include "verifie/examen.h"

namespace topomine {

namespace {

/// Edges of each vertex.
Listes edges_de_sommet(const Maille& m) {
  return {m.positions.size(), [&](auto ajouter) {
            for (int e = 0; e < m.num_edges.nb(); ++e)
              for (const int v : au(m.edges, e))
                if (v >= 0) ajouter(v, e);
          }};
}

int autre_bout(const Maille& m, int edge, int bout) {
  const auto& bouts = au(m.edges, edge);
  return bouts[0] == bout ? bouts[1] : bouts[0];
}

double plus_grande(const Vec& p) {
  return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
}

/// Its square does not overflow.
bool fini(const Vec& p) {
  return plus_grande(p) <= 1e150;
}

}  // namespace

/// A vertex that is farther from its projections than from its nearest neighbour is misplaced.
void regle_projections(Examen& x) {
  if (x.liens_perdus || !x.lus({fic_edge, fic_vrtx})) return;
  const std::vector<Vec>& positions = x.maille.positions;
  std::vector<double> voisin(positions.size(), std::numeric_limits<double>::infinity());
  for (const auto& [v, w] : x.maille.edges) {
    if (v < 0 || w < 0) continue;
    const double d = distance(au(positions, v), au(positions, w));
    for (const int bout : {v, w}) au(voisin, bout) = std::min(au(voisin, bout), d);
  }
  std::vector<std::pair<int, double>> loin;
  std::size_t projetes = 0;
  int rang = -1;
  for (const auto& [numero, vertex] : x.cas.base.vrtxs) {
    ++rang;
    if (!fini(au(positions, rang))) {
      x.signaler(Code::nombre_trop_grand, fic_vrtx, rang, "position au-dela de 1e150", "Coord");
      x.douter(fic_vrtx, rang);
    }
    if (vertex.nb_proj() == 0 || x.est_douteux(fic_vrtx, rang)) continue;
    ++projetes;
    double d = 0;
    for (int k = 0; k < vertex.nb_proj(); ++k) {
      Vec p, normale;
      int surface{};
      vertex.get_proj_pt(k, surface, p.x, p.y, p.z, normale.x, normale.y, normale.z);
      d = std::max(d, distance(p, au(positions, rang)));
    }
    if (d > au(voisin, rang)) loin.emplace_back(rang, d);
  }
  if (loin.size() * 4 > projetes && loin.size() > 3) return;  // projected onto a coarse surface
  for (const auto& [v, d] : loin) {
    x.signaler(Code::projection_loin, fic_vrtx, v,
               "a " + en_texte(d) + " d'une de ses projections, a " + en_texte(au(voisin, v)) +
                   " de son plus proche voisin");
    x.douter(fic_vrtx, v);
  }
}

namespace {

/// Vertices by the cell of a grid that they lie in: only those of cells next to each other can be
/// in the same place.
class Grille {
 public:
  explicit Grille(const std::vector<Vec>& positions) : positions_(positions) {
    // The median: one vertex far away must not bring all the others together.
    std::vector<double> tailles;
    std::ranges::transform(positions, std::back_inserter(tailles), plus_grande);
    if (tailles.empty()) return;
    const auto milieu = tailles.begin() + static_cast<std::ptrdiff_t>(tailles.size() / 2);
    std::ranges::nth_element(tailles, milieu);
    tolerance_ = *milieu * 1e-9;  // of files that give ten digits
    pas_ = tolerance_ * 4;        // a few tens of distinct places at most
  }

  /// Calls `voir` with each vertex that is in the place of an earlier one, and that one.
  template <class Voir>
  void parcourir(Voir voir) {
    if (!(pas_ > 0)) return;
    for (int v = 0; v < static_cast<int>(positions_.size()); ++v) {
      if (plus_grande(au(positions_, v)) >= pas_ * 1e15) continue;
      int autre = inconnu;
      pour_chaque_cellule(v, [&](std::uint64_t cle, bool sienne) {
        if (sienne) sienne_ = cle;
        for (auto [ici, fin] = cellules_.equal_range(cle); autre == inconnu && ici != fin; ++ici)
          if (distance(au(positions_, v), au(positions_, ici->second)) <= tolerance_)
            autre = ici->second;
      });
      if (autre == inconnu)
        cellules_.emplace(sienne_, v);
      else
        voir(autre, v);
    }
  }

 private:
  /// Its own cell, and those that it lies so near to that a vertex there could be in its place.
  template <class Faire>
  void pour_chaque_cellule(int v, Faire faire) const {
    std::array<std::array<std::int64_t, 2>, 3> q{};
    std::array<int, 3> nb{};
    const Vec& p = au(positions_, v);
    for (std::size_t d = 0; d < 3; ++d) {
      const double u = (d == 0 ? p.x : d == 1 ? p.y : p.z) / pas_, bas = std::floor(u);
      q[d][0] = static_cast<std::int64_t>(bas);
      nb[d] = 1;
      if (u - bas < 0.25) q[d][static_cast<std::size_t>(nb[d]++)] = q[d][0] - 1;
      if (u - bas > 0.75) q[d][static_cast<std::size_t>(nb[d]++)] = q[d][0] + 1;
    }
    for (int i = 0; i < nb[0]; ++i)
      for (int j = 0; j < nb[1]; ++j)
        for (int k = 0; k < nb[2]; ++k)
          faire(melange(q[0][static_cast<std::size_t>(i)], q[1][static_cast<std::size_t>(j)],
                        q[2][static_cast<std::size_t>(k)]),
                i + j + k == 0);
  }
  static std::uint64_t melange(std::int64_t i, std::int64_t j, std::int64_t k) {
    std::uint64_t cle = 0;
    for (const std::int64_t q : {i, j, k}) {
      cle = (cle ^ static_cast<std::uint64_t>(q)) * 0x9e3779b97f4a7c15u;
      cle ^= cle >> 29;
    }
    return cle;
  }

  const std::vector<Vec>& positions_;
  double tolerance_ = 0, pas_ = 0;
  std::uint64_t sienne_{};
  std::unordered_multimap<std::uint64_t, int> cellules_;
};

/// Tells places that are shared for a reason: the two sides of an interface or of a wall without
/// thickness are not linked to each other, and meet along edges.
class Coutures {
 public:
  explicit Coutures(Examen& x)
      : x_(x), m_(x.maille), edges_(edges_de_sommet(x.maille)), au_bord_(m_.positions.size(), 0) {
    for (int f = 0; f < m_.num_faces.nb(); ++f)
      if (m_.blocs_de_face[f].size() == 1)
        for (const int v : m_.sommets(f)) au(au_bord_, v) = true;
  }

  void ajouter(int v, int w) { paires_.emplace_back(v, w); }

  void dire() {
    std::ranges::sort(paires_);
    std::vector<std::pair<int, int>> sans_raison;
    std::ranges::copy_if(paires_, std::back_inserter(sans_raison),
                         [&](const auto& p) { return !raison(p.first, p.second); });
    // So many of them are no slips of their own: the volumes will tell.
    const bool isoles = sans_raison.size() <= std::max<std::size_t>(3, m_.positions.size() / 20);
    for (const auto& [v, w] : sans_raison) {
      std::string dit = "au meme endroit que le vertex " + std::to_string(x_.numero(fic_vrtx, v));
      if (const int e = m_.edge_entre(v, w); e != inconnu)
        dit += ", l'edge " + std::to_string(x_.numero(fic_edge, e)) + " entre eux est nulle";
      x_.signaler(Code::sommets_confondus, fic_vrtx, w, dit);
      if (!isoles) continue;
      x_.douter(fic_vrtx, v);
      x_.douter(fic_vrtx, w);
    }
  }

 private:
  bool raison(int v, int w) const {
    if (!au(au_bord_, v) || !au(au_bord_, w) || bloc_commun(v, w)) return false;
    if (edges_[v].size() + edges_[w].size() > beaucoup) return true;
    for (const int e : edges_[v])
      for (const int g : edges_[w]) {
        const int p = autre_bout(m_, e, v), q = autre_bout(m_, g, w);
        if (p < 0 || q < 0) return true;
        if (p == q || std::ranges::binary_search(paires_, std::pair<int, int>(std::minmax(p, q))))
          return true;
      }
    return false;
  }
  bool bloc_commun(int v, int w) const {
    const auto blocs = [&](int s) {
      std::vector<int> liste;
      for (const int e : edges_[s])
        for (const int f : m_.faces_d_edge[e])
          for (const int b : m_.blocs_de_face[f]) liste.push_back(b);
      return liste;
    };
    const std::vector<int> de_w = blocs(w);
    return std::ranges::any_of(blocs(v), [&](int b) { return contient(de_w, b); });
  }

  Examen& x_;
  const Maille& m_;
  Listes edges_;
  std::vector<char> au_bord_;
  std::vector<std::pair<int, int>> paires_;
};

}  // namespace

/// Two vertices in one place, that nothing explains.
void regle_confondus(Examen& x) {
  if (x.liens_perdus || !x.lus({fic_blck, fic_face, fic_edge, fic_vrtx})) return;
  std::vector<std::pair<int, int>> paires;
  Grille(x.maille.positions).parcourir([&](int v, int w) {
    if (!x.est_douteux(fic_vrtx, v) && !x.est_douteux(fic_vrtx, w)) paires.emplace_back(v, w);
  });
  if (paires.empty()) return;
  Coutures coutures(x);
  for (const auto& [v, w] : paires) coutures.ajouter(v, w);
  coutures.dire();
}

}  // namespace topomine
