#include "base/conditions.h"

#include "base/configuration.h"

namespace topomine {

ConditionLimite condition_limite(const Base& base, int code) {
  ConditionLimite l{code, Base::list_CLim.contains(code),
                    base._CL(code, std::string(colonne_famille)), base.DAM2BCCODE({code}).at(0),
                    false};
  l.paroi = l.bccode == bccode_paroi || (!l.famille.empty() && base.pieces.contains(l.famille));
  return l;
}

}  // namespace topomine
