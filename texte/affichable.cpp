#include "texte/affichable.h"

#include <cstddef>
#include <cstdint>

namespace topomine {

namespace {

struct Caractere {
  char32_t code;
  std::size_t octets;
  bool utf8;  // several bytes; otherwise one byte, a character of ISO-8859-1
};

/// The character at the head of a text that is not empty.
Caractere premier(std::string_view t) {
  const auto octet = [&](std::size_t i) { return static_cast<std::uint8_t>(t[i]); };
  const std::uint8_t tete = octet(0);
  const Caractere seul{tete, 1, false};
  const std::size_t n = tete < 0xC2 ? 1 : tete < 0xE0 ? 2 : tete < 0xF0 ? 3 : tete < 0xF5 ? 4 : 1;
  if (n == 1 || t.size() < n) return seul;
  char32_t code = tete & (0xFFU >> (n + 1));
  for (std::size_t i = 1; i < n; ++i) {
    if ((octet(i) & 0xC0) != 0x80) return seul;
    code = code << 6 | (octet(i) & 0x3FU);
  }
  const bool trop_long = (n == 3 && code < 0x800) || (n == 4 && code < 0x10000);
  if (trop_long || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return seul;
  return {code, n, true};
}

bool invisible(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) ||                           // C0, DEL, C1
         (c >= 0x200E && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||  // marks, ends of line
         (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

}  // namespace

std::string affichable(std::string_view texte) {
  constexpr char chiffres[] = "0123456789ABCDEF";
  std::string s;
  s.reserve(texte.size());
  for (std::size_t i = 0; i < texte.size();) {
    const Caractere c = premier(texte.substr(i));
    for (const std::size_t fin = i + c.octets; i < fin; ++i) {
      const auto octet = static_cast<std::uint8_t>(texte[i]);
      if (invisible(c.code))
        s += {'\\', 'x', chiffres[octet >> 4], chiffres[octet & 15]};
      else
        s += texte[i];
    }
  }
  return s;
}

std::string en_utf8(std::string_view texte) {
  std::string s;
  s.reserve(texte.size());
  for (std::size_t i = 0; i < texte.size();) {
    const Caractere c = premier(texte.substr(i));
    if (c.utf8 || c.code < 0x80) {
      s += texte.substr(i, c.octets);
    } else {
      s += static_cast<char>(0xC0 | c.code >> 6);
      s += static_cast<char>(0x80 | (c.code & 0x3F));
    }
    i += c.octets;
  }
  return s;
}

}  // namespace topomine
