#pragma once

#include <string>

namespace topomine {

/// What is done to a good CGNS file before it is imported.
using Alteration = void (*)(const std::string& fichier);

// Files that are not to be imported.
void base_plane(const std::string& fichier);
void zone_non_structuree(const std::string& fichier);
void deux_bases(const std::string& fichier);
void aucune_base(const std::string& fichier);
void aucune_zone(const std::string& fichier);
void zone_plate(const std::string& fichier);
void sans_coordonnees(const std::string& fichier);
void coordonnees_polaires(const std::string& fichier);
void coordonnee_infinie(const std::string& fichier);
void noeud_ecarte(const std::string& fichier);
void voisine_inconnue(const std::string& fichier);
void raccord_boiteux(const std::string& fichier);
void raccord_double(const std::string& fichier);
void raccord_contraire(const std::string& fichier);
void raccord_transpose(const std::string& fichier);
void raccord_trop_long(const std::string& fichier);
void raccord_aux_images_de_trop(const std::string& fichier);
void condition_trop_longue(const std::string& fichier);
void tronque(const std::string& fichier);
void un_texte(const std::string& fichier);

// Files with something that a case cannot express.
void ajouts_a_dire(const std::string& fichier);
/// On the first zone, of 5 x 5 x 2 cells: a condition of each type on a cell of k-min, and on
/// k-max cells and faces located in every way.
void tous_les_types(const std::string& fichier);

}  // namespace topomine
