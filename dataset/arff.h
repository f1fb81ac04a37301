#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class BaseBuffer;

namespace topomine {

/// What a plain ARFF word cannot hold.
inline constexpr std::string_view a_proteger_arff = " \t\r\n'\"\\,%{}?";

/// An ARFF word: quoted when it is not plain.
std::string mot_arff(const std::string& texte);

/// The values of a nominal type, "{a,b}"; nothing for any other type.
std::optional<std::vector<std::string>> valeurs_nominales(std::string_view type);

/// Writes as missing, "?", what an ARFF reader refuses: numbers that are not finite, and nominal
/// values that the attribute's type does not list.
void marquer_absents(BaseBuffer& table);

}  // namespace topomine
