#pragma once

#include <array>
#include <string_view>

// What the dataset is about: its attributes, in column order, and the bases it is built from.

namespace topomine {

/// The eight built-in bases, in the order of the run; a base's position is its "Num_Base".
inline constexpr auto bases_integrees =
    std::to_array<std::string_view>({"mesh_case_1", "mesh_case_2", "mesh_case_3", "mesh_case_4",
                                     "mesh_case_5", "mesh_case_6", "mesh_case_7", "mesh_case_8"});

/// The one list: name, type as in an ARFF declaration, meaning in the users' words. Boundary
/// conditions have a column for each of the codes 1 to 13 and 9999; the others are counted nowhere.
#define TOPOMINE_BC(X, lieu, sens)             \
  X(BC_fam_##lieu##_1, "numeric", sens " 1")   \
  X(BC_fam_##lieu##_2, "numeric", sens " 2")   \
  X(BC_fam_##lieu##_3, "numeric", sens " 3")   \
  X(BC_fam_##lieu##_4, "numeric", sens " 4")   \
  X(BC_fam_##lieu##_5, "numeric", sens " 5")   \
  X(BC_fam_##lieu##_6, "numeric", sens " 6")   \
  X(BC_fam_##lieu##_7, "numeric", sens " 7")   \
  X(BC_fam_##lieu##_8, "numeric", sens " 8")   \
  X(BC_fam_##lieu##_9, "numeric", sens " 9")   \
  X(BC_fam_##lieu##_10, "numeric", sens " 10") \
  X(BC_fam_##lieu##_11, "numeric", sens " 11") \
  X(BC_fam_##lieu##_12, "numeric", sens " 12") \
  X(BC_fam_##lieu##_13, "numeric", sens " 13") \
  X(BC_fam_##lieu##_9999, "numeric", sens " 9999")
#define TOPOMINE_ATTRIBUTS(X)                                                       \
  X(base, "string", "nom de la base")                                               \
  X(ident, "string", "numero du bloc dans sa base")                                 \
  X(type, "{30,31,32,33,34,35,36,37,38,39}", "type du bloc")                        \
  X(nb_voisin, "numeric", "blocs voisins, un par face partagee")                    \
  X(erikson, "numeric", "mesure de qualite du bloc")                                \
  X(vol_exa, "numeric", "volume exact")                                             \
  X(vol_moy, "numeric", "volume moyen")                                             \
  X(vol_mor, "numeric", "volume estime par Mor")                                    \
  X(vol_nsm, "numeric", "volume estime par NSMB")                                   \
  X(vois_erik_moy, "numeric", "moyenne de la qualite des voisins")                  \
  X(vois_erik_var, "numeric", "variance de la qualite des voisins")                 \
  X(vois_vexa_moy, "numeric", "moyenne du volume exact des voisins")                \
  X(vois_vexa_var, "numeric", "variance du volume exact des voisins")               \
  X(vois_vmoy_moy, "numeric", "moyenne du volume moyen des voisins")                \
  X(vois_vmoy_var, "numeric", "variance du volume moyen des voisins")               \
  X(vois_vmor_moy, "numeric", "moyenne du volume Mor des voisins")                  \
  X(vois_vmor_var, "numeric", "variance du volume Mor des voisins")                 \
  X(vois_vnsm_moy, "numeric", "moyenne du volume NSMB des voisins")                 \
  X(vois_vnsm_var, "numeric", "variance du volume NSMB des voisins")                \
  TOPOMINE_BC(X, face, "fois qu'une face du bloc porte le BCCODE")                  \
  TOPOMINE_BC(X, edge, "fois qu'une edge d'une face du bloc porte le BCCODE")       \
  X(TypeC, "{-1,1}", "1 si le bloc touche une piece en C")                          \
  X(Num_Base, "{0,1,2,3,4,5,6,7}", "position de la base parmi les bases integrees") \
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

/// Boundary-condition codes that have a column of their own, in the order of their columns.
inline constexpr auto codes_comptes =
    std::to_array<int>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 9999});
static_assert(col_BC_fam_edge_1 == col_BC_fam_face_1 + static_cast<int>(codes_comptes.size()));
// "{0,1,...}": a digit per base, with what stands between them.
static_assert(schema[col_Num_Base].type.size() == 2 * bases_integrees.size() + 1);

/// "Num_Base" of a base; 0 for a name that is not built in.
constexpr int numero_base(std::string_view nom) {
  for (std::size_t i = 0; i < bases_integrees.size(); ++i)
    if (bases_integrees[i] == nom) return static_cast<int>(i);
  return 0;
}

}  // namespace topomine
