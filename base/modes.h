#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace topomine {

/// The modes that a base exists in, and in whose order they are listed. docs/formats.md says what
/// each leaves out.
enum class Mode { ext, nrm, min };

inline constexpr auto tous_les_modes = std::to_array<Mode>({Mode::ext, Mode::nrm, Mode::min});
/// As the names of files and the command lines have them, by mode.
inline constexpr auto noms_des_modes = std::to_array<std::string_view>({"ext", "nrm", "min"});

constexpr std::string_view nom(Mode mode) {
  return noms_des_modes[static_cast<std::size_t>(mode)];
}

}  // namespace topomine
