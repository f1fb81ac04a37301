#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "dataset/basebuffer.h"

namespace {

/// Rows on their way to a stream, gathered into large writes.
class Tampon {
 public:
  explicit Tampon(std::ostream& out) : out_(out), octets_(1 << 16) {}
  Tampon(const Tampon&) = delete;
  Tampon& operator=(const Tampon&) = delete;

  /// The row's values in these columns, each but the last followed by sep, and an end of line. A
  /// row too short for a column has no value there.
  void ecrire(const BaseBuffer::Exemple& ligne, const std::vector<std::size_t>& colonnes,
              char sep) {
    bool vide = true;
    for (const std::size_t n : colonnes) {
      if (n >= ligne.size()) continue;
      const std::string& valeur = ligne[n];
      reserver(valeur.size() + 1);
      char* const p = octets_.data() + rempli_;
      if (valeur.size() == 1)
        *p = valeur[0];  // most values are one digit
      else
        valeur.copy(p, valeur.size());
      p[valeur.size()] = sep;
      rempli_ += valeur.size() + 1;
      vide = false;
    }
    if (vide) {
      reserver(1);
      ++rempli_;
    }
    octets_[rempli_ - 1] = '\n';
  }

  /// To be called at the end; a stream that throws may do so here.
  void vider() {
    out_.write(octets_.data(), static_cast<std::streamsize>(rempli_));
    rempli_ = 0;
  }

 private:
  /// Room for that many bytes more; the last one written stays.
  void reserver(std::size_t taille) {
    if (octets_.size() - rempli_ >= taille) return;
    vider();
    if (octets_.size() < taille) octets_.resize(taille);
  }

  std::ostream& out_;
  std::vector<char> octets_;
  std::size_t rempli_ = 0;
};

}  // namespace

std::ostream& BaseBuffer::Print_attr(std::ostream& out, char sep) {
  const std::size_t nb = _attr.size();
  const std::size_t classe = _num_classe != -1 ? static_cast<std::size_t>(_num_classe) : nb - 1;
  // The class comes last in every row, even when it is hidden: a row always has its label.
  std::vector<std::size_t> colonnes;
  if (!_expl.empty()) {
    for (std::size_t n = 0; n < nb; ++n)
      if (n != classe && _aff[_attr[n].first]) colonnes.push_back(n);
    if (classe < nb) colonnes.push_back(classe);
  }

  Tampon tampon(out);
  for (const Exemple& ligne : _expl) tampon.ecrire(ligne, colonnes, sep);
  tampon.vider();
  return out;
}

std::ostream& BaseBuffer::Print_weka(std::ostream& out) {
  out << "%\n"
      << "% file generated automatically...\n"
      << "% base for topology analysis.\n"
      << "%\n\n\n\n"
      << "@relation " << _nom << "\n\n";
  const auto declarer = [&](const std::pair<std::string, std::string>& attribut) {
    out << "@attribute " << attribut.first << ' ' << attribut.second << '\n';
  };
  // With no class column of its own the table declares its last attribute like the others: hidden,
  // it is missing here and yet ends every row.
  for (std::size_t n = 0; n < _attr.size(); ++n)
    if (static_cast<int>(n) != _num_classe && _aff[_attr[n].first]) declarer(_attr[n]);
  if (_num_classe >= 0 && static_cast<std::size_t>(_num_classe) < _attr.size())
    declarer(_attr[static_cast<std::size_t>(_num_classe)]);
  out << "\n\n\n@data\n";
  Print_attr(out, ',');
  return out << "\n\n";
}

std::ostream& BaseBuffer::Print_torch(std::ostream& out) {
  out << _expl.size() << ' ' << nb_attr_aff() << '\n';
  Print_attr(out, ' ');
  return out << '\n';
}
