// Small vectors, and numbers that carry their derivatives.
#pragma once

#include <array>
#include <cmath>

namespace gen {

struct Vec {
  double x = 0, y = 0, z = 0;

  friend Vec operator+(const Vec& a, const Vec& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
  friend Vec operator-(const Vec& a, const Vec& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend Vec operator*(double s, const Vec& a) { return {s * a.x, s * a.y, s * a.z}; }
  friend double scalaire(const Vec& a, const Vec& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
  friend double norme(const Vec& a) { return std::sqrt(scalaire(a, a)); }
  friend Vec vectoriel(const Vec& a, const Vec& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
  }
  friend double det(const Vec& a, const Vec& b, const Vec& c) {
    return scalaire(a, vectoriel(b, c));
  }
};

/// A value and its three partial derivatives: tangents, hence normals, come out exact.
struct Dual {
  double v = 0;
  Vec d{};

  friend Dual operator+(const Dual& a, const Dual& b) { return {a.v + b.v, a.d + b.d}; }
  friend Dual operator-(const Dual& a, const Dual& b) { return {a.v - b.v, a.d - b.d}; }
  friend Dual operator*(const Dual& a, const Dual& b) { return {a.v * b.v, b.v * a.d + a.v * b.d}; }
  friend Dual operator/(const Dual& a, const Dual& b) {
    const double quotient = a.v / b.v;
    return {quotient, (1 / b.v) * (a.d - quotient * b.d)};
  }
  friend Dual carre(const Dual& a) { return a * a; }
  friend Dual racine(const Dual& a) {
    const double r = std::sqrt(a.v);
    return {r, (0.5 / r) * a.d};
  }
  friend Dual sinus(const Dual& a) { return {std::sin(a.v), std::cos(a.v) * a.d}; }
  friend Dual cosinus(const Dual& a) { return {std::cos(a.v), -std::sin(a.v) * a.d}; }
};

using Dual3 = std::array<Dual, 3>;

}  // namespace gen
