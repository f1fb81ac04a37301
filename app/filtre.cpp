#include "app/filtre.h"

#include "dataset/basebuffer.h"

void filtre(BaseBuffer& table) {
  table.hide_attr("Classe");
  table.hide_attr("Num_Base");
  table.hide_attr("TypeC");

  table.hide_attr("base");
  table.hide_attr("ident");
  table.hide_attr("type");
  table.hide_attr("nb_voisin");
  table.hide_attr("erikson");

  table.hide_attr("vol_exa");
  table.hide_attr("vol_moy");
  table.hide_attr("vol_mor");
  table.hide_attr("vol_nsm");

  table.hide_attr("vois_erik_moy");
  table.hide_attr("vois_erik_var");
  table.hide_attr("vois_vexa_moy");
  table.hide_attr("vois_vexa_var");
  table.hide_attr("vois_vmoy_moy");
  table.hide_attr("vois_vmoy_var");
  table.hide_attr("vois_vmor_moy");
  table.hide_attr("vois_vmor_var");
  table.hide_attr("vois_vnsm_moy");
  table.hide_attr("vois_vnsm_var");

  table.hide_attr("BC_fam_face_1");
  table.hide_attr("BC_fam_face_2");
  table.hide_attr("BC_fam_face_3");
  table.hide_attr("BC_fam_face_4");
  table.hide_attr("BC_fam_face_5");
  table.hide_attr("BC_fam_face_6");
  table.hide_attr("BC_fam_face_7");
  table.hide_attr("BC_fam_face_8");
  table.hide_attr("BC_fam_face_9");
  table.hide_attr("BC_fam_face_10");
  table.hide_attr("BC_fam_face_11");
  table.hide_attr("BC_fam_face_12");
  table.hide_attr("BC_fam_face_13");
  table.hide_attr("BC_fam_face_9999");

  table.hide_attr("BC_fam_edge_1");
  table.hide_attr("BC_fam_edge_2");
  table.hide_attr("BC_fam_edge_3");
  table.hide_attr("BC_fam_edge_4");
  table.hide_attr("BC_fam_edge_5");
  table.hide_attr("BC_fam_edge_6");
  table.hide_attr("BC_fam_edge_7");
  table.hide_attr("BC_fam_edge_8");
  table.hide_attr("BC_fam_edge_9");
  table.hide_attr("BC_fam_edge_10");
  table.hide_attr("BC_fam_edge_11");
  table.hide_attr("BC_fam_edge_12");
  table.hide_attr("BC_fam_edge_13");
  table.hide_attr("BC_fam_edge_9999");
}
