#include "verifie/maille.h"

#include <algorithm>
#include <utility>

namespace topomine {

int Rangs::rang(int numero) const {
  const auto trouve = std::ranges::lower_bound(numeros_, numero);
  return trouve != numeros_.end() && *trouve == numero ? static_cast<int>(trouve - numeros_.begin())
                                                       : inconnu;
}

Maille::Maille(const Base& base)
    : num_blocs(base.blocs), num_faces(base.faces), num_edges(base.edges), num_sommets(base.vrtxs) {
  positions.reserve(base.vrtxs.size());
  for (const auto& [numero, v] : base.vrtxs) positions.push_back({v._posX(), v._posY(), v._posZ()});
}

void Maille::monter_edges() {
  faces_d_edge = Listes(edges.size(), [&](auto ajouter) {
    for (int f = 0; f < num_faces.nb(); ++f)
      for (const int e : au(faces, f))
        if (e >= 0) ajouter(e, f);
  });
}

void Maille::monter_faces() {
  blocs_de_face = Listes(faces.size(), [&](auto ajouter) {
    for (int b = 0; b < num_blocs.nb(); ++b)
      for (const int f : au(blocs, b))
        if (f >= 0) ajouter(f, b);
    for (const auto& [b, f] : partages)
      if (!contient(au(blocs, b), f)) ajouter(f, b);
  });
}

namespace {

/// At most four vertices, without memory of their own: the corners of a face are asked for often.
struct Quatre {
  std::array<int, 8> rangs{};
  int nb = 0;
  bool sur = false;  // every edge is known, and they make a face

  bool a_deja(int v) const { return contient({rangs.data(), static_cast<std::size_t>(nb)}, v); }
  void ajouter(int v) {
    if (!a_deja(v)) rangs[static_cast<std::size_t>(nb++)] = v;
  }
};

Quatre quatre(const Maille& m, int face) {
  Quatre q;
  for (const int e : au(m.faces, face)) {
    if (e == vide) continue;
    if (e == inconnu || au(m.edges, e)[0] < 0 || au(m.edges, e)[1] < 0) return q;
    for (const int v : au(m.edges, e)) q.ajouter(v);
  }
  q.sur = q.nb >= 3 && q.nb <= 4;
  return q;
}

/// The vertex of corner c of a block, whose bit n says on which side of axis n it lies: the one
/// that is on its three faces; where one of them shrank, not on the face opposite to it. The others
/// may meet at what it shrank to. `la` says which faces did not shrink.
int sommet_du_coin(unsigned c, const std::array<Quatre, nb_faces_bloc>& sur_face,
                   const std::array<bool, nb_faces_bloc>& la) {
  std::array<int, 8> restants{};
  int nb = -1;
  for (const bool oppose : {false, true})
    for (unsigned axe = 0; axe < 3; ++axe) {
      const unsigned sien = c >> axe & 1U, cote = sien ^ static_cast<unsigned>(oppose);
      const auto place = [&](unsigned ou) {
        return static_cast<std::size_t>(place_face(static_cast<int>(ou), static_cast<int>(axe)));
      };
      if (!la[place(cote)] || (oppose && (nb <= 1 || la[place(sien)]))) continue;
      const Quatre& q = sur_face[place(cote)];
      if (nb < 0) restants = q.rangs, nb = q.nb;
      std::array<int, 8> suite{};
      int n = 0;
      for (int i = 0; i < nb; ++i)
        if (q.a_deja(restants[static_cast<std::size_t>(i)]) != oppose)
          suite[static_cast<std::size_t>(n++)] = restants[static_cast<std::size_t>(i)];
      if (oppose && n == 0) continue;
      restants = suite;
      nb = n;
    }
  return nb == 1 ? restants[0] : inconnu;
}

}  // namespace

std::vector<int> Maille::sommets(int face) const {
  const Quatre q = quatre(*this, face);
  return {q.rangs.begin(), q.rangs.begin() + (q.sur ? q.nb : 0)};
}

bool Maille::coins(int bloc, Coins& coins) const {
  std::array<Quatre, nb_faces_bloc> sur_face;
  std::array<bool, nb_faces_bloc> la{};
  for (int s = 0; s < nb_faces_bloc; ++s) {
    const int f = au(blocs, bloc)[static_cast<std::size_t>(s)];
    if (f == inconnu) return false;
    if (f == vide) continue;
    sur_face[static_cast<std::size_t>(s)] = quatre(*this, f);
    if (!sur_face[static_cast<std::size_t>(s)].sur) return false;
    la[static_cast<std::size_t>(s)] = true;
  }
  for (unsigned c = 0; c < 8; ++c) {
    coins[c] = sommet_du_coin(c, sur_face, la);
    if (coins[c] == inconnu) return false;
  }
  return true;
}

int Maille::edge_entre(int de, int vers) const {
  if (par_bouts_.empty())
    for (int e = 0; e < num_edges.nb(); ++e)
      par_bouts_.try_emplace(std::minmax(au(edges, e)[0], au(edges, e)[1]), e);
  const auto trouvee = par_bouts_.find(std::minmax(de, vers));
  return trouvee == par_bouts_.end() ? inconnu : trouvee->second;
}

}  // namespace topomine
