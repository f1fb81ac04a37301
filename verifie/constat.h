#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace topomine {

/// erreur: the table would be wrong, or not made at all. avertissement: odd, and perhaps wrong.
/// avis: meant so, most likely; worth knowing.
enum class Gravite { avis, avertissement, erreur };

/// The kinds of findings; the value is the number of the code that users see, V001 and so on. A
/// code keeps its meaning for good: new kinds take free numbers.
enum class Code {
  // Files and XML
  fichier_absent = 1,
  fichier_illisible = 2,
  xml_mal_forme = 3,
  document_vide = 4,
  document_demesure = 5,
  racine_absente = 6,
  hors_codage = 7,
  octet_nul = 8,
  base_absente = 9,
  // Elements and texts
  element_absent = 10,
  texte_absent = 11,
  pas_un_nombre = 12,
  intrus = 13,
  texte_laisse = 14,
  element_en_double = 15,
  element_commente = 16,
  element_inconnu = 17,
  liste_coupee = 18,
  base_vide = 19,
  numero_negatif = 20,
  numero_pris = 21,
  case_hors = 22,
  case_en_double = 23,
  case_absente = 24,
  case_multiple = 25,
  contenu_negatif = 26,
  nb_sommets = 27,
  xml_tolere = 28,
  bloc_manquant = 29,
  // Links
  reference_absente = 30,
  orphelin = 31,
  face_de_trop = 32,
  tour_rompu = 33,
  sommet_repete = 34,
  faces_disjointes = 35,
  case_vide = 36,
  bloc_degenere = 37,
  liens_d_un_autre_cas = 38,
  edge_contredite = 39,
  // Boundaries
  bord_sans_code = 40,
  interieur_code = 41,
  code_inconnu = 42,
  edge_code_etranger = 43,
  edge_code_du_mode = 44,
  face_code_contredit = 45,
  type_faux = 46,
  type_hors = 47,
  code_repete = 48,
  sommet_deplace = 49,
  // Geometry
  volume_negatif = 50,
  estimation_loin = 51,
  exact_loin = 52,
  bloc_gauche = 53,
  erikson_hors = 54,
  nombre_trop_grand = 55,
  sommets_confondus = 56,
  valeur_isolee = 57,
  positions_d_un_autre_cas = 58,
  projection_loin = 59,
  // Scene
  famille_c_inconnue = 60,
  famille_inconnue = 61,
  famille_c_non_vue = 62,
  famille_prise = 63,
  famille_repetee = 64,
  topologie_inconnue = 65,
  raccord_piece = 66,
  raccord_type = 67,
  nom_d_une_autre_base = 68,
  mesure_negative = 69,
  paroi_sans_piece = 70,
  scene_d_un_autre_cas = 71,
  // Faces in parts
  face_partagee = 72,
  // Numbers
  numero_hors_suite = 73,
  // climite.cfg
  config_vide = 80,
  config_point_virgule = 81,
  config_fin = 82,
  config_ligne_vide = 83,
  config_colonne_absente = 84,
  config_colonne_double = 85,
  config_courte = 86,
  config_longue = 87,
  config_code = 88,
  config_bccode = 89,
  config_code_repete = 90,
  config_code_remplace = 91,
  config_non_compte = 92,
  config_isole = 93,
  config_demesuree = 94,
  // Modes
  modes_entites = 95,
  modes_valeurs = 96,
  modes_liens = 97,
  modes_codes = 98,
  // All
  trop_de_constats = 99,
};

/// One finding. How bad it is and what to do about it go by its code, see catalogue.h.
struct Constat {
  Code code;
  std::string fichier;
  int ligne = 1;
  std::string sorte;    ///< "bloc", "piece", "code" ..., "fichier" when it is all of the file
  std::string numero;   ///< what it is called: a number, "de rang 3", a name; may be empty
  std::string quoi;     ///< what is wrong
  std::string champ{};  ///< names down to the element of the entity that the line is to be of
};

/// Keeps a finding. After 100,000 one last finding says that more were dropped.
void retenir(std::vector<Constat>& constats, Constat constat);

/// A text of a file as findings show it: its beginning where it is long, as there may be as many
/// findings as elements.
inline std::string citer(std::string_view texte) {
  constexpr std::size_t assez = 80;
  return std::string(texte.substr(0, assez)) + (texte.size() > assez ? "..." : "");
}
inline std::string entre_apostrophes(std::string_view texte) {
  return "'" + citer(texte) + "'";
}

}  // namespace topomine
