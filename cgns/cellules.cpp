#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>
#include <utility>
#include <vector>

#include "cgns/mesures.h"

// Every cell of a zone, layer by layer. The loops run along i over plain arrays so that compilers
// turn them into vector instructions; this is where an import spends its time.

// Always inlined, so that the loops are compiled again inside the AVX2 function.
#define TOUJOURS_EN_LIGNE [[gnu::always_inline]] inline

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

Ligne ligne(const Vecteurs& v) {
  return {v.x.data(), v.y.data(), v.z.data()};
}

// Outputs are separate __restrict arguments: the only form by which compilers assume no overlap
// with the inputs.

/// The unit vectors from the nodes a to the nodes b; null between nodes that coincide.
TOUJOURS_EN_LIGNE void unitaires(const Ligne& a, const Ligne& b, std::size_t n,
                                 double* __restrict x, double* __restrict y, double* __restrict z) {
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

TOUJOURS_EN_LIGNE void vectoriels(const Ligne& a, const Ligne& b, std::size_t n,
                                  double* __restrict x, double* __restrict y,
                                  double* __restrict z) {
  for (std::size_t i = 0; i < n; ++i) {
    x[i] = a.y[i] * b.z[i] - a.z[i] * b.y[i];
    y[i] = a.z[i] * b.x[i] - a.x[i] * b.z[i];
    z[i] = a.x[i] * b.y[i] - a.y[i] * b.x[i];
  }
}

/// Lowers each minimum to the products of an edge with the vectors at its two ends.
TOUJOURS_EN_LIGNE void abaisser(const Ligne& edge, const Ligne& v, std::size_t n,
                                double* __restrict min) {
  for (std::size_t i = 0; i < n; ++i) {
    const double x = edge.x[i], y = edge.y[i], z = edge.z[i];
    const double ici = x * v.x[i] + y * v.y[i] + z * v.z[i];
    const double la = x * v.x[i + 1] + y * v.y[i + 1] + z * v.z[i + 1];
    const double moindre = ici < la ? ici : la;
    min[i] = moindre < min[i] ? moindre : min[i];
  }
}

/// One coordinate of sums of edges between four rows of nodes, b behind a along j, c and e behind
/// a and b along k: at each i the two along j and the two along k, from it the four along i.
TOUJOURS_EN_LIGNE void sommes(const double* a, const double* b, const double* c, const double* e,
                              std::size_t n, double* __restrict si, double* __restrict sj,
                              double* __restrict sk) {
  for (std::size_t i = 0; i < n; ++i) {
    sj[i] = (b[i] - a[i]) + (e[i] - c[i]);
    sk[i] = (c[i] - a[i]) + (e[i] - b[i]);
  }
  for (std::size_t i = 0; i + 1 < n; ++i)
    si[i] = ((a[i + 1] - a[i]) + (b[i + 1] - b[i])) + ((c[i + 1] - c[i]) + (e[i + 1] - e[i]));
}

/// Adds the determinant of the sums of a cell's edges along i, j and k.
TOUJOURS_EN_LIGNE void ajouter_determinants(const Ligne& si, const Ligne& sj, const Ligne& sk,
                                            std::size_t n, double* __restrict somme) {
  for (std::size_t i = 0; i < n; ++i) {
    const double ax = sj.x[i] + sj.x[i + 1], bx = sk.x[i] + sk.x[i + 1];
    const double ay = sj.y[i] + sj.y[i + 1], by = sk.y[i] + sk.y[i + 1];
    const double az = sj.z[i] + sj.z[i + 1], bz = sk.z[i] + sk.z[i + 1];
    somme[i] += si.x[i] * (ay * bz - az * by) + si.y[i] * (az * bx - ax * bz) +
                si.z[i] * (ax * by - ay * bx);
  }
}

/// Rows of vectors whose places can be exchanged.
class Rangees {
 public:
  Rangees(std::size_t n, std::size_t longueur) : v_(n * longueur), places_(n) {
    for (std::size_t r = 0; r < n; ++r) places_[r] = r * longueur;
  }
  Ligne operator[](std::size_t r) const {
    return {v_.x.data() + places_[r], v_.y.data() + places_[r], v_.z.data() + places_[r]};
  }
  void echanger(std::size_t r, std::size_t s) { std::swap(places_[r], places_[s]); }
  TOUJOURS_EN_LIGNE void joindre(std::size_t r, const Ligne& a, const Ligne& b, std::size_t n) {
    unitaires(a, b, n, v_.x.data() + places_[r], v_.y.data() + places_[r],
              v_.z.data() + places_[r]);
  }

 private:
  Vecteurs v_;
  std::vector<std::size_t> places_;
};

/// One thread's work: some layers of cells. The unit vectors of the plane of nodes before a layer
/// give way row by row to those of the plane behind it.
class Tranche {
 public:
  Tranche(const Coordonnees& c, double sens, bool larges)
      : c_(c),
        sens_(sens),
        larges_(larges),
        ni_(static_cast<std::size_t>(c.taille[0])),
        nj_(static_cast<std::size_t>(c.taille[1])),
        ui_(nj_ + 2, ni_),
        uj_(nj_ + 1, ni_),
        uk_(2, ni_),
        produits_(ni_),
        si_(ni_),
        sj_(ni_),
        sk_(ni_),
        min_(ni_, std::numeric_limits<double>::infinity()),
        somme_(ni_) {}

  /// Layers k0 to k1 of cells, counted from 0; the sum of each goes to its place in `centres`.
  void executer(std::size_t k0, std::size_t k1, std::vector<double>& centres) {
#if defined(__x86_64__)
    if (larges_ && __builtin_cpu_supports("avx2")) return executer_par_quatre(k0, k1, centres);
#endif
    parcourir(k0, k1, centres);
  }

  double minimum() const {
    return *std::ranges::min_element(min_);
  }

 private:
#if defined(__x86_64__)
  /// The same operations, four at a time instead of two.
  [[gnu::target("avx2")]] void executer_par_quatre(std::size_t k0, std::size_t k1,
                                                   std::vector<double>& centres) {
    parcourir(k0, k1, centres);
  }
#endif

  TOUJOURS_EN_LIGNE void parcourir(std::size_t k0, std::size_t k1, std::vector<double>& centres) {
    for (std::size_t j = 0; j < nj_; ++j) {
      le_long_de_i(j, j, k0);
      if (j + 1 < nj_) uj_.joindre(j, noeuds(j, k0), noeuds(j + 1, k0), ni_);
    }
    for (std::size_t k = k0; k < k1; ++k) {
      std::ranges::fill(somme_, 0.0);
      derriere(0, k);
      for (std::size_t j = 0; j + 1 < nj_; ++j) {
        derriere(j + 1, k);
        uj_.joindre(nj_, noeuds(j, k + 1), noeuds(j + 1, k + 1), ni_);
        jacobiens(j);
        centres_ligne(j, k);
        ui_.echanger(j, nj_ + j % 2);
        uj_.echanger(j, nj_);
      }
      ui_.echanger(nj_ - 1, nj_ + (nj_ - 1) % 2);
      double somme = 0;
      for (const double s : somme_) somme += s;
      centres[k] = sens_ / 64 * somme;
    }
  }

  Ligne noeuds(std::size_t j, std::size_t k) const {
    const std::size_t debut = ni_ * (j + nj_ * k);
    return {c_.x.data() + debut, c_.y.data() + debut, c_.z.data() + debut};
  }

  TOUJOURS_EN_LIGNE void le_long_de_i(std::size_t rangee, std::size_t j, std::size_t k) {
    const Ligne a = noeuds(j, k);
    ui_.joindre(rangee, a, {a.x + 1, a.y + 1, a.z + 1}, ni_ - 1);
  }

  /// The vectors of row j behind layer k, and those that lead there.
  TOUJOURS_EN_LIGNE void derriere(std::size_t j, std::size_t k) {
    le_long_de_i(nj_ + j % 2, j, k + 1);
    uk_.joindre(j % 2, noeuds(j, k), noeuds(j, k + 1), ni_);
  }

  /// The corners of the cells of a row: each has an edge along i, one along j and one along k.
  TOUJOURS_EN_LIGNE void jacobiens(std::size_t j) {
    for (std::size_t cj = 0; cj < 2; ++cj)
      for (std::size_t ck = 0; ck < 2; ++ck) {
        const Ligne uj = uj_[ck ? nj_ : j], uk = uk_[(j + cj) % 2];
        // In a left-handed zone they turn the other way.
        vectoriels(sens_ > 0 ? uj : uk, sens_ > 0 ? uk : uj, ni_, produits_.x.data(),
                   produits_.y.data(), produits_.z.data());
        abaisser(ui_[ck ? nj_ + (j + cj) % 2 : j + cj], ligne(produits_), ni_ - 1, min_.data());
      }
  }

  /// Determinants of the mean edges along i, j and k of each cell of a row, times 64.
  TOUJOURS_EN_LIGNE void centres_ligne(std::size_t j, std::size_t k) {
    const std::size_t debut = ni_ * (j + nj_ * k), couche = ni_ * nj_;
    const auto coordonnee = [&](const double* v, std::vector<double> Vecteurs::*x) {
      const double* const a = v + debut;
      sommes(a, a + ni_, a + couche, a + couche + ni_, ni_, (si_.*x).data(), (sj_.*x).data(),
             (sk_.*x).data());
    };
    coordonnee(c_.x.data(), &Vecteurs::x);
    coordonnee(c_.y.data(), &Vecteurs::y);
    coordonnee(c_.z.data(), &Vecteurs::z);
    ajouter_determinants(ligne(si_), ligne(sj_), ligne(sk_), ni_ - 1, somme_.data());
  }

  const Coordonnees& c_;
  double sens_;
  [[maybe_unused]] bool larges_;
  std::size_t ni_, nj_;
  Rangees ui_, uj_, uk_;             // after the rows of a plane, those that come
  Vecteurs produits_;                // of a row of nodes
  Vecteurs si_, sj_, sk_;            // sums of edges of a row of cells
  std::vector<double> min_, somme_;  // one place per i, so that the loops stay independent
};

}  // namespace

MesuresCellules mesurer_cellules(const Coordonnees& c, double sens, unsigned fils, bool larges) {
  const auto couches = static_cast<std::size_t>(c.taille[2] - 1);
  const std::size_t petits = 100'000;  // a thread costs more than so many cells
  const std::size_t nb =
      std::clamp<std::size_t>(c.x.size() / petits, 1, std::min<std::size_t>(fils, couches));
  std::vector<double> centres(couches);
  std::vector<Tranche> tranches;
  for (std::size_t n = 0; n < nb; ++n) tranches.emplace_back(c, sens, larges);
  {
    std::vector<std::jthread> en_cours;
    for (std::size_t n = 1; n < nb; ++n)
      en_cours.emplace_back(
          [&, n] { tranches[n].executer(couches * n / nb, couches * (n + 1) / nb, centres); });
    tranches[0].executer(0, couches / nb, centres);
  }
  MesuresCellules r;
  for (const Tranche& t : tranches) r.jacobien_min = std::min(r.jacobien_min, t.minimum());
  for (const double v : centres) r.centres += v;
  // Each node has a part in this sum, which then is no finite number either.
  const auto fini = [](double v) { return std::isfinite(v); };
  r.finies = std::isfinite(r.centres) ||
             (std::ranges::all_of(c.x, fini) && std::ranges::all_of(c.y, fini) &&
              std::ranges::all_of(c.z, fini));
  return r;
}

}  // namespace topomine
