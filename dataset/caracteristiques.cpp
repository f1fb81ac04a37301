#include <array>
#include <cstddef>
#include <exception>
#include <iostream>
#include <iterator>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "dataset/numeric.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

using namespace topomine;

namespace {

/// A measure of the neighbour blocks, one value per neighbour.
struct Voisinage {
  std::vector<double> erik, vexa, vmoy, vmor, vnsm;

  Voisinage(const Base& base, const std::vector<int>& voisins) {
    // The blocks of one face come in ascending order: a face with many is walked, not searched.
    auto suivant = base.blocs.end();
    for (const int v : voisins) {
      const auto bloc =
          suivant != base.blocs.end() && suivant->first == v ? suivant : base.blocs.find(v);
      if (bloc == base.blocs.end()) continue;  // a neighbour by number only: it has no measures
      suivant = std::next(bloc);
      erik.push_back(bloc->second._erik());
      vexa.push_back(bloc->second._volexa());
      vmoy.push_back(bloc->second._volmoy());
      vmor.push_back(bloc->second._volmor());
      vnsm.push_back(bloc->second._volnsm());
    }
  }
};

void ajouter_comptes(BaseBuffer::Exemple& ligne, const std::vector<int>& bccodes) {
  for (const int code : codes_comptes) BaseBuffer::add_val(ligne, nb_occ(bccodes, code));
}

BaseBuffer::Exemple exemple(const Base& base, const Block& bloc) {
  const int id = bloc._id();
  const std::vector<int> voisins = base.vois_bloc(id);
  const Voisinage v(base, voisins);

  BaseBuffer::Exemple ligne;
  ligne.reserve(nb_colonnes);
  BaseBuffer::add_val(ligne, base.nom);
  for (const int n : {id, bloc._type(), static_cast<int>(voisins.size())})
    BaseBuffer::add_val(ligne, n);
  for (const double mesure :
       {bloc._erik(), bloc._volexa(), bloc._volmoy(), bloc._volmor(), bloc._volnsm()})
    BaseBuffer::add_val(ligne, mesure);
  for (const std::vector<double>* mesures : {&v.erik, &v.vexa, &v.vmoy, &v.vmor, &v.vnsm}) {
    BaseBuffer::add_val(ligne, moyenne(*mesures));
    BaseBuffer::add_val(ligne, variance(*mesures));
  }
  ajouter_comptes(ligne, base.DAM2BCCODE(base.BC_blk_face(id)));
  ajouter_comptes(ligne, base.DAM2BCCODE(base.BC_blk_edge(id)));
  BaseBuffer::add_val(ligne, bloc._typeC() ? 1 : -1);
  BaseBuffer::add_val(ligne, numero_base(base.nom));
  BaseBuffer::add_val(ligne, 1);  // a real example
  return ligne;
}

}  // namespace

void BaseBuffer::add_base(Base& base) {
  const std::size_t avant = _expl.size();
  try {
    for (const auto& [numero, bloc] : base.blocs) _expl.push_back(exemple(base, bloc));
  } catch (const std::exception&) {
    _expl.resize(avant);
    std::cerr << "memoire insuffisante pour les exemples de la base " << base.nom << std::endl;
  }
}
