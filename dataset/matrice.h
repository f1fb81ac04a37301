#pragma once

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dataset/echelle.h"

class BaseBuffer;

namespace topomine {

/// A sum to twice the precision of a double, so that it does not show in which order, or in how
/// many parts, it was made.
struct Somme {
  double haut = 0.0, bas = 0.0;

  void ajouter(double v);
  void ajouter_produit(double a, double b);
  void ajouter(const Somme& autre);
};

/// What a cell of the matrix says of two attributes. With n examples, sums over all of them:
/// sum(xy)/n; sum(xy)/n less the product of the means; the latter over both standard deviations.
enum class Relation { produits, centree, correlation };

/// The sums that the matrix of a table's attributes is made of. Sums of parts add up to those of
/// the whole, in one run or over many machines.
class Sommes {
 public:
  struct Attribut {
    std::string nom, type;

    bool operator==(const Attribut&) const = default;
  };

  Sommes() = default;
  /// For tables with these attributes: numbers are those of numeric attributes, and of nominal ones
  /// with two values that are numbers.
  explicit Sommes(std::vector<Attribut> attributs);

  /// Adds the examples of a table; `avance` is told, before each attribute, how many are done.
  void ajouter(const BaseBuffer& exemples, const std::function<void(std::size_t)>& avance);
  /// Adds other sums; false when their attributes, or the scales that the values were mapped by,
  /// are not the same.
  bool ajouter(const Sommes& autre);

  std::size_t nb_exemples() const { return nb_exemples_; }
  const std::vector<Attribut>& attributs() const { return attributs_; }
  /// Nothing where one of the two has no numbers (a nominal attribute: for the mean products, which
  /// are the run's), without examples, and for the correlation of a constant attribute.
  std::optional<double> cellule(std::size_t a, std::size_t b, Relation relation) const;

  Echelle echelle;  ///< the scale that values were mapped by beforehand, empty for none

  /// Csv, every number with all its digits.
  void ecrire(std::ostream& out) const;
  /// Reads what ecrire writes; false, with what is wrong in `faute`, for anything else.
  bool lire(std::string_view texte, std::string& faute);

 private:
  bool a_des_nombres(std::size_t a) const { return nombres_[a]; }
  Somme& produit(std::size_t a, std::size_t b) { return produits_[a * attributs_.size() + b]; }
  const Somme& produit(std::size_t a, std::size_t b) const {
    return produits_[a * attributs_.size() + b];
  }

  std::size_t nb_exemples_ = 0;
  std::vector<Attribut> attributs_;
  std::vector<bool> nombres_;
  std::vector<Somme> sommes_;    // by attribute
  std::vector<Somme> produits_;  // by pair, the first one not above the second
};

}  // namespace topomine
