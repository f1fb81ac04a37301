#pragma once

#include <vector>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "dataset/schema.h"

/// The example of a block as it is laid down: lists from the base's own questions, then counted.
inline BaseBuffer::Exemple exemple_litteral(const Base& base, const Block& bloc) {
  BaseBuffer::Exemple ligne{base.nom};
  const int id = bloc._id();
  const std::vector<int> voisins = base.vois_bloc(id);
  for (const int n : {id, bloc._type(), static_cast<int>(voisins.size())})
    BaseBuffer::add_val(ligne, n);
  using Mesure = double (Block::*)() const;
  constexpr Mesure lues[]{&Block::_erik, &Block::_volexa, &Block::_volmoy, &Block::_volmor,
                          &Block::_volnsm};
  for (const Mesure lire : lues) BaseBuffer::add_val(ligne, (bloc.*lire)());
  for (const Mesure lire : lues) {
    std::vector<double> valeurs;
    for (const int v : voisins)
      if (const auto b = base.blocs.find(v); b != base.blocs.end())
        valeurs.push_back((b->second.*lire)());
    BaseBuffer::add_val(ligne, moyenne(valeurs));
    BaseBuffer::add_val(ligne, variance(valeurs));
  }
  for (const std::vector<int>& codes : {base.BC_blk_face(id), base.BC_blk_edge(id)}) {
    const std::vector<int> bccodes = base.DAM2BCCODE(codes);
    for (const int code : topomine::codes_comptes)
      BaseBuffer::add_val(ligne, nb_occ(bccodes, code));
  }
  for (const int n : {bloc._typeC() ? 1 : -1, topomine::numero_base(base.nom), 1})
    BaseBuffer::add_val(ligne, n);
  return ligne;
}
