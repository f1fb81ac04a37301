#pragma once

#include <iosfwd>
#include <vector>

#include "mesh/liste.h"
#include "mesh/numbering.h"

/// A face of one or two blocks: its four edge numbers (see mesh/numbering.h), its
/// boundary-condition codes, its surfaces, and the blocks that share it (filled by
/// Base::make_link). Lists: a read out of range answers -1, a write out of range appends;
/// add_bloc and add_surf return the new count.
class Face {
 public:
  /// Number of the face, unique among the faces of a base.
  int _id() const { return id_; }
  int _id(int v) { return id_ = v; }
  int _type() const { return type_; }
  int _type(int v) { return type_ = v; }
  /// Characteristic code.
  int _carac() const { return carac_; }
  int _carac(int v) { return carac_ = v; }

  int nb_BC() const { return topomine::taille(bc_); }
  int _BC(int i) const { return topomine::lire_liste(bc_, i); }
  int _BC(int i, int v) { return topomine::ecrire_liste(bc_, i, v); }
  void add_BC(int v) { bc_.push_back(v); }

  int nb_edge() const { return topomine::taille(edges_); }
  int _edge(int i) const { return topomine::lire_liste(edges_, i); }
  int _edge(int i, int v) { return topomine::ecrire_liste(edges_, i, v); }
  /// Leaves the edge list empty: the numbers go to room beyond the list's count, where no accessor
  /// reads. _edge(i, v) is the way to set an edge.
  void set_edges(int e0, int e1, int e2, int e3);

  int nb_bloc() const { return topomine::taille(blocs_); }
  int _bloc(int i) const { return topomine::lire_liste(blocs_, i); }
  int _bloc(int i, int v) { return topomine::ecrire_liste(blocs_, i, v); }
  int add_bloc(int v) { return topomine::ajouter(blocs_, v); }

  /// For users of the library.
  int nb_surf() const { return topomine::taille(surfs_); }
  int _surf(int i) const { return topomine::lire_liste(surfs_, i); }
  int _surf(int i, int v) { return topomine::ecrire_liste(surfs_, i, v); }
  int add_surf(int v) { return topomine::ajouter(surfs_, v); }

  /// Resets the face; edges beyond the four slots stay (see remettre_a_zero).
  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  int id_ = 0;
  int carac_ = 0;
  int type_ = 0;
  std::vector<int> bc_;
  std::vector<int> edges_ = std::vector<int>(topomine::nb_edges_face, 0);
  std::vector<int> blocs_;
  std::vector<int> surfs_;
};
