#include "base/lecture/chargement.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <string_view>

#include "base/base.h"
#include "base/lecture/parcours.h"

namespace topomine {

namespace {

/// Not a std::exception: the readers must not take it for a document that cannot be loaded.
struct FauteStructure {};

/// Keeps what is written on a stream while it lives.
class Capture {
 public:
  explicit Capture(std::ostream& flux) : flux_(flux), avant_(flux.rdbuf(&tampon_)) {}
  ~Capture() { flux_.rdbuf(avant_); }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;
  std::string texte() const { return tampon_.str(); }

 private:
  std::ostream& flux_;
  std::stringbuf tampon_;
  std::streambuf* avant_;
};

class FauteLancee {
 public:
  FauteLancee() : avant_(suite_faute) {
    suite_faute = [] { throw FauteStructure{}; };
  }
  ~FauteLancee() { suite_faute = avant_; }
  FauteLancee(const FauteLancee&) = delete;
  FauteLancee& operator=(const FauteLancee&) = delete;

 private:
  void (*avant_)();
};

std::string sur_une_ligne(std::string texte) {
  texte.erase(texte.find_last_not_of(" \n") + 1);
  std::ranges::replace(texte, '\n', ' ');
  return texte;
}

/// The last line of a text that ends its lines.
std::string derniere_ligne(std::string texte) {
  texte.erase(texte.find_last_not_of('\n') + 1);
  return texte.substr(texte.rfind('\n') + 1);
}

/// The reader that failed spoke last: on standard error, or, when its document did not load, on
/// standard output after the trace that names the file.
std::string dernieres_paroles(const std::string& sortie, const std::string& erreurs) {
  constexpr std::string_view trace = "parsing fichier ", echec = "probleme de lecture du fichier";
  const std::size_t debut = sortie.rfind(trace);
  if (debut != std::string::npos) {
    const std::string suite = sortie.substr(debut + trace.size());
    const std::string fichier = suite.substr(0, suite.find(" ... "));
    if (suite.find(echec) != std::string::npos) return std::string(echec) + " " + fichier;
    // All documents were read, and the vertices' reader has no message but that: the links failed.
    if (fichier.ends_with(".vrtx")) return "memoire insuffisante";
    if (!erreurs.empty()) return sur_une_ligne(derniere_ligne(erreurs)) + " (" + fichier + ")";
  }
  return erreurs.empty() ? "memoire insuffisante" : sur_une_ligne(derniere_ligne(erreurs));
}

}  // namespace

Chargement charger(Base& base) {
  const Capture sortie(std::cout), erreurs(std::cerr);
  const FauteLancee lancee;
  base._disp(false);
  Chargement c;
  try {
    c.fait = base.load_all();
    if (!c.fait) c.dit = dernieres_paroles(sortie.texte(), erreurs.texte());
  } catch (const FauteStructure&) {
    // Two lines, the assertion and its place; readers' warnings may stand before them.
    const std::string texte = erreurs.texte();
    c.dit = sur_une_ligne(texte.substr(std::min(texte.rfind("base: bool "), texte.size())));
  }
  if (c.fait) {
    const std::string texte = erreurs.texte();
    c.avertissements = static_cast<int>(std::ranges::count(texte, '\n'));
  }
  return c;
}

}  // namespace topomine
