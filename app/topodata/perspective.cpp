#include "app/topodata/perspective.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

namespace topomine {

namespace {

double scalaire(const Position& a, const Position& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Position produit(const Position& a, const Position& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Position moins(const Position& a, const Position& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Position unitaire(const Position& a) {
  const double n = std::sqrt(scalaire(a, a));
  return n > 0 ? Position{a[0] / n, a[1] / n, a[2] / n} : a;
}

Position entre(const Position& a, const Position& b, double t) {
  return {a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1]), a[2] + t * (b[2] - a[2])};
}

/// The smallest box, to bring the case into a sphere of radius 1 around the origin.
struct Boite {
  Position min, max;

  explicit Boite(const Scene& scene) {
    min.fill(std::numeric_limits<double>::max());
    max.fill(std::numeric_limits<double>::lowest());
    for (const Trait& t : scene.traits)
      for (const Position* p : {&t.a, &t.b}) etendre(*p);
    for (const Paroi& paroi : scene.parois)
      for (const Position& p : paroi.coins) etendre(p);
  }
  void etendre(const Position& p) {
    for (std::size_t a = 0; a < 3; ++a) {
      min[a] = std::min(min[a], p[a]);
      max[a] = std::max(max[a], p[a]);
    }
  }
  /// Half the extent along an axis: halves first, the whole may be too large for a double.
  double demi(std::size_t axe) const { return max[axe] / 2 - min[axe] / 2; }
  double rayon() const {
    const double r = std::hypot(demi(0), demi(1), demi(2));
    return r > 0 ? r : 1;
  }
  Position ramener(const Position& p) const {
    Position q;
    for (std::size_t a = 0; a < 3; ++a) q[a] = (p[a] / 2 - (min[a] / 4 + max[a] / 4)) / rayon() * 2;
    return q;
  }
};

/// Looks a little from above at what fills space, and well onto what is flat.
Vue vue_de(const Boite& boite) {
  constexpr double mince = 0.2;
  const double x = boite.demi(0), y = boite.demi(1), z = boite.demi(2);
  if (z <= mince * std::min(x, y)) return {-80, 58};
  if (y <= mince * std::min(x, z)) return {-72, 18};
  if (x <= mince * std::min(y, z)) return {18, 18};
  return {-55, 24};
}

class Camera {
 public:
  explicit Camera(const Vue& vue)
      : Camera(vue.azimut * std::numbers::pi / 180, vue.elevation * std::numbers::pi / 180) {}
  Position oeil() const { return {distance * vers_[0], distance * vers_[1], distance * vers_[2]}; }
  double eloignement(const Position& p) const {
    const Position d = moins(oeil(), p);
    return std::sqrt(scalaire(d, d));
  }
  /// Across and up, on a plane through the origin.
  Plan projeter(const Position& p) const {
    const double f = distance / (distance - scalaire(p, vers_));
    return {f * scalaire(p, droite_), f * scalaire(p, dessus_)};
  }
  Plan direction(const Position& p) const { return {scalaire(p, droite_), scalaire(p, dessus_)}; }
  /// Where the light comes from: above the eye, a little from the left.
  Position lumiere() const {
    Position l;
    for (std::size_t a = 0; a < 3; ++a) l[a] = vers_[a] + 0.8 * dessus_[a] - 0.5 * droite_[a];
    return unitaire(l);
  }

 private:
  Camera(double az, double el)
      : vers_{std::cos(el) * std::cos(az), std::cos(el) * std::sin(az), std::sin(el)},
        droite_{-std::sin(az), std::cos(az), 0},
        dessus_(produit(vers_, droite_)) {}

  static constexpr double distance = 3.4;  // radii of the case
  Position vers_, droite_, dessus_;
};

class Peinture {
 public:
  Peinture(const Scene& scene, const Boite& boite, const Camera& camera)
      : boite_(boite), camera_(camera) {
    for (const Paroi& p : scene.parois) ajouter(p, parts(scene.parois.size(), 6000, 400));
    const std::size_t nb = scene.traits.size();
    const double fin = nb > 60000 ? 0.4 : nb > 10000 ? 0.7 : nb > 2500 ? 1.1 : 1.8;
    for (const Trait& t : scene.traits) ajouter(t, parts(nb, 20000, 8), t.fort ? 1.5 * fin : fin);
    std::ranges::stable_sort(touches, std::ranges::greater{}, &Touche::eloignement);
  }

  std::vector<Touche> touches;

 private:
  /// In how many parts each of nb things is cut: long ones reach far and near at a time.
  static std::size_t parts(std::size_t nb, std::size_t total, std::size_t max) {
    return std::clamp(total / std::max<std::size_t>(nb, 1), std::size_t{1}, max);
  }

  void ajouter(const Trait& t, std::size_t nb, double epaisseur) {
    // Edges of a wall lie in it: they are taken to be a little nearer.
    constexpr double devant = 0.025;
    const Position a = boite_.ramener(t.a), b = boite_.ramener(t.b);
    for (std::size_t i = 0; i < nb; ++i) {
      const double n = static_cast<double>(nb), k = static_cast<double>(i);
      const double d = camera_.eloignement(entre(a, b, (k + 0.5) / n));
      // Far lines fade.
      const double brume = std::clamp((d - 2.7) / 1.8, 0.0, 1.0) * 0.45;
      touches.push_back({d - devant,
                         2,
                         {camera_.projeter(entre(a, b, k / n)),
                          camera_.projeter(entre(a, b, (k + 1) / n)),
                          {},
                          {}},
                         entre(t.couleur, {1, 1, 1}, brume),
                         epaisseur,
                         false});
    }
  }

  void ajouter(const Paroi& p, std::size_t parts) {
    std::array<Position, 4> q;
    for (std::size_t c = 0; c < 4; ++c) q[c] = boite_.ramener(p.coins[c]);
    const Position n = unitaire(produit(moins(q[2], q[0]), moins(q[3], q[1])));
    const Position m = entre(entre(q[0], q[2], 0.5), entre(q[1], q[3], 0.5), 0.5);
    const double eclat = 0.68 + 0.32 * std::abs(scalaire(n, camera_.lumiere()));
    // A wall between the eye and its block is glass: else it would hide the case.
    bool verre = false;
    if (p.bloc) {
      const double oeil = scalaire(n, moins(camera_.oeil(), m));
      const double bloc = scalaire(n, moins(boite_.ramener(*p.bloc), m));
      verre = oeil * bloc < 0;
    }
    const auto cote = verre ? 1 : static_cast<std::size_t>(std::sqrt(static_cast<double>(parts)));
    const auto point = [&](std::size_t i, std::size_t j) {
      const double s = static_cast<double>(i) / static_cast<double>(cote);
      const double t = static_cast<double>(j) / static_cast<double>(cote);
      return entre(entre(q[0], q[1], s), entre(q[3], q[2], s), t);
    };
    for (std::size_t i = 0; i < cote; ++i)
      for (std::size_t j = 0; j < cote; ++j) {
        const std::array<Position, 4> coins{point(i, j), point(i + 1, j), point(i + 1, j + 1),
                                            point(i, j + 1)};
        const Position c =
            entre(entre(coins[0], coins[2], 0.5), entre(coins[1], coins[3], 0.5), 0.5);
        Touche& t = touches.emplace_back(
            Touche{camera_.eloignement(c), 4, {}, entre({0, 0, 0}, p.couleur, eclat), 0, verre});
        std::ranges::transform(coins, t.points.begin(),
                               [&](const Position& coin) { return camera_.projeter(coin); });
      }
  }

  const Boite& boite_;
  const Camera& camera_;
};

}  // namespace

Tableau peindre(const Scene& scene, const std::optional<Vue>& vue) {
  const Boite boite(scene);
  const Camera camera(vue ? *vue : vue_de(boite));
  return {std::move(Peinture(scene, boite, camera).touches),
          {camera.direction({1, 0, 0}), camera.direction({0, 1, 0}), camera.direction({0, 0, 1})}};
}

}  // namespace topomine
