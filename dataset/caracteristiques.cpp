#include "dataset/caracteristiques.h"

#include <array>
#include <cstddef>
#include <exception>
#include <iostream>
#include <new>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "base/base.h"
#include "dataset/comptes_codes.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

using namespace topomine;

namespace {

constexpr std::size_t nb_mesures = 5;

/// Quality and volumes of a block, in the order of the columns of their statistics.
using Mesures = std::array<double, nb_mesures>;

Mesures mesures(const Block& bloc) {
  return {bloc._erik(), bloc._volexa(), bloc._volmoy(), bloc._volmor(), bloc._volnsm()};
}

/// Sums over the neighbours of a block, in the order of Base::vois_bloc.
struct Sommes {
  int nb = 0;        ///< neighbours, repeats counted
  int mesurees = 0;  ///< those that are in the block table: the others have no measures
  Mesures somme{}, carres{};

  void ajouter(const Mesures& m) {
    ++mesurees;
    for (std::size_t i = 0; i < nb_mesures; ++i) {
      somme[i] += m[i];
      carres[i] += m[i] * m[i];
    }
  }
  double moyenne(std::size_t i) const { return mesurees == 0 ? 0.0 : somme[i] / mesurees; }
  /// Population variance, not clamped, as of the free function `variance`.
  double variance(std::size_t i) const {
    const double m = moyenne(i);
    return (mesurees == 0 ? 0.0 : carres[i] / mesurees) - m * m;
  }
};

/// The neighbours of the blocks of one base.
class Voisinage {
 public:
  explicit Voisinage(const Base& base) : base_(base) {}

  Sommes sommes(const Block& bloc) {
    Sommes s;
    for (int i = 0; i < bloc.nb_face(); ++i) {
      const int numero = bloc._face(i);
      if (numero == 0) continue;
      if (const auto face = base_.faces.find(numero); face != base_.faces.end())
        ajouter_face(s, numero, face->second, bloc._id());
    }
    return s;
  }

 private:
  struct Voisin {
    int numero;
    bool mesure;
    Mesures mesures;
  };

  Voisin voisin(int numero) const {
    const auto bloc = base_.blocs.find(numero);
    if (bloc == base_.blocs.end()) return {numero, false, {}};
    return {numero, true, mesures(bloc->second)};
  }

  static void ajouter_voisin(Sommes& s, const Voisin& v, int bloc) {
    if (v.numero == bloc) return;
    ++s.nb;
    if (v.mesure) s.ajouter(v.mesures);
  }

  /// A face of a sound case has two blocks at most. One with many is asked for its neighbours by
  /// each of them: they are gathered once.
  void ajouter_face(Sommes& s, int numero, const Face& face, int bloc) {
    constexpr int blocs_notables = 16;
    if (face.nb_bloc() < blocs_notables) {
      for (int n = 0; n < face.nb_bloc(); ++n)
        if (face._bloc(n) != bloc) ajouter_voisin(s, voisin(face._bloc(n)), bloc);
      return;
    }
    const auto [trouve, nouvelle] = chargees_.try_emplace(numero);
    if (nouvelle)
      for (int n = 0; n < face.nb_bloc(); ++n) trouve->second.push_back(voisin(face._bloc(n)));
    for (const Voisin& v : trouve->second) ajouter_voisin(s, v, bloc);
  }

  const Base& base_;
  std::unordered_map<int, std::vector<Voisin>> chargees_;
};

BaseBuffer::Exemple exemple(const Base& base, const Block& bloc, Voisinage& voisinage,
                            ComptesCodes& comptes) {
  // Neighbours and codes are looked up by the block's own number, which may differ from its key.
  Block vu;
  if (const auto trouve = base.blocs.find(bloc._id()); trouve != base.blocs.end())
    vu = trouve->second;
  vu._id(bloc._id());

  BaseBuffer::Exemple ligne(nb_colonnes);
  const auto mettre = [&ligne](int colonne, auto nombre) {
    ajouter_nombre(ligne[static_cast<std::size_t>(colonne)], nombre);
  };
  const auto mettre_comptes = [&mettre](int premiere, const ComptesCodes::Comptes& nb) {
    for (std::size_t i = 0; i < nb.size(); ++i)
      mettre(premiere + static_cast<int>(i), static_cast<int>(nb[i]));
  };
  ligne[col_base] = base.nom;
  mettre(col_ident, bloc._id());
  mettre(col_type, bloc._type());
  mettre(col_erikson, bloc._erik());
  mettre(col_vol_exa, bloc._volexa());
  mettre(col_vol_moy, bloc._volmoy());
  mettre(col_vol_mor, bloc._volmor());
  mettre(col_vol_nsm, bloc._volnsm());

  constexpr std::array<int, nb_mesures> moyennes{col_vois_erik_moy, col_vois_vexa_moy,
                                                 col_vois_vmoy_moy, col_vois_vmor_moy,
                                                 col_vois_vnsm_moy};
  constexpr std::array<int, nb_mesures> variances{col_vois_erik_var, col_vois_vexa_var,
                                                  col_vois_vmoy_var, col_vois_vmor_var,
                                                  col_vois_vnsm_var};
  const Sommes voisins = voisinage.sommes(vu);
  mettre(col_nb_voisin, voisins.nb);
  for (std::size_t i = 0; i < nb_mesures; ++i) {
    mettre(moyennes[i], voisins.moyenne(i));
    mettre(variances[i], voisins.variance(i));
  }

  mettre_comptes(col_BC_fam_face_1, comptes.faces(vu));
  mettre_comptes(col_BC_fam_edge_1, comptes.edges(vu));
  mettre(col_TypeC, bloc._typeC() ? 1 : -1);
  mettre(col_Num_Base, numero_base(base.nom));
  mettre(col_Classe, 1);  // a real example
  return ligne;
}

}  // namespace

void BaseBuffer::add_base(Base& base) {
  const std::size_t avant = _expl.size();
  try {
    Voisinage voisinage(base);
    ComptesCodes comptes(base);
    for (const auto& [numero, bloc] : base.blocs)
      _expl.push_back(exemple(base, bloc, voisinage, comptes));
  } catch (const std::length_error& e) {
    _expl.resize(avant);
    std::cerr << "base " << base.nom << " : " << e.what() << std::endl;
  } catch (const std::exception&) {
    _expl.resize(avant);
    std::cerr << "memoire insuffisante pour les exemples de la base " << base.nom << std::endl;
  }
}

BaseBuffer topomine::table_de(Base& base) {
  BaseBuffer table("topology");
  table.add_base(base);
  if (table._expl.size() != base.blocs.size()) throw std::bad_alloc();
  return table;
}
