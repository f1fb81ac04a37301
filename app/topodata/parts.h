#pragma once

#include <optional>
#include <string>

#include "app/topodata/construction.h"

namespace topomine {

/// What `partage` is asked for: exactly one of ratio, plis and un_pli_par_base.
struct OptionsPartage {
  Cible cible;
  OptionsTable table;
  std::optional<double> ratio;  ///< 0 to 1
  std::optional<int> plis;      ///< 2 or more
  std::optional<long> graine;
  std::string stratifie, prefixe;
  bool un_pli_par_base = false, par_base = false, melange = false, sans_melange = false;
};

/// Reads the table, splits it and writes the parts, all of them or none. Says on standard error
/// which bases went where when they are kept whole.
void partager(OptionsPartage& o);

}  // namespace topomine
