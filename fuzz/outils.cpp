#include "fuzz/outils.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/lecture/parcours.h"

using namespace topomine;

namespace {

/// Not an exception of the standard library: no handler of ours may take it for a lack of memory.
struct FauteDeStructure {};

void lancer() {
  throw FauteDeStructure{};
}

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

bool sans_faute(Ecoute& ecoute, const std::function<void()>& action) {
  suite_faute = lancer;
  try {
    action();
    return true;
  } catch (const FauteDeStructure&) {
    const std::string message = ecoute.erreur();
    PROMET(message.find("base: bool Base::load_") != std::string::npos);
    PROMET(message.find("Assertion `") != std::string::npos);
    PROMET(message.ends_with(" absent ou vide\n"));
    return false;
  }
}

bool memes_bits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}
