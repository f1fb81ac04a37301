#include "base/limites.h"

namespace topomine {

Limite limite_de(const Base& base, int code) {
  return {code, Base::list_CLim.contains(code), base._CL(code, "Family"),
          base.DAM2BCCODE({code}).at(0)};
}

bool est_paroi(const Base& base, const Limite& limite) {
  constexpr int bccode_paroi = 1;
  return limite.bccode == bccode_paroi ||
         (!limite.famille.empty() && base.pieces.contains(limite.famille));
}

}  // namespace topomine
