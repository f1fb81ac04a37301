#pragma once

#include <string>
#include <string_view>

namespace topomine {

// Texts of unknown origin on their way to a console. Bytes from 0x80 on are UTF-8 where they form
// a sequence of it (names of files, as a rule), ISO-8859-1 elsewhere (the library's own words).

/// The text on one line, its control characters visible: C0, DEL, C1 and those that reorder or
/// break lines in UTF-8 are written byte by byte, as in "\x1B". Everything else is as it was.
std::string affichable(std::string_view texte);

/// The text in UTF-8: what is not UTF-8 is taken for ISO-8859-1.
std::string en_utf8(std::string_view texte);

}  // namespace topomine
