#pragma once

#include <string>

#include "dataset/basebuffer.h"

namespace topomine {

/// Writes the table's covariance matrix into a file; false when that cannot be done. The file is
/// opened first, and nothing is computed or said when it does not open (nor does a pipe that nobody
/// reads). What it holds stays until the whole matrix stands in memory and there is room for it;
/// one that is not there yet appears then, where the system can do that.
bool sauvegarder(const BaseBuffer& table, const std::string& fichier);

}  // namespace topomine
