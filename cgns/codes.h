#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "base/configuration.h"
#include "cgns/decoupage.h"
#include "cgns/structure.h"

namespace topomine {

// Families of boundary conditions and their Damas codes.

inline constexpr char famille_periodique[] = "periodique";
inline constexpr char famille_interface[] = "interface";
inline constexpr char famille_sans_condition[] = "sans_condition";
inline constexpr int bccode_periodique = 8, bccode_interface = 9, bccode_autre = 13,
                     bccode_sans_condition = 9999;

/// A row of climite.cfg, but for its code.
struct LigneClimite {
  int bccode;
  std::string famille;
};
using TableClimite = std::map<int, LigneClimite>;

struct Famille {
  std::string nom;
  int bccode;
  int code;       ///< Damas code
  bool nouvelle;  ///< climite.cfg has no row for it yet
};

/// The families on the boundary of a mesh.
struct Familles {
  std::vector<Famille> liste;  ///< in the order of the file's pieces
  std::vector<std::size_t>
      de_condition;                    ///< rank per condition of the structure; aucun when unused
  std::size_t sans_condition = aucun;  ///< rank of the bare pieces' family, when there are any
  std::vector<std::string> dits;
};

/// A code for every family that a boundary piece bears, but for those that shrank: that of the
/// first row of `table` with its name, else a free one. `imposes` gives BCCODEs that replace those
/// of the file.
Familles attribuer_codes(const Structure& s, const Decoupage& d, const std::vector<bool>& ecrasees,
                         const TableClimite& table, const std::map<std::string, int>& imposes);

/// A name as climite.cfg and the XML files can hold it, in ISO-8859-1: no ";", no control
/// characters, no blanks around it, never empty. UTF-8 goes in; what Latin-1 lacks becomes "_".
std::string nom_de_famille(const std::string& nom);

}  // namespace topomine
