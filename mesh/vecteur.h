#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace topomine {

/// A point or a direction in space.
struct Vec {
  double x = 0, y = 0, z = 0;

  friend Vec operator+(const Vec& a, const Vec& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
  friend Vec operator-(const Vec& a, const Vec& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend Vec operator*(double s, const Vec& a) { return {s * a.x, s * a.y, s * a.z}; }
};

inline double scalaire(const Vec& a, const Vec& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec vectoriel(const Vec& a, const Vec& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double det(const Vec& a, const Vec& b, const Vec& c) {
  return scalaire(a, vectoriel(b, c));
}
inline double norme(const Vec& a) {
  return std::sqrt(scalaire(a, a));
}
/// Of length 1, or null when it has no direction.
inline Vec unitaire(const Vec& a) {
  const double n = norme(a);
  return n > 0 ? (1 / n) * a : Vec{};
}

inline double distance(const Vec& a, const Vec& b) {
  return norme(a - b);
}
/// The point at the part t of the way from a to b.
inline Vec entre(const Vec& a, const Vec& b, double t) {
  return a + t * (b - a);
}

/// The box around points; empty (bas > haut) until it covers one.
struct Boite {
  static constexpr double infini = std::numeric_limits<double>::infinity();
  Vec bas{infini, infini, infini}, haut{-infini, -infini, -infini};

  bool vide() const { return !(bas.x <= haut.x); }
  void couvrir(const Vec& p) {
    bas = {std::min(bas.x, p.x), std::min(bas.y, p.y), std::min(bas.z, p.z)};
    haut = {std::max(haut.x, p.x), std::max(haut.y, p.y), std::max(haut.z, p.z)};
  }
  void couvrir(const Boite& b) {
    if (b.vide()) return;
    couvrir(b.bas);
    couvrir(b.haut);
  }
  double diagonale() const { return vide() ? 0 : norme(haut - bas); }
};

}  // namespace topomine
