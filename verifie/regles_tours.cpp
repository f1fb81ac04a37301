#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "verifie/examen.h"

namespace topomine {

namespace {

using Bouts = std::pair<int, int>;  ///< vertices, the lower rank first

int commun(const std::array<int, 2>& x, const std::array<int, 2>& y) {
  return x[0] == y[0] || x[0] == y[1] ? x[0] : x[1] == y[0] || x[1] == y[1] ? x[1] : inconnu;
}

int autre(const std::array<int, 2>& x, int bout) {
  return x[0] == bout ? x[1] : x[0];
}

/// The edges of a face in the order of its slots, empty ones left out.
struct Tour {
  std::array<int, nb_edges_face> places{}, edges{};  // slot, and edge there or `inconnu`
  std::size_t nb = 0;
  std::array<bool, nb_edges_face> vides{};

  Tour(const Maille& m, int face) {
    for (int s = 0; s < nb_edges_face; ++s) {
      const int e = au(m.faces, face)[static_cast<std::size_t>(s)];
      vides[static_cast<std::size_t>(s)] = e == vide;
      if (e == vide) continue;
      places[nb] = s;
      edges[nb++] = e >= 0 && au(m.edges, e)[0] >= 0 && au(m.edges, e)[1] >= 0 ? e : inconnu;
    }
  }
  std::size_t nb_inconnus() const {
    return static_cast<std::size_t>(std::count(edges.begin(), edges.begin() + nb, inconnu));
  }
};

/// Ends of the chain of edges that follow each other; nothing when they do not, or close.
std::optional<Bouts> chaine(const Maille& m, const std::array<int, nb_edges_face>& edges,
                            std::size_t debut, std::size_t nb, std::size_t tour) {
  const auto edge = [&](std::size_t i) { return au(m.edges, edges[(debut + i) % tour]); };
  std::array<int, nb_edges_face + 1> pas{};
  const int premier = nb > 1 ? commun(edge(0), edge(1)) : edge(0)[1];
  if (premier < 0) return {};
  pas[0] = autre(edge(0), premier);
  pas[1] = premier;
  for (std::size_t i = 1; i < nb; ++i) {
    if (commun(edge(i), {pas[i], pas[i]}) < 0) return {};
    pas[i + 1] = autre(edge(i), pas[i]);
  }
  for (std::size_t i = 0; i <= nb; ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (pas[i] == pas[j]) return {};
  return std::minmax(pas[0], pas[nb]);
}

/// They follow each other and close.
bool ferme(const Maille& m, const Tour& t, const std::array<int, nb_edges_face>& edges) {
  const auto bouts = chaine(m, edges, 0, t.nb - 1, t.nb);
  const std::array<int, 2>& e = au(m.edges, edges[t.nb - 1]);
  return bouts && *bouts == Bouts(std::minmax(e[0], e[1]));
}

struct Suspect {
  int place;
  int edge;  // `inconnu` for one that could not be read
  Bouts attendus;
};

/// The edges without which the others make a chain, and what would close it.
std::vector<Suspect> suspects(const Maille& m, const Tour& t) {
  std::vector<Suspect> liste;
  for (std::size_t j = 0; j < t.nb; ++j) {
    if (t.nb_inconnus() > 0 && t.edges[j] != inconnu) continue;
    if (const auto bouts = chaine(m, t.edges, (j + 1) % t.nb, t.nb - 1, t.nb))
      liste.push_back({t.places[j], t.edges[j], *bouts});
  }
  return liste;
}

/// An empty slot between edges that do not meet there; all of them are known.
std::optional<Suspect> vide_sans_raison(const Maille& m, const Tour& t) {
  if (t.nb != nb_edges_face - 1) return {};
  const auto place = static_cast<std::size_t>(std::ranges::find(t.vides, true) - t.vides.begin());
  const auto bouts = chaine(m, t.edges, place % t.nb, t.nb, t.nb);
  if (!bouts) return {};
  return Suspect{static_cast<int>(place), inconnu, *bouts};
}

class Tours {
 public:
  explicit Tours(Examen& x) : x_(x), m_(x.maille) {}

  void examiner() {
    sommets_repetes();
    m_.monter_edges();
    std::size_t juges = 0;
    for (int f = 0; f < m_.num_faces.nb(); ++f) juges += juger(f);
    if (rompus_.size() > 3 && rompus_.size() * 3 > juges) {
      x_.liens_perdus = true;
      x_.signaler(Code::liens_d_un_autre_cas, fic_edge,
                  std::to_string(rompus_.size()) + " faces sur " + std::to_string(juges) +
                      " ne font pas un tour avec ces edges");
      return;
    }
    edges_contredites();
    for (const Rompu& r : rompus_) dire(r);
    completer();
    m_.monter_edges();
  }

 private:
  struct Rompu {
    int face;
    std::vector<Suspect> suspects;
  };

  int numero(int edge) const { return x_.numero(fic_edge, edge); }
  std::string entre(const Bouts& b) const {
    return std::to_string(x_.numero(fic_vrtx, b.first)) + " et " +
           std::to_string(x_.numero(fic_vrtx, b.second));
  }

  /// The edges that go once around: on their faces the two edges beside them are one, or, where
  /// the block has a face in parts, meet.
  std::set<int> boucles() const {
    std::set<int> r;
    for (int f = 0; f < m_.num_faces.nb(); ++f) {
      const auto& edges = au(m_.faces, f);
      for (std::size_t s = 0; s < edges.size(); ++s)
        if (edges[s] >= 0 && edges[s ^ 1] >= 0 && edges[s ^ 1] == edges[s ^ 3]) r.insert(edges[s]);
    }
    for (const auto& [bloc, partie] : m_.partages)
      for (const int f : au(m_.blocs, bloc)) {
        if (f < 0) continue;
        const auto& edges = au(m_.faces, f);
        for (std::size_t s = 0; s < edges.size(); ++s)
          if (edges[s] >= 0 && edges[s ^ 1] >= 0 && edges[s ^ 3] >= 0 &&
              commun(au(m_.edges, edges[s ^ 1]), au(m_.edges, edges[s ^ 3])) ==
                  au(m_.edges, edges[s])[0])
            r.insert(edges[s]);
      }
    return r;
  }

  void sommets_repetes() {
    const std::set<int> autour = boucles();
    for (int e = 0; e < m_.num_edges.nb(); ++e) {
      auto& bouts = au(m_.edges, e);
      if (bouts[0] < 0 || bouts[0] != bouts[1]) continue;
      if (!autour.contains(e))
        x_.signaler(
            Code::sommet_repete, fic_edge, e,
            "rmin et rmax sont le meme sommet " + std::to_string(x_.numero(fic_vrtx, bouts[0])));
      bouts = {inconnu, inconnu};
    }
  }

  /// 1 when the face could be judged.
  std::size_t juger(int f) {
    const Tour t(m_, f);
    if (t.nb < 3 || t.nb_inconnus() > 1) return 0;
    if (t.nb_inconnus() == 1) {
      a_completer_.push_back(f);
      return 0;
    }
    if (ferme(m_, t, t.edges)) return 1;
    if (const auto s = vide_sans_raison(m_, t)) {
      x_.signaler(Code::case_vide, fic_face, f,
                  "edge " + std::to_string(s->place + 1) +
                      " vide (NbSubEdge 0), mais ses voisines ne se touchent pas",
                  "Edge/" + std::to_string(s->place + 1));
      poser(f, *s);
      return 1;
    }
    rompus_.push_back({f, suspects(m_, t)});
    for (const Suspect& s : rompus_.back().suspects) ++voix_[{s.edge, s.attendus}];
    return 1;
  }

  /// Edges for which all their faces expect other end points.
  void edges_contredites() {
    for (const auto& [quoi, voix] : voix_) {
      const auto& [e, attendus] = quoi;
      const std::size_t nb = m_.faces_d_edge[e].size();
      if (nb < 2 || voix != nb) continue;
      const auto& bouts = au(m_.edges, e);
      for (const int v : bouts)  // named by mistake, and perhaps by nothing else
        if (v != attendus.first && v != attendus.second) x_.douter(fic_vrtx, v);
      x_.signaler(Code::edge_contredite, fic_edge, e,
                  "joint " + entre({bouts[0], bouts[1]}) + ", ses " + std::to_string(nb) +
                      " faces la veulent entre " + entre(attendus));
      au(m_.edges, e) = {attendus.first, attendus.second};
    }
  }

  void dire(const Rompu& r) {
    const Tour t(m_, r.face);
    if (ferme(m_, t, t.edges)) return;  // by an edge that has been mended
    for (const Suspect& s : r.suspects) {
      const int juste = m_.edge_entre(s.attendus.first, s.attendus.second);
      if (juste == inconnu) continue;
      x_.signaler(Code::tour_rompu, fic_face, r.face,
                  std::string("edge ") + std::to_string(s.place + 1) + " (" +
                      au(noms_edges, s.place) + ") : " + std::to_string(numero(s.edge)) +
                      " ne touche pas ses voisines, on y attend " + std::to_string(numero(juste)),
                  "Edge/" + std::to_string(s.place + 1));
      poser(r.face, s);
      return;
    }
    if (const int place = de_trop(t); place >= 0) {
      x_.signaler(Code::tour_rompu, fic_face, r.face,
                  std::string("edge ") + std::to_string(place + 1) + " (" + au(noms_edges, place) +
                      ") de trop, la case devrait etre vide",
                  "Edge/" + std::to_string(place + 1));
      au(m_.faces, r.face)[static_cast<std::size_t>(place)] = vide;
      return;
    }
    x_.signaler(Code::tour_rompu, fic_face, r.face, desordre(t), "Edge/1");
    x_.douter(fic_face, r.face);
  }

  /// The slot without whose edge the three others close, -1 when there is none.
  int de_trop(const Tour& t) const {
    for (std::size_t j = 0; t.nb == nb_edges_face && j < t.nb; ++j) {
      Tour trois = t;
      std::copy(t.edges.begin() + static_cast<std::ptrdiff_t>(j) + 1, t.edges.end(),
                trois.edges.begin() + static_cast<std::ptrdiff_t>(j));
      --trois.nb;
      if (ferme(m_, trois, trois.edges)) return t.places[j];
    }
    return -1;
  }

  std::string desordre(const Tour& t) const {
    std::string dit = "ses edges ne se suivent pas";
    if (t.nb != nb_edges_face) return dit;
    for (const auto& ordre : {std::array<std::size_t, 4>{0, 2, 1, 3}, {0, 1, 3, 2}}) {
      std::array<int, nb_edges_face> edges{};
      std::string numeros;
      for (std::size_t i = 0; i < edges.size(); ++i) {
        edges[i] = t.edges[ordre[i]];
        numeros += (i == 0 ? "" : ", ") + std::to_string(numero(edges[i]));
      }
      if (ferme(m_, t, edges)) {
        dit.append(", le tour est ").append(numeros);
        break;
      }
    }
    return dit;
  }

  /// Puts the expected edge where it belongs, when there is one.
  void poser(int face, const Suspect& s) {
    const int juste = m_.edge_entre(s.attendus.first, s.attendus.second);
    if (juste == inconnu) return x_.douter(fic_face, face);
    au(m_.faces, face)[static_cast<std::size_t>(s.place)] = juste;
  }

  /// What could not be read of an edge or a slot, as the rest of the face has it.
  void completer() {
    for (const int f : a_completer_) {
      const std::vector<Suspect> liste = suspects(m_, Tour(m_, f));
      if (liste.size() != 1) continue;
      const int e = au(m_.faces, f)[static_cast<std::size_t>(liste[0].place)];
      if (e == inconnu)
        poser(f, liste[0]);
      else
        au(m_.edges, e) = {liste[0].attendus.first, liste[0].attendus.second};
    }
  }

  Examen& x_;
  Maille& m_;
  std::vector<Rompu> rompus_;
  std::vector<int> a_completer_;
  std::map<std::pair<int, Bouts>, std::size_t> voix_;
};

}  // namespace

void regle_tours(Examen& x) {
  if (x.liens_perdus || !x.lus({fic_face, fic_edge}))
    x.maille.monter_edges();
  else
    Tours(x).examiner();
}

}  // namespace topomine
