#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

// The records of a scene definition. The form of an accessor with an argument stores it and returns
// what is stored.

/// The aircraft that the mesh was built around: its reference lengths in the unit of the mesh, its
/// areas in the square of that, its sweep in degrees.
class Avion {
 public:
  std::string _name() const { return name_; }
  std::string _name(std::string v) { return name_ = std::move(v); }
  std::string _family() const { return family_; }
  std::string _family(std::string v) { return family_ = std::move(v); }
  double _fuse_length() const { return fuse_length_; }
  double _fuse_length(double v) { return fuse_length_ = v; }
  double _fuse_width() const { return fuse_width_; }
  double _fuse_width(double v) { return fuse_width_ = v; }
  double _height() const { return height_; }
  double _height(double v) { return height_ = v; }
  double _wing_span() const { return wing_span_; }
  double _wing_span(double v) { return wing_span_ = v; }
  double _corde() const { return corde_; }
  double _corde(double v) { return corde_ = v; }
  double _wing_area() const { return wing_area_; }
  double _wing_area(double v) { return wing_area_ = v; }
  double _sweep() const { return sweep_; }
  double _sweep(double v) { return sweep_ = v; }
  int _nb_engine() const { return nb_engine_; }
  int _nb_engine(int v) { return nb_engine_ = v; }

  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  std::string name_;
  std::string family_;
  double fuse_length_ = 0.0;
  double fuse_width_ = 0.0;
  double height_ = 0.0;
  double wing_span_ = 0.0;
  double corde_ = 0.0;
  double wing_area_ = 0.0;
  double sweep_ = 0.0;
  int nb_engine_ = 0;
};

/// A named part of the scene.
class Piece {
 public:
  std::string _nom() const { return nom_; }
  std::string _nom(std::string v) { return nom_ = std::move(v); }
  /// Boundary-condition family, as in the "Family" column of climite.cfg.
  const std::string& _fam_BC() const { return fam_bc_; }
  std::string _fam_BC(std::string v) { return fam_bc_ = std::move(v); }
  /// Topology letter: 'C', 'H', 'O', or NUL when unset.
  char _topology() const { return topology_; }
  /// Stores the upper case of c when that is one of the three letters; returns what is stored.
  char _topology(char c);
  int nb_spe() const { return static_cast<int>(specials_.size()); }
  /// Special i (0 .. nb_spe() - 1), the empty string out of range; for users of the library.
  std::string _spe(int i) const;
  /// Appends a special; the new count.
  int add_spe(std::string v);

  /// Resets everything but the family: every piece of a file sets its own.
  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  std::string nom_;
  std::string fam_bc_;
  char topology_ = '\0';
  std::vector<std::string> specials_;
};

/// A junction between two pieces.
class Raccord {
 public:
  std::string _pc1() const { return pc1_; }
  std::string _pc1(std::string v) { return pc1_ = std::move(v); }
  std::string _pc2() const { return pc2_; }
  std::string _pc2(std::string v) { return pc2_ = std::move(v); }
  /// "C45", "C90" or the empty string.
  std::string _type() const { return type_; }
  /// Only the first three characters count, the C in either case; any other text stores "".
  std::string _type(const std::string& t);

  void clear();
  /// Listing, on standard output for Print.
  void imprimer(std::ostream& out) const;
  void Print() const;

 private:
  std::string pc1_;
  std::string pc2_;
  std::string type_;
};
