#pragma once

#include <string_view>

namespace topomine {

/// What a CGNS condition type is to a case.
struct TypeCondition {
  std::string_view nom;  ///< as in the file, "BCWall"
  int bccode;
  bool degeneree = false;  ///< for a face that shrank to a line or a point
};

/// By name; an unknown type gives BCCODE 9999.
TypeCondition type_condition(std::string_view nom);

}  // namespace topomine
