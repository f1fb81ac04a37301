#include "app/topodata/perspective.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace topomine {

namespace {

constexpr Couleur blanc{1, 1, 1}, noir{0, 0, 0};

/// Brings the case into a sphere of radius 1 around the origin.
class Cadre {
 public:
  explicit Cadre(const Scene& scene) {
    for (const Trait& t : scene.traits)
      for (const Vec* p : {&t.a, &t.b}) boite_.couvrir(*p);
    for (const Paroi& paroi : scene.parois)
      for (const Vec& p : paroi.coins) boite_.couvrir(p);
    const Vec d = demi();
    if (const double r = std::hypot(d.x, d.y, d.z); r > 0) rayon_ = r;
  }
  /// Half the extents: halves first, the whole may be too large for a double.
  Vec demi() const { return 0.5 * boite_.haut - 0.5 * boite_.bas; }
  Vec ramener(const Vec& p) const {
    const Vec q = 0.5 * p - (0.25 * boite_.bas + 0.25 * boite_.haut);
    return {q.x / rayon_ * 2, q.y / rayon_ * 2, q.z / rayon_ * 2};
  }

 private:
  Boite boite_;
  double rayon_ = 1;
};

/// Looks a little from above at what fills space, and well onto what is flat.
Vue vue_de(const Cadre& cadre) {
  constexpr double mince = 0.2;
  const auto [x, y, z] = cadre.demi();
  if (z <= mince * std::min(x, y)) return {-80, 58};
  if (y <= mince * std::min(x, z)) return {-72, 18};
  if (x <= mince * std::min(y, z)) return {18, 18};
  return {-55, 24};
}

class Camera {
 public:
  explicit Camera(const Vue& vue)
      : Camera(vue.azimut * std::numbers::pi / 180, vue.elevation * std::numbers::pi / 180) {}
  Vec oeil() const { return recul * vers_; }
  double eloignement(const Vec& p) const { return distance(oeil(), p); }
  /// Across and up, on a plane through the origin.
  Plan projeter(const Vec& p) const {
    const double f = recul / (recul - scalaire(p, vers_));
    return {f * scalaire(p, droite_), f * scalaire(p, dessus_)};
  }
  Plan direction(const Vec& p) const { return {scalaire(p, droite_), scalaire(p, dessus_)}; }
  /// Where the light comes from: above the eye, a little from the left.
  Vec lumiere() const { return unitaire(vers_ + 0.8 * dessus_ - 0.5 * droite_); }

 private:
  Camera(double az, double el)
      : vers_{std::cos(el) * std::cos(az), std::cos(el) * std::sin(az), std::sin(el)},
        droite_{-std::sin(az), std::cos(az), 0},
        dessus_(vectoriel(vers_, droite_)) {}

  static constexpr double recul = 3.4;  // radii of the case
  Vec vers_, droite_, dessus_;
};

class Peinture {
 public:
  Peinture(const Scene& scene, const Cadre& cadre, const Camera& camera)
      : cadre_(cadre), camera_(camera) {
    for (const Paroi& p : scene.parois) ajouter(p, parts(scene.parois.size(), 6000, 400));
    const std::size_t nb = scene.traits.size();
    const double fin = nb > 60000 ? 0.4 : nb > 10000 ? 0.7 : nb > 2500 ? 1.1 : 1.8;
    for (const Trait& t : scene.traits) ajouter(t, parts(nb, 20000, 8), t.fort ? 1.5 * fin : fin);
    std::ranges::stable_sort(touches, std::ranges::greater{}, &Touche::eloignement);
  }

  std::vector<Touche> touches;

 private:
  /// Number of parts to cut each object into, so that long ones can be sorted by distance.
  static std::size_t parts(std::size_t nb, std::size_t total, std::size_t max) {
    return std::clamp(total / std::max<std::size_t>(nb, 1), std::size_t{1}, max);
  }

  void ajouter(const Trait& t, std::size_t nb, double epaisseur) {
    // Edges of a wall lie in it: they are taken to be a little nearer.
    constexpr double devant = 0.025;
    const Vec a = cadre_.ramener(t.a), b = cadre_.ramener(t.b);
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
                         entre(t.couleur, blanc, brume),
                         epaisseur,
                         false});
    }
  }

  void ajouter(const Paroi& p, std::size_t parts) {
    std::array<Vec, 4> q;
    for (std::size_t c = 0; c < 4; ++c) q[c] = cadre_.ramener(p.coins[c]);
    const Vec n = unitaire(vectoriel(q[2] - q[0], q[3] - q[1]));
    const Vec m = entre(entre(q[0], q[2], 0.5), entre(q[1], q[3], 0.5), 0.5);
    const double eclat = 0.68 + 0.32 * std::abs(scalaire(n, camera_.lumiere()));
    // A wall between the eye and its block is glass: else it would hide the case.
    bool verre = false;
    if (p.bloc) {
      const double oeil = scalaire(n, camera_.oeil() - m);
      const double bloc = scalaire(n, cadre_.ramener(*p.bloc) - m);
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
        const std::array<Vec, 4> coins{point(i, j), point(i + 1, j), point(i + 1, j + 1),
                                       point(i, j + 1)};
        const Vec c = entre(entre(coins[0], coins[2], 0.5), entre(coins[1], coins[3], 0.5), 0.5);
        Touche& t = touches.emplace_back(
            Touche{camera_.eloignement(c), 4, {}, entre(noir, p.couleur, eclat), 0, verre});
        std::ranges::transform(coins, t.points.begin(),
                               [&](const Vec& coin) { return camera_.projeter(coin); });
      }
  }

  const Cadre& cadre_;
  const Camera& camera_;
};

}  // namespace

Tableau peindre(const Scene& scene, const std::optional<Vue>& vue) {
  const Cadre cadre(scene);
  const Camera camera(vue ? *vue : vue_de(cadre));
  return {std::move(Peinture(scene, cadre, camera).touches),
          {camera.direction({1, 0, 0}), camera.direction({0, 1, 0}), camera.direction({0, 0, 1})}};
}

}  // namespace topomine
