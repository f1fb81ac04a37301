#pragma once

#include <string>
#include <string_view>

namespace topomine {

// Internal to base/.

/// Reads the text of a climite.cfg into Base::list_attr and Base::list_CLim. False, after a
/// message, when there is no complete header line; throws std::runtime_error on a line that lacks
/// its last ";" or has more fields than the header.
bool parcourir_climite(std::string_view texte);

/// Value of a column for a Damas code, where it stands; null when either is unknown.
const std::string* chercher_CL(int code, const std::string& colonne);

}  // namespace topomine
