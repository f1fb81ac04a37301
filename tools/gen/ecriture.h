// The files of a collection.
#pragma once

#include <filesystem>

#include "tools/gen/maillage.h"

namespace topomine::gen {

/// Both functions create their folder, and throw std::runtime_error when something cannot be
/// written.

/// climite.cfg, the same for every base.
void ecrire_conditions(const std::filesystem::path& dossier);

/// Folder of one base: the scene, then blocks, faces, edges and vertices in the three modes.
void ecrire_base(const std::filesystem::path& dossier, const std::string& nom, const Forme& f,
                 const Maillage& m);

}  // namespace topomine::gen
