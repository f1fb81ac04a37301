#pragma once

#include <string>

namespace topomine {

/// The picture that gnuplot writes on its standard output for a script. Nothing of the user's own
/// settings has a part in it. Throws Erreur, with gnuplot's complaint, when it is not installed or
/// does not succeed.
std::string dessiner(const std::string& script);

}  // namespace topomine
