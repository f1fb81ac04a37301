#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// What the dataset is about: its attributes, in column order, and the bases it is built from.

namespace topomine {

/// The built-in bases, in the order of the run; a base's position is its "Num_Base".
inline constexpr auto bases_integrees =
    std::to_array<std::string_view>({"mesh_case_1", "mesh_case_2", "mesh_case_3", "mesh_case_4",
                                     "mesh_case_5", "mesh_case_6", "mesh_case_7", "mesh_case_8"});

static_assert(bases_integrees.size() <= 10, "positions_integrees has a digit per base");
constexpr auto ecrire_positions() {
  std::array<char, 2 * bases_integrees.size() + 1> octets{};
  for (std::size_t i = 0; i < bases_integrees.size(); ++i) {
    octets[2 * i] = i == 0 ? '{' : ',';
    octets[2 * i + 1] = static_cast<char>('0' + i);
  }
  octets.back() = '}';
  return octets;
}
inline constexpr auto octets_positions = ecrire_positions();
/// The nominal type of these positions, "{0,1,...}".
inline constexpr std::string_view positions_integrees(octets_positions.data(),
                                                      octets_positions.size());

/// The boundary-condition codes that have a column of their own, for faces and for edges; the
/// others are counted nowhere.
#define TOPOMINE_CODES(X, ...) \
  X(1, __VA_ARGS__)            \
  X(2, __VA_ARGS__)            \
  X(3, __VA_ARGS__)            \
  X(4, __VA_ARGS__)            \
  X(5, __VA_ARGS__)            \
  X(6, __VA_ARGS__)            \
  X(7, __VA_ARGS__)            \
  X(8, __VA_ARGS__)            \
  X(9, __VA_ARGS__)            \
  X(10, __VA_ARGS__)           \
  X(11, __VA_ARGS__)           \
  X(12, __VA_ARGS__)           \
  X(13, __VA_ARGS__)           \
  X(9999, __VA_ARGS__)

/// The attributes: name, type as in an ARFF declaration, meaning in the users' words.
#define TOPOMINE_BC(code, X, lieu, sens) X(BC_fam_##lieu##_##code, "numeric", sens " " #code)
#define TOPOMINE_ATTRIBUTS(X)                                                                 \
  X(base, "string", "nom de la base")                                                         \
  X(ident, "string", "numero du bloc dans sa base")                                           \
  X(type, "{30,31,32,33,34,35,36,37,38,39}", "type du bloc")                                  \
  X(nb_voisin, "numeric", "blocs voisins, un par face partagee")                              \
  X(erikson, "numeric", "mesure de qualite du bloc")                                          \
  X(vol_exa, "numeric", "volume exact")                                                       \
  X(vol_moy, "numeric", "volume moyen")                                                       \
  X(vol_mor, "numeric", "volume estime par Mor")                                              \
  X(vol_nsm, "numeric", "volume estime par NSMB")                                             \
  X(vois_erik_moy, "numeric", "moyenne de la qualite des voisins")                            \
  X(vois_erik_var, "numeric", "variance de la qualite des voisins")                           \
  X(vois_vexa_moy, "numeric", "moyenne du volume exact des voisins")                          \
  X(vois_vexa_var, "numeric", "variance du volume exact des voisins")                         \
  X(vois_vmoy_moy, "numeric", "moyenne du volume moyen des voisins")                          \
  X(vois_vmoy_var, "numeric", "variance du volume moyen des voisins")                         \
  X(vois_vmor_moy, "numeric", "moyenne du volume Mor des voisins")                            \
  X(vois_vmor_var, "numeric", "variance du volume Mor des voisins")                           \
  X(vois_vnsm_moy, "numeric", "moyenne du volume NSMB des voisins")                           \
  X(vois_vnsm_var, "numeric", "variance du volume NSMB des voisins")                          \
  TOPOMINE_CODES(TOPOMINE_BC, X, face, "fois qu'une face du bloc porte le BCCODE")            \
  TOPOMINE_CODES(TOPOMINE_BC, X, edge, "fois qu'une edge d'une face du bloc porte le BCCODE") \
  X(TypeC, "{-1,1}", "1 si le bloc touche une piece en C")                                    \
  X(Num_Base, positions_integrees, "position de la base parmi les bases integrees")           \
  X(Classe, "{-1,1}", "1 pour un exemple reel, -1 pour un exemple synthetique")

/// Column of each attribute in a row.
enum Colonne : int {
#define TOPOMINE_COLONNE(nom, type, sens) col_##nom,
  TOPOMINE_ATTRIBUTS(TOPOMINE_COLONNE)
#undef TOPOMINE_COLONNE
      nb_colonnes
};

struct Attribut {
  std::string_view nom;
  std::string_view type;  ///< "string", "numeric" or a nominal set
  std::string_view sens;
};

inline constexpr std::array<Attribut, nb_colonnes> schema{{
#define TOPOMINE_ATTRIBUT(nom, type, sens) {#nom, type, sens},
    TOPOMINE_ATTRIBUTS(TOPOMINE_ATTRIBUT)
#undef TOPOMINE_ATTRIBUT
}};
#undef TOPOMINE_ATTRIBUTS
#undef TOPOMINE_BC

/// The codes, in the order of their columns.
inline constexpr auto codes_comptes = std::to_array<int>({
#define TOPOMINE_CODE(code, ...) code,
    TOPOMINE_CODES(TOPOMINE_CODE, )
#undef TOPOMINE_CODE
});
#undef TOPOMINE_CODES

/// "Num_Base" of a base; 0 for a name that is not built in.
constexpr int numero_base(std::string_view nom) {
  for (std::size_t i = 0; i < bases_integrees.size(); ++i)
    if (bases_integrees[i] == nom) return static_cast<int>(i);
  return 0;
}

}  // namespace topomine
