#include "base/conditions.h"

#include "base/configuration.h"

namespace topomine {

ConditionLimite condition_limite(const Base& base, int code) {
  const std::string famille = base._CL(code, std::string(colonne_famille));
  const int bccode = base.DAM2BCCODE({code}).at(0);
  const bool de_piece = !famille.empty() && base.pieces.contains(famille);
  return {code, Base::list_CLim.contains(code), famille, bccode,
          bccode == bccode_paroi || de_piece};
}

}  // namespace topomine
