// Numbers that carry their derivatives.
#pragma once

#include <array>
#include <cmath>

#include "mesh/vecteur.h"

namespace topomine::gen {

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

}  // namespace topomine::gen
