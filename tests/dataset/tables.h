#pragma once

#include <string>
#include <utility>
#include <vector>

#include "dataset/basebuffer.h"

// Small tables.

using Attributs = std::vector<std::pair<std::string, std::string>>;
using Lignes = std::vector<BaseBuffer::Exemple>;

/// A text and a number behind it.
inline std::string avec(std::string debut, long n) {
  return debut.append(std::to_string(n));
}

/// A table with these attributes, all shown, and these rows.
inline BaseBuffer table(const Attributs& attributs, const Lignes& lignes) {
  BaseBuffer t("essai");
  t._attr.clear();
  t._aff.clear();
  for (const auto& [nom, type] : attributs) t.add_attr(nom, type);
  t._expl = lignes;
  return t;
}

/// Numeric columns c0, c1, ... given column by column.
inline BaseBuffer colonnes(const Lignes& par_colonne) {
  BaseBuffer t = table({}, Lignes(par_colonne.at(0).size()));
  for (std::size_t c = 0; c < par_colonne.size(); ++c) {
    t.add_attr(avec("c", static_cast<long>(c)), "numeric");
    for (std::size_t i = 0; i < t._expl.size(); ++i) t._expl[i].push_back(par_colonne[c].at(i));
  }
  return t;
}

/// n examples over the whole schema; each cell names its example and its column.
inline BaseBuffer reperes(int n) {
  BaseBuffer t("reperes");
  for (int i = 0; i < n; ++i) {
    t._expl.emplace_back();
    for (std::size_t c = 0; c < t._attr.size(); ++c)
      t._expl.back().push_back(avec(avec("", i) + ":", static_cast<long>(c)));
  }
  return t;
}
