#pragma once

#include <string>
#include <vector>

namespace topomine {

/// The names among `connus` that a list of names and patterns, separated by commas, means. Throws
/// Erreur at one that means none, with the name that is nearest to it, and when the list is empty.
std::vector<std::string> noms_voulus(const std::vector<std::string>& listes,
                                     const std::vector<std::string>& connus);

/// Throws Erreur unless the name is known.
void exiger_attribut(const std::string& nom, const std::vector<std::string>& connus);

/// Texts in one, with ", " between them, but `avant_le_dernier` between the last two.
std::string enumerer(const std::vector<std::string>& textes,
                     const std::string& avant_le_dernier = ", ");

}  // namespace topomine
