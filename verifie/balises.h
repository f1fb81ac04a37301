#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "verifie/constat.h"

namespace topomine {

// Faults found from a document's bytes, where the parser gives no reason or accepts them.

struct FauteOctets {
  Code code;
  int ligne;
  std::string quoi;
};

/// The first place where the document stops making sense: tags that do not match, with the line of
/// both, a tag, comment or quotation without an end, a stray "<" or "&". Nothing when the tags are
/// in order.
std::optional<FauteOctets> faute_xml(std::string_view texte);

/// The first byte that the declared encoding, UTF-8 without one, cannot mean; or the first NUL,
/// which ends the document, when there is more after it.
std::optional<FauteOctets> faute_codage(std::string_view texte);

}  // namespace topomine
