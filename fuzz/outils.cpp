#include "fuzz/outils.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace topomine;

namespace {

/// Not an exception of the standard library: no handler of ours may take it for a lack of memory.
struct FauteDeStructure {};

}  // namespace

void promesse_rompue(const char* fichier, int ligne, const char* expr) {
  std::fprintf(stderr, "%s:%d: promesse rompue : %s\n", fichier, ligne, expr);
  std::abort();
}

Ecoute::Ecoute()
    : avant_sortie_(std::cout.rdbuf(&sortie_)), avant_erreur_(std::cerr.rdbuf(&erreur_)) {}

Ecoute::~Ecoute() {
  std::cout.rdbuf(avant_sortie_);
  std::cerr.rdbuf(avant_erreur_);
}

std::string Ecoute::prendre(std::stringbuf& tampon) {
  std::string texte = tampon.str();
  tampon.str({});
  return texte;
}

void JournalEssai::faute(const Faute& faute) {
  const std::string texte = faute.texte();
  PROMET(texte.starts_with("base: bool Base::load_") && texte.ends_with(" absent ou vide"));
  dit += texte;
  throw FauteDeStructure{};
}

bool sans_faute(const std::function<void()>& action) {
  try {
    action();
    return true;
  } catch (const FauteDeStructure&) {
    return false;
  }
}

bool memes_bits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
