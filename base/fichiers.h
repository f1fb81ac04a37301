#pragma once

#include <array>
#include <string>
#include <string_view>

namespace topomine {

/// The files of a base, in the order in which they are read and reported.
enum Fichier { fic_def, fic_blck, fic_face, fic_edge, fic_vrtx, nb_fichiers };

struct SorteDeFichier {
  const char* suffixe;
  const char* racine;  ///< the top element
  const char* sorte;   ///< what messages call that which it holds
};

/// By Fichier.
inline constexpr std::array<SorteDeFichier, nb_fichiers> sortes_de_fichier{{
    {".def", "definition_scene", "scene"},
    {".blck", "Blocks", "bloc"},
    {".face", "Faces", "face"},
    {".edge", "Edges", "edge"},
    {".vrtx", "Vertices", "vertex"},
}};

/// What follows the base's name in the name of a file. The scene is the same in all modes.
inline std::string fin_de_nom(Fichier f, std::string_view mode = {}) {
  return (f == fic_def ? std::string() : "_" + std::string(mode)) + sortes_de_fichier[f].suffixe;
}

}  // namespace topomine
