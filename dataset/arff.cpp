#include "dataset/arff.h"

#include <algorithm>
#include <cstddef>

#include "dataset/basebuffer.h"

namespace topomine {

std::string mot_arff(const std::string& texte) {
  if (!texte.empty() && texte.find_first_of(a_proteger_arff) == std::string::npos) return texte;
  std::string mot = "'";
  for (const char c : texte) {
    if (c == '\'' || c == '\\') mot += '\\';
    mot += c == '\n' || c == '\r' ? ' ' : c;
  }
  return mot + "'";
}

std::optional<std::vector<std::string>> valeurs_nominales(std::string_view type) {
  if (!type.starts_with('{') || !type.ends_with('}')) return std::nullopt;
  type = type.substr(1, type.size() - 2);
  std::vector<std::string> valeurs;
  for (std::size_t debut = 0; debut <= type.size();) {
    const std::size_t fin = std::min(type.find(',', debut), type.size());
    valeurs.emplace_back(type.substr(debut, fin - debut));
    debut = fin + 1;
  }
  return valeurs;
}

void marquer_absents(BaseBuffer& table) {
  for (std::size_t col = 0; col < table._attr.size(); ++col) {
    const bool nombres = table.is_numeric(static_cast<int>(col));
    const auto valeurs = valeurs_nominales(table._attr[col].second);
    if (!nombres && !valeurs) continue;
    for (BaseBuffer::Exemple& exemple : table._expl) {
      std::string& texte = exemple.at(col);
      // Numbers that the table writes end in a digit, all but "inf" and "nan".
      const bool lisible = nombres ? !texte.empty() && texte.back() >= '0' && texte.back() <= '9'
                                   : std::ranges::find(*valeurs, texte) != valeurs->end();
      if (!lisible) texte = "?";
    }
  }
}

}  // namespace topomine
