// Cutting of a shape. Blocks go layer by layer along the sweep; the last layer stops
// at the number asked for, and the faces so left bare form a patch of their own.
#include "tools/gen/maillage.h"

#include <algorithm>
#include <unordered_map>

namespace topomine::gen {

namespace {

constexpr Num libre = ~Num{0};

/// Position of a cut, ends exact.
double etirer(double t, double a) {
  return t + a * t * (t - 1);
}

class Mailleur {
 public:
  Mailleur(const Forme& f, Num nb_bloc) : f_(f), nb_bloc_(nb_bloc) {}

  Maillage executer() {
    compter();
    numeroter_section();
    m_.blocs.reserve(nb_bloc_);
    for (Num k = 0; k < couches_; ++k)
      for (Num z = 0; z < f_.zones.size(); ++z)
        for (Num j = 0; j < n_[f_.zones[z].v]; ++j)
          for (Num i = 0; i < n_[f_.zones[z].u] && m_.blocs.size() < nb_bloc_; ++i)
            ajouter_bloc(z, {i, j, k});
    habiller();
    return std::move(m_);
  }

 private:
  Num taille_section() const {
    Num t = 0;
    for (const Zone& z : f_.zones) t += n_[z.u] * n_[z.v];
    return t;
  }

  /// The finest cut, all directions growing together, that leaves enough blocks to be as deep as it
  /// is wide.
  void compter() {
    n_.resize(f_.classes.size());
    std::vector<Num> garde;
    for (Num pas = 4;; ++pas) {
      for (std::size_t c = 0; c < n_.size(); ++c)
        n_[c] = std::max(f_.classes[c].mini, static_cast<Num>(0.25 * pas * f_.classes[c].poids));
      if (!garde.empty() && std::uint64_t{taille_section()} * n_.back() > nb_bloc_) break;
      garde = n_;
    }
    n_ = garde;
    const Num t = std::max<Num>(1, taille_section());
    n_.back() = couches_ = (nb_bloc_ + t - 1) / t;
  }

  /// Places of the section's nodes: corners by their letter, then insides of sides, then of zones.
  void numeroter_section() {
    Num suivant = 128;
    debut_cote_.resize(f_.cotes.size(), libre);
    for (const Zone& z : f_.zones) {
      for (unsigned b = 0; b < 4; ++b) {
        Num& debut = debut_cote_[z.bords[b].cote];
        if (debut != libre) continue;
        debut = suivant;
        suivant += n_[b % 2 ? z.u : z.v] - 1;
      }
      debut_zone_.push_back(suivant);
      suivant += (n_[z.u] - 1) * (n_[z.v] - 1);
    }
    noeuds_section_ = suivant;
    sommet_de_.assign(std::size_t{noeuds_section_} * (couches_ + 1), libre);
  }

  Num noeud(Num zone, Num i, Num j) const {
    const Zone& z = f_.zones[zone];
    const Num nu = n_[z.u], nv = n_[z.v];
    const bool bout_u = i == 0 || i == nu, bout_v = j == 0 || j == nv;
    if (bout_u && bout_v)
      return static_cast<unsigned char>(z.coins[j == 0 ? (i == 0 ? 0 : 1) : (i == 0 ? 3 : 2)]);
    if (!bout_u && !bout_v) return debut_zone_[zone] + (j - 1) * (nu - 1) + i - 1;
    const Zone::Bord& b = z.bords[bout_u ? (i == 0 ? 0 : 2) : (j == 0 ? 1 : 3)];
    const Num rang = bout_u ? j : i, n = bout_u ? nv : nu;
    return debut_cote_[b.cote] + (b.inverse ? n - rang : rang) - 1;
  }

  Dual3 point(Num zone, const std::array<Num, 3>& ijk) const {
    const Zone& z = f_.zones[zone];
    const std::array<std::size_t, 3> classes{z.u, z.v, n_.size() - 1};
    std::array<double, 3> t;
    for (unsigned a = 0; a < 3; ++a)
      t[a] = etirer(static_cast<double>(ijk[a]) / n_[classes[a]], f_.classes[classes[a]].etirement);
    return image(f_, z, t[0], t[1], t[2]);
  }

  static std::array<Num, 3> coin(const Bloc& b, unsigned c) {
    return {b.ijk[0] + (c & 1), b.ijk[1] + (c >> 1 & 1), b.ijk[2] + (c >> 2)};
  }

  void ajouter_bloc(Num zone, const std::array<Num, 3>& ijk) {
    Bloc b{zone, ijk, {}, {}};
    for (unsigned c = 0; c < 8; ++c) {
      const auto n = coin(b, c);
      Num& s = sommet_de_[std::size_t{n[2]} * noeuds_section_ + noeud(zone, n[0], n[1])];
      if (s == libre) {
        s = static_cast<Num>(m_.sommets.size());
        const Dual3 p = point(zone, n);
        m_.sommets.push_back({p[0].v, p[1].v, p[2].v});
      }
      b.sommets[c] = s;
    }
    for (unsigned place = 0; place < 6; ++place) b.faces[place] = face(b, place);
    m_.blocs.push_back(b);
  }

  /// Corners of a face in turn: (l,m) = 00, 10, 11, 01.
  static std::array<unsigned, 4> coins_face(unsigned place) {
    const unsigned axe = place % 3, base = place / 3 << axe;
    const unsigned l = 1u << (axe == 0 ? 1 : 0), m = 1u << (axe == 2 ? 1 : 2);
    return {base, base | l, base | l | m, base | m};
  }

  using Repertoire = std::unordered_map<std::uint64_t, Num>;

  /// Number of a pair of vertices, in order of first appearance, and whether it is the first.
  static std::pair<Num, bool> chercher(Repertoire& r, Num a, Num b) {
    const auto [it, neuf] = r.try_emplace(std::uint64_t{a} << 32 | b, static_cast<Num>(r.size()));
    return {it->second, neuf};
  }

  /// A face is known by its least vertex and the opposite one, whichever block looks at it.
  Num face(const Bloc& b, unsigned place) {
    const auto coins = coins_face(place);
    std::array<Num, 4> s;
    for (unsigned c = 0; c < 4; ++c) s[c] = b.sommets[coins[c]];
    const auto min = static_cast<std::size_t>(std::min_element(s.begin(), s.end()) - s.begin());
    const auto [num, neuve] = chercher(rep_faces_, s[min], s[(min + 2) % 4]);
    if (neuve) {
      const std::array<Num, 4> edges{edge(s[0], s[3]), edge(s[0], s[1]), edge(s[1], s[2]),
                                     edge(s[3], s[2])};
      for (const Num e : edges) ++m_.edges[e].nb_face;
      m_.faces.push_back(
          {edges, static_cast<Num>(m_.blocs.size()), static_cast<std::uint8_t>(place), 0, 0});
    }
    ++m_.faces[num].nb_bloc;
    return num;
  }

  Num edge(Num a, Num b) {
    const auto [num, neuve] = chercher(rep_edges_, std::min(a, b), std::max(a, b));
    if (neuve) m_.edges.push_back({a, b, 0});
    return num;
  }

  std::uint16_t numero_patch(int code) {
    const auto it = std::find(m_.patchs.begin(), m_.patchs.end(), code);
    const auto num = static_cast<std::uint16_t>(it - m_.patchs.begin());
    if (it == m_.patchs.end()) m_.patchs.push_back(code);
    return num;
  }

  int code_face(const Bloc& b, unsigned place) const {
    const unsigned axe = place % 3, cote = place / 3;
    if (axe == 2) return f_.codes[cote];
    const Zone& z = f_.zones[b.zone];
    const bool au_bord = b.ijk[axe] + cote == (cote ? n_[axe ? z.v : z.u] : 0);
    const int code = au_bord ? f_.cotes[z.bords[2 * cote + axe].cote].code : 0;
    return code ? code : code_sans_condition;
  }

  Vec normale(const Bloc& b, unsigned place, unsigned c) const {
    const Dual3 p = point(b.zone, coin(b, c));
    const Vec tu{p[0].d.x, p[1].d.x, p[2].d.x}, tv{p[0].d.y, p[1].d.y, p[2].d.y},
        tw{p[0].d.z, p[1].d.z, p[2].d.z};
    const Vec n = place % 3 == 0   ? vectoriel(tv, tw)
                  : place % 3 == 1 ? vectoriel(tw, tu)
                                   : vectoriel(tu, tv);
    return (place < 3 ? -1 : 1) / norme(n) * n;
  }

  /// Patches of the boundary faces, of their edges and of their vertices.
  void habiller() {
    for (const int code : f_.codes) numero_patch(code);
    for (const Cote& c : f_.cotes)
      if (c.code) numero_patch(c.code);
    for (Face& face : m_.faces) {
      if (face.nb_bloc != 1) continue;
      const Bloc& b = m_.blocs[face.bloc];
      face.patch = numero_patch(code_face(b, face.place));
      for (const Num e : face.edges) m_.edges_bord.push_back({e, face.patch, {}});
      for (const unsigned c : coins_face(face.place))
        m_.sommets_bord.push_back({b.sommets[c], face.patch, normale(b, face.place, c)});
    }
    ranger(m_.edges_bord);
    ranger(m_.sommets_bord);
    // Smooth patches repeat one normal; on the steps of an unfinished layer the faces' normals are
    // averaged.
    for (Contact& c : m_.sommets_bord) c.normale = (1 / norme(c.normale)) * c.normale;
  }

  /// Sorts, and sums the normals of equal pairs.
  static void ranger(std::vector<Contact>& contacts) {
    std::stable_sort(contacts.begin(), contacts.end(), [](const Contact& a, const Contact& b) {
      return a.num != b.num ? a.num < b.num : a.patch < b.patch;
    });
    std::size_t n = 0;
    for (const Contact& c : contacts) {
      if (n > 0 && contacts[n - 1].num == c.num && contacts[n - 1].patch == c.patch)
        contacts[n - 1].normale = contacts[n - 1].normale + c.normale;
      else
        contacts[n++] = c;
    }
    contacts.resize(n);
  }

  const Forme& f_;
  Num nb_bloc_;
  Num couches_ = 0, noeuds_section_ = 0;
  std::vector<Num> n_;  // blocks along each class
  std::vector<Num> debut_cote_, debut_zone_, sommet_de_;
  Repertoire rep_edges_, rep_faces_;
  Maillage m_;
};

}  // namespace

Maillage mailler(const Forme& f, Num nb_bloc) {
  return Mailleur(f, nb_bloc).executer();
}

}  // namespace topomine::gen
