#pragma once

namespace topomine {

/// Three real coordinates; the common part of a position and of a direction.
class Triplet {
 public:
  double _x() const { return x_; }
  double _y() const { return y_; }
  double _z() const { return z_; }
  double _x(double v) { return x_ = v; }
  double _y(double v) { return y_ = v; }
  double _z(double v) { return z_ = v; }

 protected:
  Triplet() = default;
  explicit Triplet(double v) : x_(v), y_(v), z_(v) {}

  double x_ = 0.0;
  double y_ = 0.0;
  double z_ = 0.0;
};

}  // namespace topomine

/// A position, in the length unit of the mesh files.
class Point : public topomine::Triplet {
 public:
  Point() = default;
  Point(double v) : Triplet(v) {}
  /// Back to the origin.
  void clear() { x_ = y_ = z_ = 0.0; }
};

/// A direction, taken as it is: nothing scales it to unit length.
class Vecteur : public topomine::Triplet {
 public:
  Vecteur() = default;
  Vecteur(double v) : Triplet(v) {}
};

/// The projection of a vertex onto a surface of the geometry: the point and the normal there.
class Projection {
 public:
  Point& _point() { return point_; }
  const Point& _point() const { return point_; }
  Vecteur& _normale() { return normale_; }
  const Vecteur& _normale() const { return normale_; }
  /// Number of the surface family.
  int _surf() const { return surf_; }
  int _surf(int v) { return surf_ = v; }

 private:
  Point point_;
  int surf_ = 0;
  Vecteur normale_;
};
