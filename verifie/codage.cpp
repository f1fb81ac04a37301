#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

#include "verifie/balises.h"

namespace topomine {

using namespace std::string_view_literals;

namespace {

/// The line, from 1, on which a byte stands.
int ligne_de(std::string_view texte, std::size_t place) {
  return 1 + static_cast<int>(std::ranges::count(texte.substr(0, place), '\n'));
}

/// Text that needs no second look: ASCII without control characters.
bool ordinaire(std::string_view texte) {
  unsigned autre = 0;  // no early way out: a loop that the compiler makes wide
  for (const char c : texte) {
    const auto u = static_cast<unsigned char>(c);
    autre |= static_cast<unsigned>(u >= 0x80) |
             (static_cast<unsigned>(u < 0x20) & static_cast<unsigned>(u != '\t') &
              static_cast<unsigned>(u != '\n') & static_cast<unsigned>(u != '\r'));
  }
  return autre == 0;
}

/// Length of the UTF-8 character at the start of `texte`, which is none of ASCII; 0 when there is
/// none.
std::size_t caractere_utf8(std::string_view texte) {
  const auto octet = [&](std::size_t i) { return static_cast<unsigned char>(texte[i]); };
  const unsigned premier = octet(0);
  const std::size_t n = premier < 0xC2   ? 0
                        : premier < 0xE0 ? 2
                        : premier < 0xF0 ? 3
                        : premier < 0xF5 ? 4
                                         : 0;
  if (n == 0 || texte.size() < n) return 0;
  for (std::size_t i = 1; i < n; ++i)
    if (octet(i) < 0x80 || octet(i) > 0xBF) return 0;
  const unsigned second = octet(1);
  const bool interdit = (premier == 0xE0 && second < 0xA0) || (premier == 0xED && second > 0x9F) ||
                        (premier == 0xF0 && second < 0x90) || (premier == 0xF4 && second > 0x8F);
  return interdit ? 0 : n;
}

/// Encoding of the declaration, in lower case; empty when there is none.
std::string codage_annonce(std::string_view texte) {
  const std::size_t debut = texte.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
  if (!texte.substr(debut).starts_with("<?xml")) return {};
  const std::string_view declaration = texte.substr(debut, texte.find("?>"));
  const std::size_t mot = declaration.find("encoding");
  if (mot == std::string_view::npos) return {};
  const std::size_t ouvre = declaration.find_first_of("\"'", mot);
  if (ouvre == std::string_view::npos) return {};
  const std::size_t ferme = declaration.find(declaration[ouvre], ouvre + 1);
  std::string nom(declaration.substr(ouvre + 1, ferme - ouvre - 1));
  std::ranges::transform(nom, nom.begin(), [](unsigned char c) { return std::tolower(c); });
  return nom;
}

class Codage {
 public:
  explicit Codage(std::string_view texte) : texte_(texte), annonce_(codage_annonce(texte)) {}

  std::optional<FauteOctets> chercher() const {
    if (texte_.starts_with("\xFF\xFE") || texte_.starts_with("\xFE\xFF"))
      return faute(0, "UTF-16, que la lecture ne connait pas");
    if (ordinaire(texte_)) return {};
    const bool latin = annonce_.starts_with("iso-8859") || annonce_.starts_with("latin") ||
                       annonce_.starts_with("windows-");
    const bool utf8 = annonce_.empty() || annonce_.starts_with("utf-8") || annonce_ == "utf8";
    const bool ascii = annonce_.ends_with("ascii");
    std::size_t premier_haut = texte_.size();
    bool tout_utf8 = true;
    for (std::size_t i = 0; i < texte_.size();) {
      const auto u = static_cast<unsigned char>(texte_[i]);
      if (u < 0x80) {
        if (u < 0x20 && u != '\t' && u != '\n' && u != '\r')
          return faute(i, "caractere de commande " + std::to_string(u));
        ++i;
        continue;
      }
      if (ascii) return faute(i, octet(u) + " n'est pas de l'ASCII");
      const std::size_t n = caractere_utf8(texte_.substr(i));
      if (utf8 && n == 0) return faute(i, octet(u) + " n'est pas de l'UTF-8" + origine());
      if (n == 0 && annonce_.starts_with("iso-8859") && u < 0xA0)
        return faute(i, octet(u) + " n'est pas de l'" + annonce_);
      tout_utf8 = tout_utf8 && n > 0;
      premier_haut = std::min(premier_haut, i);
      i += std::max<std::size_t>(n, 1);
    }
    if (latin && tout_utf8 && premier_haut < texte_.size())
      return faute(premier_haut, annonce_ + " annonce, mais les octets sont de l'UTF-8");
    return {};
  }

 private:
  static std::string octet(unsigned u) {
    constexpr std::string_view chiffres = "0123456789ABCDEF";
    return std::string("l'octet 0x") + chiffres[u >> 4] + chiffres[u & 15];
  }
  std::string origine() const { return annonce_.empty() ? ", codage sans annonce" : ", annonce"; }
  FauteOctets faute(std::size_t place, std::string quoi) const {
    return {Code::hors_codage, ligne_de(texte_, place), std::move(quoi)};
  }

  std::string_view texte_;
  std::string annonce_;
};

}  // namespace

std::optional<FauteOctets> faute_codage(std::string_view texte) {
  const std::size_t nul = texte.find('\0');
  if (nul != std::string_view::npos &&
      texte.find_first_not_of("\0 \t\r\n"sv, nul) != std::string_view::npos) {
    return FauteOctets{Code::octet_nul, ligne_de(texte, nul), "octet nul, la lecture s'arrete la"};
  }
  return Codage(texte.substr(0, nul)).chercher();
}

}  // namespace topomine
