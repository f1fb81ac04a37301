#pragma once

#include <array>
#include <iosfwd>

#include "mesh/numbering.h"

/// A hexahedral block: its type, quality, volumes and six face numbers (see mesh/numbering.h).
/// The form of an accessor with an argument stores it and returns what is stored.
class Block {
 public:
  /// Number of the block, unique among the blocks of a base.
  int _id() const { return id_; }
  int _id(int v) { return id_ = v; }
  /// Block type code, 30 to 39 in well-made cases.
  int _type() const { return type_; }
  int _type(int v) { return type_ = v; }
  /// Erikson quality measure.
  double _erik() const { return erik_; }
  double _erik(double v) { return erik_ = v; }
  /// The exact volume and its three estimates.
  double _volexa() const { return volexa_; }
  double _volexa(double v) { return volexa_ = v; }
  double _volmor() const { return volmor_; }
  double _volmor(double v) { return volmor_ = v; }
  double _volmoy() const { return volmoy_; }
  double _volmoy(double v) { return volmoy_ = v; }
  double _volnsm() const { return volnsm_; }
  double _volnsm(double v) { return volnsm_ = v; }
  /// Block shape letter, always 'H'; for users of the library.
  char _forme() const { return forme_; }
  /// True when the block sees a boundary condition of a piece of topology C.
  bool _typeC() const { return typeC_; }
  bool _typeC(bool v) { return typeC_ = v; }

  /// Count of the face list: 6, or 0 after set_faces.
  int nb_face() const { return nb_faces_; }
  /// Face number in slot i; 0 for an empty slot and for any i outside 0..5.
  int _face(int i) const { return place_valide(i) ? faces_[static_cast<unsigned>(i)] : 0; }
  /// Stores v in slot i and returns it; outside 0..5 stores nothing and returns 0.
  int _face(int i, int v) { return place_valide(i) ? faces_[static_cast<unsigned>(i)] = v : 0; }
  /// Writes the six slots but leaves the list's count at 0: nb_face() answers 0 and Print shows
  /// every slot missing, while _face(i) reads the numbers. _face(i, v) is the way to set a face.
  void set_faces(int f0, int f1, int f2, int f3, int f4, int f5);

  /// Back to a fresh block, but for the type C flag and the face count, which stay.
  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  static bool place_valide(int i) { return i >= 0 && i < topomine::nb_faces_bloc; }

  int id_ = 0;
  int type_ = 0;
  double erik_ = 0.0;
  double volexa_ = 0.0;
  double volmor_ = 0.0;
  double volmoy_ = 0.0;
  double volnsm_ = 0.0;
  std::array<int, topomine::nb_faces_bloc> faces_{};
  int nb_faces_ = topomine::nb_faces_bloc;
  char forme_ = 'H';
  bool typeC_ = false;
};
