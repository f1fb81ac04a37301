#pragma once

#include <iosfwd>
#include <vector>

#include "mesh/geometry.h"
#include "mesh/liste.h"

/// A vertex: its position in the unit of the mesh files, its projections onto surfaces of the
/// geometry, and the edges that end at it (filled by Base::make_link). Lists: a read out of range
/// answers -1, a write out of range appends; add_edge returns the new count.
class Vertex {
 public:
  /// Number of the vertex, unique among the vertices of a base.
  int _id() const { return id_; }
  int _id(int v) { return id_ = v; }
  double _posX() const { return pos_._x(); }
  double _posX(double v) { return pos_._x(v); }
  double _posY() const { return pos_._y(); }
  double _posY(double v) { return pos_._y(v); }
  double _posZ() const { return pos_._z(); }
  double _posZ(double v) { return pos_._z(v); }
  void get_pos(double& x, double& y, double& z) const;
  void set_pos(double x, double y, double z);

  int nb_edge() const { return topomine::taille(edges_); }
  int _edge(int i) const { return topomine::lire_liste(edges_, i); }
  int _edge(int i, int v) { return topomine::ecrire_liste(edges_, i, v); }
  int add_edge(int v) { return topomine::ajouter(edges_, v); }

  int nb_proj() const { return static_cast<int>(projs_.size()); }
  /// Appends the projection (px,py,pz) on surface `surf` with normal (nx,ny,nz).
  /// False when there was no memory for it; the list is then unchanged.
  bool add_proj_pt(int surf, double px, double py, double pz, double nx, double ny, double nz);
  /// The same with the vertex's position at the time of the call as projected point.
  bool add_proj(int surf, double nx, double ny, double nz);
  /// Copies out projection k (from 0, in the order of adding).
  /// False, with the outputs untouched, when there is no such projection.
  bool get_proj_pt(int k, int& surf, double& px, double& py, double& pz, double& nx, double& ny,
                   double& nz) const;
  bool get_proj(int k, int& surf, double& nx, double& ny, double& nz) const;

  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  const Projection* projection(int k) const;

  int id_ = 0;
  Point pos_;
  std::vector<int> edges_;
  std::vector<Projection> projs_;
};
