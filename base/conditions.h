#pragma once

#include <string>
#include <unordered_map>

#include "base/base.h"

namespace topomine {

/// What climite.cfg says of one Damas code.
struct ConditionLimite {
  int code;
  bool connue;          ///< the configuration has the code
  std::string famille;  ///< empty when it is not known
  int bccode;           ///< as the table counts it; 0 when it is not known
  bool paroi;           ///< a wall: BCCODE 1, or the family of a piece of the scene
};

ConditionLimite condition_limite(const Base& base, int code);

/// Those of the codes of a base: each is asked for once, however often it stands in the files.
class TableConditions {
 public:
  explicit TableConditions(const Base& base) : base_(base) {}
  /// Stays where it is as long as this object lives.
  const ConditionLimite& operator[](int code) {
    const auto trouvee = vues_.find(code);
    return trouvee != vues_.end()
               ? trouvee->second
               : vues_.emplace(code, condition_limite(base_, code)).first->second;
  }

 private:
  const Base& base_;
  std::unordered_map<int, ConditionLimite> vues_;
};

}  // namespace topomine
