#pragma once

#include <array>
#include <string_view>

namespace topomine {

// What the dataset is about: its attributes, in column order, and the bases it is built from.

struct Attribut {
  std::string_view nom;
  std::string_view type;  ///< as an ARFF declaration: "string", "numeric" or a nominal set
};

/// Boundary-condition codes that have a column of their own; the other codes are counted nowhere.
inline constexpr std::array<int, 14> codes_comptes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 9999};

/// Column of each attribute in a row.
enum Colonne : int {
  col_base,
  col_ident,
  col_type,
  col_nb_voisin,
  col_erikson,
  col_vol_exa,
  col_vol_moy,
  col_vol_mor,
  col_vol_nsm,
  col_vois_erik_moy,
  col_vois_erik_var,
  col_vois_vexa_moy,
  col_vois_vexa_var,
  col_vois_vmoy_moy,
  col_vois_vmoy_var,
  col_vois_vmor_moy,
  col_vois_vmor_var,
  col_vois_vnsm_moy,
  col_vois_vnsm_var,
  col_BC_fam_face,  ///< first of the codes
  col_BC_fam_edge = col_BC_fam_face + static_cast<int>(codes_comptes.size()),  ///< likewise
  col_TypeC = col_BC_fam_edge + static_cast<int>(codes_comptes.size()),
  col_Num_Base,
  col_Classe,
  nb_colonnes
};

inline constexpr std::array<Attribut, nb_colonnes> schema{{
    {"base", "string"},
    {"ident", "string"},  // an integer, and yet a name: no learner should reckon with it
    {"type", "{30,31,32,33,34,35,36,37,38,39}"},
    {"nb_voisin", "numeric"},
    {"erikson", "numeric"},
    {"vol_exa", "numeric"},
    {"vol_moy", "numeric"},
    {"vol_mor", "numeric"},
    {"vol_nsm", "numeric"},
    {"vois_erik_moy", "numeric"},
    {"vois_erik_var", "numeric"},
    {"vois_vexa_moy", "numeric"},
    {"vois_vexa_var", "numeric"},
    {"vois_vmoy_moy", "numeric"},
    {"vois_vmoy_var", "numeric"},
    {"vois_vmor_moy", "numeric"},
    {"vois_vmor_var", "numeric"},
    {"vois_vnsm_moy", "numeric"},
    {"vois_vnsm_var", "numeric"},
    {"BC_fam_face_1", "numeric"},
    {"BC_fam_face_2", "numeric"},
    {"BC_fam_face_3", "numeric"},
    {"BC_fam_face_4", "numeric"},
    {"BC_fam_face_5", "numeric"},
    {"BC_fam_face_6", "numeric"},
    {"BC_fam_face_7", "numeric"},
    {"BC_fam_face_8", "numeric"},
    {"BC_fam_face_9", "numeric"},
    {"BC_fam_face_10", "numeric"},
    {"BC_fam_face_11", "numeric"},
    {"BC_fam_face_12", "numeric"},
    {"BC_fam_face_13", "numeric"},
    {"BC_fam_face_9999", "numeric"},
    {"BC_fam_edge_1", "numeric"},
    {"BC_fam_edge_2", "numeric"},
    {"BC_fam_edge_3", "numeric"},
    {"BC_fam_edge_4", "numeric"},
    {"BC_fam_edge_5", "numeric"},
    {"BC_fam_edge_6", "numeric"},
    {"BC_fam_edge_7", "numeric"},
    {"BC_fam_edge_8", "numeric"},
    {"BC_fam_edge_9", "numeric"},
    {"BC_fam_edge_10", "numeric"},
    {"BC_fam_edge_11", "numeric"},
    {"BC_fam_edge_12", "numeric"},
    {"BC_fam_edge_13", "numeric"},
    {"BC_fam_edge_9999", "numeric"},
    {"TypeC", "{-1,1}"},
    {"Num_Base", "{0,1,2,3,4,5,6,7}"},
    {"Classe", "{-1,1}"},
}};
static_assert(schema[col_BC_fam_edge].nom == "BC_fam_edge_1");
static_assert(schema[col_Classe].nom == "Classe");

/// The eight built-in bases, in the order of the run; a base's position is its "Num_Base".
inline constexpr std::array<std::string_view, 8> bases_integrees{
    "mesh_case_1", "mesh_case_2", "mesh_case_3", "mesh_case_4",
    "mesh_case_5", "mesh_case_6", "mesh_case_7", "mesh_case_8"};

/// "Num_Base" of a base; 0 for a name that is not built in.
constexpr int numero_base(std::string_view nom) {
  for (std::size_t i = 0; i < bases_integrees.size(); ++i)
    if (bases_integrees[i] == nom) return static_cast<int>(i);
  return 0;
}

}  // namespace topomine
