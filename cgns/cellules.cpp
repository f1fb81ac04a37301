#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

#include "cgns/mesures.h"

// Every cell of a zone, layer by layer. The loops run along i over plain arrays so that compilers
// turn them into vector instructions; this is where an import spends its time.

namespace topomine {

namespace {

/// Three arrays of one length.
struct Vecteurs {
  std::vector<double> x, y, z;
  explicit Vecteurs(std::size_t n) : x(n), y(n), z(n) {}
};

struct Ligne {
  const double *x, *y, *z;
};

Ligne ligne(const Vecteurs& v, std::size_t debut) {
  return {v.x.data() + debut, v.y.data() + debut, v.z.data() + debut};
}

// The outputs are arguments of their own, since compilers believe no other promise that they are
// apart from the inputs.

/// The unit vectors from the nodes a to the nodes b; null between nodes that coincide.
void unitaires(const Ligne& a, const Ligne& b, std::size_t n, double* __restrict x,
               double* __restrict y, double* __restrict z) {
  for (std::size_t i = 0; i < n; ++i) {
    const double dx = b.x[i] - a.x[i], dy = b.y[i] - a.y[i], dz = b.z[i] - a.z[i];
    const double carre = dx * dx + dy * dy + dz * dz;
    // Where it is 0, dx, dy and dz are too.
    const double inverse = 1 / std::sqrt(carre > 0 ? carre : 1.0);
    x[i] = dx * inverse;
    y[i] = dy * inverse;
    z[i] = dz * inverse;
  }
}

void unitaires(const Ligne& a, const Ligne& b, std::size_t n, Vecteurs& sortie, std::size_t debut) {
  unitaires(a, b, n, sortie.x.data() + debut, sortie.y.data() + debut, sortie.z.data() + debut);
}

/// Lowers each minimum to sens times the determinant of a, b and d there.
void abaisser(const Ligne& a, const Ligne& b, const Ligne& d, double sens, std::size_t n,
              double* __restrict min) {
  for (std::size_t i = 0; i < n; ++i) {
    const double v = sens * (a.x[i] * (b.y[i] * d.z[i] - b.z[i] * d.y[i]) +
                             a.y[i] * (b.z[i] * d.x[i] - b.x[i] * d.z[i]) +
                             a.z[i] * (b.x[i] * d.y[i] - b.y[i] * d.x[i]));
    min[i] = v < min[i] ? v : min[i];
  }
}

/// One coordinate of four times the mean edge of each cell of a row, along i, j and k, from the
/// four rows of its nodes: a, then the next ones along j, k and both.
void aretes(const double* a, const double* b, const double* c, const double* e, std::size_t n,
            double* __restrict ei, double* __restrict ej, double* __restrict ek) {
  for (std::size_t i = 0; i < n; ++i) {
    ei[i] = (a[i + 1] - a[i]) + (b[i + 1] - b[i]) + (c[i + 1] - c[i]) + (e[i + 1] - e[i]);
    ej[i] = (b[i] - a[i]) + (b[i + 1] - a[i + 1]) + (e[i] - c[i]) + (e[i + 1] - c[i + 1]);
    ek[i] = (c[i] - a[i]) + (c[i + 1] - a[i + 1]) + (e[i] - b[i]) + (e[i + 1] - b[i + 1]);
  }
}

/// Adds facteur times the determinant of a, b and d.
void ajouter_determinants(const Ligne& a, const Ligne& b, const Ligne& d, double facteur,
                          std::size_t n, double* __restrict somme) {
  for (std::size_t i = 0; i < n; ++i)
    somme[i] += facteur * (a.x[i] * (b.y[i] * d.z[i] - b.z[i] * d.y[i]) +
                           a.y[i] * (b.z[i] * d.x[i] - b.x[i] * d.z[i]) +
                           a.z[i] * (b.x[i] * d.y[i] - b.y[i] * d.x[i]));
}

/// One thread's work: some layers of cells, with the unit vectors of the two planes around one.
class Tranche {
 public:
  Tranche(const Coordonnees& c, double sens)
      : c_(c),
        sens_(sens),
        ni_(static_cast<std::size_t>(c.taille[0])),
        nj_(static_cast<std::size_t>(c.taille[1])),
        ui_{Vecteurs(ni_ * nj_), Vecteurs(ni_ * nj_)},
        uj_{Vecteurs(ni_ * nj_), Vecteurs(ni_ * nj_)},
        uk_(ni_ * nj_),
        mi_(ni_),
        mj_(ni_),
        mk_(ni_),
        min_(ni_),
        somme_(ni_),
        test_(ni_) {}

  /// Layers k0 to k1 of cells, counted from 0; the sum of each goes to its place in `centres`.
  void executer(std::size_t k0, std::size_t k1, std::vector<double>& centres) {
    std::ranges::fill(min_, 1.0);
    plan(k0);
    for (std::size_t k = k0; k < k1; ++k) {
      plan(k + 1);
      for (std::size_t j = 0; j < nj_; ++j)
        unitaires(noeuds(j, k), noeuds(j, k + 1), ni_, uk_, j * ni_);
      std::ranges::fill(somme_, 0.0);
      for (std::size_t j = 0; j + 1 < nj_; ++j) {
        jacobiens(j, k);
        centres_ligne(j, k);
      }
      double somme = 0;
      for (const double s : somme_) somme += s;
      centres[k] = somme;
    }
  }

  double minimum() const { return *std::ranges::min_element(min_); }
  bool finies() const {
    return std::ranges::all_of(test_, [](double t) { return t == 0; });
  }

 private:
  Ligne noeuds(std::size_t j, std::size_t k) const {
    const std::size_t debut = ni_ * (j + nj_ * k);
    return {c_.x.data() + debut, c_.y.data() + debut, c_.z.data() + debut};
  }

  void plan(std::size_t k) {
    for (std::size_t j = 0; j < nj_; ++j) {
      const Ligne a = noeuds(j, k);
      // What is no finite number makes 0 * x differ from 0.
      for (std::size_t i = 0; i < ni_; ++i) test_[i] += 0 * a.x[i] + 0 * a.y[i] + 0 * a.z[i];
      unitaires(a, {a.x + 1, a.y + 1, a.z + 1}, ni_ - 1, ui_[k % 2], j * ni_);
      if (j + 1 < nj_) unitaires(a, noeuds(j + 1, k), ni_, uj_[k % 2], j * ni_);
    }
  }

  /// The corners of the cells of a row: each has an edge along i, one along j and one along k.
  void jacobiens(std::size_t j, std::size_t k) {
    for (std::size_t cj = 0; cj < 2; ++cj)
      for (std::size_t ck = 0; ck < 2; ++ck) {
        const Ligne a = ligne(ui_[(k + ck) % 2], (j + cj) * ni_);
        const Ligne b = ligne(uj_[(k + ck) % 2], j * ni_), d = ligne(uk_, (j + cj) * ni_);
        abaisser(a, b, d, sens_, ni_ - 1, min_.data());
        abaisser(a, {b.x + 1, b.y + 1, b.z + 1}, {d.x + 1, d.y + 1, d.z + 1}, sens_, ni_ - 1,
                 min_.data());
      }
  }

  /// Determinant of the mean edges along i, j and k of each cell of a row.
  void centres_ligne(std::size_t j, std::size_t k) {
    const std::size_t n = ni_ - 1, debut = ni_ * (j + nj_ * k), couche = ni_ * nj_;
    const auto coordonnee = [&](const double* v, std::vector<double> Vecteurs::*x) {
      const double* const a = v + debut;
      aretes(a, a + ni_, a + couche, a + couche + ni_, n, (mi_.*x).data(), (mj_.*x).data(),
             (mk_.*x).data());
    };
    coordonnee(c_.x.data(), &Vecteurs::x);
    coordonnee(c_.y.data(), &Vecteurs::y);
    coordonnee(c_.z.data(), &Vecteurs::z);
    ajouter_determinants(ligne(mi_, 0), ligne(mj_, 0), ligne(mk_, 0), sens_ / 64, n, somme_.data());
  }

  const Coordonnees& c_;
  double sens_;
  std::size_t ni_, nj_;
  std::array<Vecteurs, 2> ui_, uj_;  // of planes k and k + 1, by the parity of their number
  Vecteurs uk_;
  Vecteurs mi_, mj_, mk_;                   // mean edges of a row of cells
  std::vector<double> min_, somme_, test_;  // one place per i, so that the loops stay independent
};

}  // namespace

MesuresCellules mesurer_cellules(const Coordonnees& c, double sens, unsigned fils) {
  const auto couches = static_cast<std::size_t>(c.taille[2] - 1);
  const std::size_t petits = 100'000;  // a thread costs more than so many cells
  const std::size_t nb =
      std::clamp<std::size_t>(c.x.size() / petits, 1, std::min<std::size_t>(fils, couches));
  std::vector<double> centres(couches);
  std::vector<Tranche> tranches;
  for (std::size_t n = 0; n < nb; ++n) tranches.emplace_back(c, sens);
  {
    std::vector<std::jthread> en_cours;
    for (std::size_t n = 1; n < nb; ++n)
      en_cours.emplace_back(
          [&, n] { tranches[n].executer(couches * n / nb, couches * (n + 1) / nb, centres); });
    tranches[0].executer(0, couches / nb, centres);
  }
  MesuresCellules r;
  for (const Tranche& t : tranches) {
    r.jacobien_min = std::min(r.jacobien_min, t.minimum());
    r.finies = r.finies && t.finies();
  }
  for (const double v : centres) r.centres += v;
  return r;
}

}  // namespace topomine
