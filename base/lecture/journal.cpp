#include "base/lecture/journal.h"

#include <cstdlib>
#include <iostream>

namespace topomine {

namespace {

class Console final : public Journal {
 public:
  void ouverture(const std::string& fichier) override {
    std::cout << "parsing fichier " << fichier << " ... " << std::flush;
  }
  void illisible(const std::string& /*fichier*/, bool ligne_neuve) override {
    std::cout << (ligne_neuve ? "\n" : "") << "probleme de lecture du fichier" << std::endl;
  }
  void trace(std::string_view ligne) override { std::cout << ligne << std::endl; }
  void avertissement(std::string_view ligne) override { std::cerr << ligne << std::endl; }
  void echec(std::string_view ligne) override { std::cerr << ligne << std::endl; }
  void faute(const Faute& faute) override {
    std::cout.flush();
    std::cerr << faute.texte() << std::endl;
    std::abort();
  }
};

}  // namespace

std::string Faute::texte() const {
  std::string texte = "base: ";
  texte.append(lecteur).append(": Assertion `").append(expr).append("' failed.\nfichier ");
  texte += fichier;
  if (!entite.empty()) texte += ", " + entite;
  return texte + " : " + manque + " absent ou vide";
}

Journal& console() {
  static Console journal;
  return journal;
}

}  // namespace topomine
