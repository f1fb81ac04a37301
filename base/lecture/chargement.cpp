#include "base/lecture/chargement.h"

#include <algorithm>
#include <string_view>

#include "base/base.h"
#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"

namespace topomine {

namespace {

/// Not a std::exception: the readers must not take it for a document that cannot be loaded.
struct FauteStructure {};

std::string sur_une_ligne(std::string texte) {
  texte.erase(texte.find_last_not_of(" \n") + 1);
  std::ranges::replace(texte, '\n', ' ');
  return texte;
}

/// Keeps what is said; traces are of no use afterwards.
class Memoire final : public Journal {
 public:
  explicit Memoire(Chargement& c) : c_(c) {}
  void ouverture(const std::string& fichier) override { c_.fichier = fichier; }
  void illisible(const std::string& fichier, bool /*ligne_neuve*/) override {
    c_.dit = sur_une_ligne("probleme de lecture du fichier " + fichier);
  }
  void trace(std::string_view /*ligne*/) override {}
  void avertissement(std::string_view ligne) override { c_.avertissements.emplace_back(ligne); }
  void echec(std::string_view ligne) override {
    c_.dit = sur_une_ligne(std::string(ligne));
    if (!c_.fichier.empty()) c_.dit += " (" + c_.fichier + ")";
  }
  void faute(const Faute& faute) override {
    c_.dit = sur_une_ligne(faute.texte());
    throw FauteStructure{};
  }

 private:
  Chargement& c_;
};

}  // namespace

Chargement charger(Base& base) {
  base._disp(false);
  Chargement c;
  Memoire journal(c);
  try {
    c.fait = lire_base(base, journal);
    if (!c.fait && c.dit.empty()) c.dit = "memoire insuffisante";
  } catch (const FauteStructure&) {
    c.fait = false;
  }
  return c;
}

}  // namespace topomine
