#include <array>
#include <cstddef>
#include <map>
#include <ostream>
#include <utility>

#include "dataset/csv.h"
#include "dataset/matrice.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

// A line tells its kind: "exemples" their number, "attribut" the sum of one attribute and the
// bounds that it was mapped by, "produit" the sum of the products of two.
const std::vector<std::string> entete{"sorte", "a",     "b",       "type",
                                      "somme", "reste", "minimum", "maximum"};
enum Champ : std::size_t { sorte, nom_a, nom_b, type, somme, reste, minimum, maximum };

bool lire_reel(const std::string& texte, double& valeur) {
  const auto lu = reel_strict(texte);
  if (lu) valeur = *lu;
  return lu.has_value();
}

/// The lines of a file by kind and names: in any order, since a database may have written them.
class Lignes {
 public:
  /// False at a line that has no place.
  bool ranger(const std::vector<std::string>& champs) {
    return champs.size() == entete.size() &&
           par_nom_.try_emplace({champs[sorte], champs[nom_a], champs[nom_b]}, champs).second;
  }
  /// Takes the sum of a line; null when there is no such line, or no number in it.
  const std::vector<std::string>* prendre(const std::string& quoi, const std::string& a,
                                          const std::string& b, Somme* s) {
    const auto ligne = par_nom_.find({quoi, a, b});
    ++pris_;
    if (ligne == par_nom_.end() || (s && (!lire_reel(ligne->second[somme], s->haut) ||
                                          !lire_reel(ligne->second[reste], s->bas)))) {
      if (faute_.empty()) faute_ = "ligne absente ou sans nombre : " + quoi + ' ' + a + ' ' + b;
      return nullptr;
    }
    return &ligne->second;
  }
  /// What went wrong; empty when all lines were taken, and every one was there.
  std::string faute() const {
    return !faute_.empty() || pris_ == par_nom_.size() ? faute_ : "des lignes de trop";
  }

 private:
  std::map<std::array<std::string, 3>, std::vector<std::string>> par_nom_;
  std::size_t pris_ = 0;
  std::string faute_;
};

}  // namespace

void Sommes::ecrire(std::ostream& out) const {
  ecrire_ligne_csv(out, entete);
  ecrire_ligne_csv(out, {"exemples", "", "", "", std::to_string(nb_exemples_), "0", "", ""});
  for (std::size_t a = 0; a < attributs_.size(); ++a) {
    std::vector<std::string> ligne{"attribut", attributs_[a].nom, "", attributs_[a].type};
    ligne.resize(entete.size());
    if (a_des_nombres(a)) {
      ligne[somme] = exactement(sommes_[a].haut);
      ligne[reste] = exactement(sommes_[a].bas);
    }
    if (const auto b = echelle.bornes.find(attributs_[a].nom); b != echelle.bornes.end()) {
      ligne[minimum] = exactement(b->second.min);
      ligne[maximum] = exactement(b->second.max);
    }
    ecrire_ligne_csv(out, ligne);
  }
  for (std::size_t a = 0; a < attributs_.size(); ++a)
    for (std::size_t b = a; b < attributs_.size(); ++b)
      if (a_des_nombres(a) && a_des_nombres(b))
        ecrire_ligne_csv(out,
                         {"produit", attributs_[a].nom, attributs_[b].nom, "",
                          exactement(produit(a, b).haut), exactement(produit(a, b).bas), "", ""});
}

bool Sommes::lire(std::string_view texte, std::string& faute) {
  const auto lignes = lire_csv(texte);
  if (!lignes || lignes->empty() || lignes->front() != entete) {
    faute = "attendu : un fichier de covariance --sommes";
    return false;
  }
  Lignes par_nom;
  std::vector<Attribut> annonces;
  for (std::size_t i = 1; i < lignes->size(); ++i) {
    const std::vector<std::string>& l = (*lignes)[i];
    if (l.empty()) continue;
    if (!par_nom.ranger(l)) {
      faute = "ligne " + std::to_string(i + 1) + " : en double, ou sans ses huit champs";
      return false;
    }
    if (l[sorte] == "attribut") annonces.push_back({l[nom_a], l[type]});
  }
  constexpr std::size_t attributs_max = 1000;  // there is a sum for each pair
  if (annonces.size() > attributs_max) {
    faute = "plus de " + std::to_string(attributs_max) + " attributs";
    return false;
  }
  *this = Sommes(std::move(annonces));
  Somme n;
  par_nom.prendre("exemples", "", "", &n);
  nb_exemples_ = n.haut >= 0 && n.haut < 1e15 ? static_cast<std::size_t>(n.haut) : 0;
  for (std::size_t a = 0; a < attributs_.size(); ++a) {
    const auto* ligne = par_nom.prendre("attribut", attributs_[a].nom, "",
                                        a_des_nombres(a) ? &sommes_[a] : nullptr);
    Bornes b;
    if (ligne && lire_reel((*ligne)[minimum], b.min) && lire_reel((*ligne)[maximum], b.max))
      echelle.bornes[attributs_[a].nom] = b;
    for (std::size_t c = a; c < attributs_.size() && a_des_nombres(a); ++c)
      if (a_des_nombres(c))
        par_nom.prendre("produit", attributs_[a].nom, attributs_[c].nom, &produit(a, c));
  }
  faute = par_nom.faute();
  return faute.empty();
}

}  // namespace topomine
