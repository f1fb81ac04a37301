#pragma once

#include <array>
#include <string_view>

// The doors through which foreign bytes come in. A target takes the bytes of one input and goes
// wherever a file with these bytes could lead; it ends the program when a promise is broken, and
// returns on everything else, a refused file and a structural fault included.
void cible_bloc(std::string_view entree);
void cible_face(std::string_view entree);
void cible_edge(std::string_view entree);
void cible_vertex(std::string_view entree);
void cible_scene(std::string_view entree);
void cible_climite(std::string_view entree);
void cible_conversion(std::string_view entree);
void cible_table(std::string_view entree);
/// The files of one base after climite.cfg, in the order of load_all, with `separateur` between
/// them: climite.cfg, .def, .blck, .face, .edge, .vrtx. Missing ones are empty.
void cible_collection(std::string_view entree);

/// A CGNS mesh, or what the process that reads one sends back. Built with the CGNS library only.
void cible_cgns(std::string_view entree);

inline constexpr char separateur = '\x1e';

struct Cible {
  std::string_view nom;
  void (*essayer)(std::string_view);
  bool binaire = false;  ///< an input a file: any byte may be in it
};

inline constexpr auto cibles = std::to_array<Cible>({
    {"bloc", cible_bloc},
    {"face", cible_face},
    {"edge", cible_edge},
    {"vertex", cible_vertex},
    {"scene", cible_scene},
    {"climite", cible_climite},
    {"conversion", cible_conversion},
    {"table", cible_table},
    {"collection", cible_collection},
#ifdef TOPOMINE_CGNS
    {"cgns", cible_cgns, true},
#endif
});
