#include "tests/cgns/modele_de_base.h"

#include <map>
#include <stdexcept>

#include "cgns/mesures.h"
#include "mesh/numbering.h"

namespace topomine {

namespace {

using Coins = std::array<int, 8>;

/// Vertices of a block's corners i + 2j + 4k. Where the face of a corner shrank away, the edge
/// between the other two goes on to it from the corner on the other side.
Coins coins_du_bloc(const Base& b, int bloc) {
  Coins v{};
  for (int c = 0; c < 8; ++c)
    v[static_cast<std::size_t>(c)] = b.blk_vrtx_ijk(bloc, c & 1, c >> 1 & 1, c >> 2);
  for (int c = 0; c < 8; ++c) {
    if (v[static_cast<std::size_t>(c)] > 0) continue;
    for (int a = 0; a < 3; ++a) {
      const int l = (a + 1) % 3, m = (a + 2) % 3;
      const int edge = b.blk_edge(bloc, place_face(c >> l & 1, l), place_face(c >> m & 1, m));
      const int autre = v[static_cast<std::size_t>(c ^ 1 << a)];
      if (edge <= 0 || autre <= 0) continue;
      const Edge& e = b.edges.at(edge);
      v[static_cast<std::size_t>(c)] = e._vrtx(0) == autre ? e._vrtx(1) : e._vrtx(0);
    }
  }
  return v;
}

/// A face of a block: where its corners l + 2m and its sides (as edge slots) are in the base.
struct Vue {
  int bloc, place;
  std::array<int, 4> coins, cotes;
};

Vue voir_face(const Base& b, const Coins& coins, int bloc, int place) {
  Vue v{bloc, place, {}, {}};
  const auto& [l, m] = axes_lm[static_cast<std::size_t>(place % 3)];
  for (std::size_t n = 0; n < 4; ++n) {
    const std::size_t c = (n & 1) << l | (n >> 1) << m |
                          static_cast<std::size_t>(place / 3)
                              << static_cast<std::size_t>(place % 3);
    v.coins[n] = coins[c];
    v.cotes[n] = b.blk_edge(bloc, place,
                            place_face(static_cast<int>(n / 2), static_cast<int>(n % 2 ? m : l)));
  }
  return v;
}

/// How the corners of one face lie on those of the other: l + 2m goes to image[l + 2m]. The one of
/// the eight ways that no edge or vertex contradicts.
std::array<std::size_t, 4> apparier(const Vue& a, const Vue& b) {
  for (std::size_t facon = 0; facon < 8; ++facon) {
    const auto coin = [&](std::size_t l, std::size_t m) {
      if (facon & 4) std::swap(l, m);
      return (l ^ (facon & 1)) + 2 * (m ^ (facon >> 1 & 1));
    };
    const auto cote = [&](std::size_t n) {  // side n of a, by the corners at its ends
      const std::size_t axe = n % 2, fixe = n / 2;
      const std::size_t p = axe ? coin(0, fixe) : coin(fixe, 0),
                        q = axe ? coin(1, fixe) : coin(fixe, 1);
      const std::size_t commun = (p & q & 1) || !((p | q) & 1) ? 0 : 1;  // axis that does not vary
      return (commun ? p >> 1 & 1 : p & 1) * 2 + commun;
    };
    bool accord = true;
    for (std::size_t n = 0; n < 4; ++n) {
      const int va = a.coins[n], vb = b.coins[coin(n & 1, n >> 1)];
      const int ea = a.cotes[n], eb = b.cotes[cote(n)];
      accord = accord && (va <= 0 || vb <= 0 || va == vb) && (ea <= 0 || eb <= 0 || ea == eb);
    }
    if (accord) return {coin(0, 0), coin(1, 0), coin(0, 1), coin(1, 1)};
  }
  throw std::logic_error("no way to lay one face on the other");
}

Ijk noeud_du_coin(const Ijk& taille, int place, std::size_t lm) {
  Ijk p = face_entiere(taille, place).min;
  const auto& axes = axes_lm[static_cast<std::size_t>(place % 3)];
  for (std::size_t d = 0; d < 2; ++d)
    if (lm >> d & 1) p[axes[d]] = taille[axes[d]];
  return p;
}

/// The passage between faces whose corners lie on each other.
Passage passage_entre(const Ijk& ta, int sa, const Ijk& tb, int sb,
                      const std::array<std::size_t, 4>& image) {
  Passage p{noeud_du_coin(ta, sa, 0), noeud_du_coin(tb, sb, image[0]), {}};
  const auto& axes = axes_lm[static_cast<std::size_t>(sa % 3)];
  for (std::size_t d = 0; d < 2; ++d) {
    const Ijk bout = noeud_du_coin(tb, sb, image[std::size_t{1} << d]);
    for (std::size_t b = 0; b < 3; ++b)
      if (bout[b] != p.vers[b])
        p.t[axes[d]] = (bout[b] > p.vers[b] ? 1 : -1) * (static_cast<int>(b) + 1);
  }
  // What leaves one block enters the other.
  p.t[static_cast<std::size_t>(sa % 3)] = ((sa / 3 == 1) == (sb / 3 == 0) ? 1 : -1) * (sb % 3 + 1);
  return p;
}

/// Cells along each edge: the same on opposite edges of every block.
class Finesse {
 public:
  Finesse(const Base& b, bool fin) : b_(b), fin_(fin) {
    for (const auto& [n, bloc] : b.blocs)
      for (int a = 0; a < 3; ++a)
        for (const int e : aretes(n, a)) unir(aretes(n, a)[0], e);
  }
  Ijk cellules(int bloc) {
    Ijk n{1, 1, 1};
    for (int a = 0; fin_ && a < 3; ++a)
      n[static_cast<std::size_t>(a)] = 1 + racine(aretes(bloc, a)[0]) % 3;
    return n;
  }

 private:
  std::vector<int> aretes(int bloc, int axe) const {
    std::vector<int> r;
    for (int n = 0; n < 4; ++n)
      if (const int e = b_.blk_edge(bloc, place_face(n & 1, (axe + 1) % 3),
                                    place_face(n >> 1, (axe + 2) % 3));
          e > 0)
        r.push_back(e);
    return r;
  }
  int racine(int e) {
    const int p = parents_.try_emplace(e, e).first->second;
    return p == e ? e : parents_[e] = racine(p);
  }
  void unir(int a, int b) { parents_[racine(a)] = racine(b); }

  const Base& b_;
  bool fin_;
  std::map<int, int> parents_;
};

}  // namespace

std::string famille_de(const Base& base, int code) {
  return base._CL(code, "Family") + "." + std::to_string(code);
}

Modele modele_de(const Base& base, bool fin) {
  Modele m;
  m.s.base = base.nom;
  std::map<int, std::vector<Vue>> vues;  // by face
  Finesse finesse(base, fin);
  for (const auto& [n, bloc] : base.blocs) {
    const Coins coins = coins_du_bloc(base, n);
    const int rang = static_cast<int>(m.s.zones.size());
    m.zone(finesse.cellules(n), [&](double u, double v, double w) {
      Vec p;
      for (std::size_t c = 0; c < 8; ++c) {
        const Vertex& q = base.vrtxs.at(coins[c]);
        p = p + ((c & 1 ? u : 1 - u) * (c >> 1 & 1 ? v : 1 - v) * (c >> 2 ? w : 1 - w)) *
                    Vec{q._posX(), q._posY(), q._posZ()};
      }
      return p;
    });
    for (int place = 0; place < nb_faces_bloc; ++place)
      if (bloc._face(place) > 0) {
        Vue v = voir_face(base, coins, n, place);
        v.bloc = rang;
        vues[bloc._face(place)].push_back(v);
      }
  }
  for (const auto& [face, liste] : vues) {
    const auto za = static_cast<std::size_t>(liste[0].bloc);
    const int sa = liste[0].place;
    const Plage plage = face_entiere(m.taille(za), sa);
    if (liste.size() == 2) {
      const auto zb = static_cast<std::size_t>(liste[1].bloc);
      m.jonction(za, plage, zb,
                 passage_entre(m.taille(za), sa, m.taille(zb), liste[1].place,
                               apparier(liste[0], liste[1])));
      continue;
    }
    const Face& f = base.faces.at(face);
    for (int i = 0; i < f.nb_BC(); ++i)
      if (const int bccode = base.DAM2BCCODE({f._BC(i)})[0]; bccode != 9999)
        m.condition(za, plage, famille_de(base, f._BC(i)), bccode);
  }
  return m;
}

}  // namespace topomine
