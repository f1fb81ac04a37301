#pragma once

#include <iosfwd>
#include <vector>

#include "mesh/liste.h"
#include "mesh/numbering.h"

/// An edge: its two end vertices, its boundary-condition codes, and the faces that use it (filled
/// by Base::make_link). Lists: a read out of range answers -1, a write out of range appends;
/// add_face returns the new count.
class Edge {
 public:
  /// Number of the edge, unique among the edges of a base.
  int _id() const { return id_; }
  int _id(int v) { return id_ = v; }
  /// Characteristic code.
  int _carac() const { return carac_; }
  int _carac(int v) { return carac_ = v; }

  int nb_vrtx() const { return topomine::taille(vrtxs_); }
  int _vrtx(int i) const { return topomine::lire_liste(vrtxs_, i); }
  int _vrtx(int i, int v) { return topomine::ecrire_liste(vrtxs_, i, v); }
  /// Leaves the vertex list empty, as Face::set_edges does with edges; use _vrtx(i, v).
  void set_vrtxs(int v0, int v1);

  int nb_face() const { return topomine::taille(faces_); }
  /// Unlike the other lists this one reports: out of range it writes to standard error and waits
  /// for one character of standard input, then answers -1 (read) or appends (write).
  int _face(int i) const;
  int _face(int i, int v);
  int add_face(int v) { return topomine::ajouter(faces_, v); }

  int nb_BC() const { return topomine::taille(bc_); }
  int _BC(int i) const { return topomine::lire_liste(bc_, i); }
  int _BC(int i, int v) { return topomine::ecrire_liste(bc_, i, v); }
  void add_BC(int v) { bc_.push_back(v); }

  /// Resets the edge; vertices beyond the two slots stay (see remettre_a_zero).
  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  int id_ = 0;
  int carac_ = 0;
  std::vector<int> vrtxs_ = std::vector<int>(topomine::nb_vrtxs_edge, 0);
  std::vector<int> faces_;
  std::vector<int> bc_;
};
