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

/// Keeps messages, drops traces.
class Memoire final : public Journal {
 public:
  Memoire(Chargement& c, bool tranches) : c_(c), tranches_(tranches) {}
  void ouverture(const std::string& fichier) override { c_.fichier = fichier; }
  void illisible(const std::string& fichier, bool /*ligne_neuve*/) override {
    c_.raison = sur_une_ligne("probleme de lecture du fichier " + fichier);
  }
  void trace(std::string_view /*ligne*/) override {}
  void avertissement(std::string_view ligne) override { c_.avertissements.emplace_back(ligne); }
  void echec(std::string_view ligne) override {
    c_.raison = sur_une_ligne(std::string(ligne));
    if (!c_.fichier.empty()) c_.raison += " (" + c_.fichier + ")";
  }
  bool par_tranches() override {
    coupe_ = coupe_ || tranches_;
    return tranches_;
  }
  /// Something was read by slices, or would have been.
  bool coupe() const { return coupe_; }
  void faute(const Faute& faute) override {
    c_.raison = sur_une_ligne(faute.texte());
    throw FauteStructure{};
  }

 private:
  Chargement& c_;
  bool tranches_, coupe_ = false;
};

/// tranches: in, whether slices are allowed; out, whether a file was large enough for them.
Chargement lire(Base& base, bool& tranches) {
  Chargement c;
  Memoire journal(c, tranches);
  try {
    c.fait = lire_base(base, journal);
    if (!c.fait && c.raison.empty()) c.raison = "memoire insuffisante";
  } catch (const FauteStructure&) {
    // Not loaded, and the journal has the reason.
  }
  tranches = journal.coupe();
  return c;
}

bool est_vierge(const Base& base) {
  return base.blocs.empty() && base.faces.empty() && base.edges.empty() && base.vrtxs.empty() &&
         base.pieces.empty() && base.raccords.empty();
}

}  // namespace

Chargement charger(Base& base) {
  base._disp(false);
  bool tranches = est_vierge(base);
  Chargement c = lire(base, tranches);
  if (c.fait || !tranches) return c;
  // A failure in slices is read again from whole documents, so that its message is the usual one.
  base = Base(base.nom, base.chemin, base.type);
  base._disp(false);
  tranches = false;
  return lire(base, tranches);
}

}  // namespace topomine
