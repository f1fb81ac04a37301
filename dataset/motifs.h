#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace topomine {

/// True when the name is what the pattern says: "*" stands for any text, "?" for any one character.
bool correspond(std::string_view motif, std::string_view nom);

/// The known name that a mistyped one was meant to be: one that begins with it, else one with the
/// fewest letters to add, drop or change; upper and lower case count as the same. The first of
/// equals; empty when nothing is known.
std::string nom_le_plus_proche(std::string_view nom, const std::vector<std::string>& connus);

}  // namespace topomine
