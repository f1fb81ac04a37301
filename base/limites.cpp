#include "base/limites.h"

namespace topomine {

Limite limite_de(const Base& base, int code) {
  constexpr int bccode_paroi = 1;
  Limite l{code, Base::list_CLim.contains(code), base._CL(code, "Family"),
           base.DAM2BCCODE({code}).at(0), false};
  l.paroi = l.bccode == bccode_paroi || (!l.famille.empty() && base.pieces.contains(l.famille));
  return l;
}

}  // namespace topomine
