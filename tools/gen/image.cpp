// From the parameters of a zone to a point of space.
#include <numbers>

#include "tools/gen/forme.h"

namespace topomine::gen {

namespace {

Dual3 dual3(const Vec& p) {
  return {Dual{p.x}, Dual{p.y}, Dual{p.z}};
}

/// Rational quadratic arc; a straight side has its control point in the middle and weight 1.
Dual3 courbe(const Forme& f, const Zone::Bord& b, Dual t) {
  const Cote& c = f.cotes[b.cote];
  if (b.inverse) t = Dual{1} - t;
  const Dual s = Dual{1} - t;
  const Dual k0 = s * s, k1 = Dual{2 * c.poids} * s * t, k2 = t * t, somme = k0 + k1 + k2;
  const Dual3 p0 = dual3(c.controle[0]), p1 = dual3(c.controle[1]), p2 = dual3(c.controle[2]);
  Dual3 p;
  for (unsigned i = 0; i < 3; ++i) p[i] = (k0 * p0[i] + k1 * p1[i] + k2 * p2[i]) / somme;
  return p;
}

Dual radians(double degres) {
  return Dual{degres * std::numbers::pi / 180};
}

/// Carries a point of the section to station w of the sweep.
Dual3 balayer(const Forme& f, const Dual3& p, const Dual& w) {
  const auto m = [&f](unsigned i) { return Dual{f.mesures[i]}; };
  const Dual un = Dual{1};
  switch (f.balayage) {
    case Balayage::extrusion: {  // span, taper, sweep and dihedral in degrees
      const Dual z = m(0) * w, e = un + (m(1) - un) * w;
      const auto pente = [&](unsigned i) {
        const Dual angle = radians(f.mesures[i]);
        return sinus(angle) / cosinus(angle) * z;
      };
      return {p[0] * e + pente(2), p[1] * e + pente(3), z};
    }
    case Balayage::revolution: {  // angle in degrees, about the x axis
      const Dual angle = radians(f.mesures[0]) * w;
      return {p[0], p[1] * cosinus(angle), p[1] * sinus(angle)};
    }
    case Balayage::fuseau: {  // length, narrowing of both ends, outer radius, width over height
      const Dual r = racine(carre(p[0]) + carre(p[1]));
      const Dual mince = m(1) * carre(w + w - un);
      const Dual e = un - mince * (m(2) / r - un) / (m(2) - un);
      return {m(0) * w, p[0] * e, p[1] * e * m(3)};
    }
    case Balayage::bosse: {  // length, channel height, bump height, channel width
      const Dual b = p[1] / m(3);
      const Dual bosse = Dual{256} * m(2) * carre(w * (un - w)) * carre(b * (un - b));
      return {m(0) * w, p[0] + bosse * (un - p[0] / m(1)), p[1]};
    }
    case Balayage::sphere: {  // inner and outer radius
      const Dual r = m(0) + (m(1) - m(0)) * w;
      const Dual e = r / racine(carre(p[0]) + carre(p[1]) + carre(p[2]));
      return {p[0] * e, p[1] * e, p[2] * e};
    }
  }
  return p;
}

}  // namespace

Dual3 image(const Forme& f, const Zone& z, double u, double v, double w) {
  const Dual du{u, {1, 0, 0}}, dv{v, {0, 1, 0}}, dw{w, {0, 0, 1}};
  const Dual su = Dual{1} - du, sv = Dual{1} - dv;
  const Dual3 gauche = courbe(f, z.bords[0], dv), bas = courbe(f, z.bords[1], du);
  const Dual3 droite = courbe(f, z.bords[2], dv), haut = courbe(f, z.bords[3], du);
  std::array<Dual3, 4> coins;
  for (unsigned c = 0; c < 4; ++c) coins[c] = dual3(f.points.at(z.coins[c]));
  Dual3 p;  // both rulings, less what they count twice
  for (unsigned i = 0; i < 3; ++i)
    p[i] =
        sv * bas[i] + dv * haut[i] + su * gauche[i] + du * droite[i] -
        (sv * (su * coins[0][i] + du * coins[1][i]) + dv * (su * coins[3][i] + du * coins[2][i]));
  return balayer(f, p, dw);
}

}  // namespace topomine::gen
