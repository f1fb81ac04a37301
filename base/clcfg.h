#pragma once

#include <string_view>

/// Reads the text of a climite.cfg into Base::list_attr and Base::list_CLim. False, after a
/// message, when there is no complete header line; throws std::runtime_error on a line that lacks
/// its last
/// ";" or has more fields than the header. Internal to base/.
bool walk_clcfg(std::string_view texte);
