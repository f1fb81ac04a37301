#pragma once

#include <iosfwd>
#include <string>

namespace topomine {

/// Runs gnuplot on a script and lets it write its picture into the file `image`. Throws Erreur,
/// with its complaint, when it is not installed or does not succeed.
void dessiner(const std::string& script, const std::string& image);

}  // namespace topomine
