#pragma once

#include <array>
#include <iosfwd>
#include <string_view>

#include "vtk/maille.h"

namespace topomine {

/// XML for unstructured grids, and the older text form. Names are written as the files have them
/// (ISO-8859-1), numbers so that they read back the same to the bit.
void ecrire_vtu(std::ostream& out, const Grille& grille);
void ecrire_vtk(std::ostream& out, const Grille& grille);

struct FormatVtk {
  std::string_view extension;
  void (*ecrire)(std::ostream& out, const Grille& grille);
};

inline constexpr auto formats_vtk =
    std::to_array<FormatVtk>({{".vtu", ecrire_vtu}, {".vtk", ecrire_vtk}});

/// The format of a file's extension; null for another one.
const FormatVtk* format_vtk(std::string_view fichier);

}  // namespace topomine
