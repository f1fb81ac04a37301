#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "base/scene.h"
#include "mesh/block.h"
#include "mesh/edge.h"
#include "mesh/face.h"
#include "mesh/vertex.h"

/// Removes the blanks and tabs at the start of s.
void clear_blk(std::string& s);

/// One mesh case: the topology of a multi-block structured mesh, its scene, and how to load them
/// from the files of one directory. A record: its fields are read by everyone. Filled once by
/// load_all() and then only read; loading never empties the tables. All console output is French,
/// in ISO-8859-1.
class Base {
 public:
  // --- Fields
  std::string nom;       ///< the base's name, also its subdirectory and the stem of its files
  std::string chemin;    ///< data directory, ending in its separator
  std::string type;      ///< "ext", "nrm" or "min", part of the mesh files' names
  std::string nom_base;  ///< prefix of the files: chemin + nom + "/" + nom; empty until generated
  bool disp = true;      ///< entity readers write a "save ..." line per entity
  Avion avion;
  std::map<int, Block> blocs;
  std::map<int, Face> faces;
  std::map<int, Edge> edges;
  std::map<int, Vertex> vrtxs;
  std::map<std::string, Piece> pieces;  ///< keyed by boundary-condition family; the first one stays
  std::vector<Raccord> raccords;

  // --- Boundary-condition configuration, one per process
  static bool init_cl_cfg;  ///< a configuration is loaded; oublier_configuration() resets it
  /// Damas code to column name to value.
  static std::map<int, std::map<std::string, std::string>> list_CLim;
  static std::vector<std::string> list_attr;  ///< column names, in file order

  Base() = default;
  Base(std::string nom, std::string chemin, std::string type);

  // --- Settings
  bool _disp() const { return disp; }
  bool _disp(bool v) { return disp = v; }
  std::string _type() const { return type; }
  /// Sets `type` to the mode that t begins with and returns it; returns "" and leaves `type` when
  /// there is none.
  std::string _type(const std::string& t);
  /// Sets nom_base.
  void gen_nom_base();

  // --- Loading (base/lecture/). Readers answer false, after a message of their own, when their
  // file cannot be loaded, when an edge has not two vertices, and when a face lists more than 1,000
  // edges; a readable file that lacks a required element or text stops the program (SIGABRT).
  /// Configuration, scene, blocks, faces, edges, vertices, then links and classes, in this order;
  /// stops at the first failure, keeping what was read.
  bool load_all();
  /// Always true: the place for a check that the files exist.
  bool test_files();
  /// Reads chemin + "climite.cfg" unless a configuration is loaded; one that is missing, or no file
  /// that can be opened, leaves the table empty.
  bool load_clcfg(const std::string& repertoire);
  bool load_plane();
  bool load_scene();
  bool load_blocs();
  bool load_faces();
  bool load_edges();
  bool load_vrtxs();
  /// Adds the upward references: face to blocks, edge to faces, vertex to edges. A number > 0 that
  /// its table lacks gets a default entity. Called again, it adds them again.
  /// 1, or 0 when memory ran out (what was linked stays linked).
  int make_link();
  /// Sets the type C flag of each block that sees a boundary condition whose family is that of a
  /// piece of topology C. Always 1.
  int maj_typeC();

  // --- Configuration queries
  /// Value of a column for a Damas code; "" when either is unknown.
  std::string _CL(int code, const std::string& colonne) const;
  /// "BCCODE" of each code. A code that has none repeats the one before it, 0 at first.
  std::vector<int> DAM2BCCODE(const std::vector<int>& codes) const;

  // --- Block queries
  /// Blocks across the faces of block b, by face slot then in the face's order, repeats kept.
  std::vector<int> vois_bloc(int b) const;
  /// Damas codes of the faces of block b, by slot. Empty for an unknown block.
  std::vector<int> BC_blk_face(int b) const;
  /// Damas codes of the edges of the faces of block b: on a regular block each edge counts twice.
  std::vector<int> BC_blk_edge(int b) const;

  // --- Local numbering (mesh/numbering.h). A face designator is a local slot when it is 0..5, an
  // edge designator when it is 0..3; any other value is a face (edge) number.
  // > 0 the number found; 0 nothing in common; -1 unknown block (face); -2 empty slot;
  // -3 a face (edge) missing from its table. Numbers are compared as the files gave them: an empty
  // slot (0) of both counts as common, and a number below 0 that both have is answered as it is and
  // cannot be told from an error.
  /// Face in slot i of block b; 0 when the block is unknown or the slot is empty or not 0..5.
  int blk_face(int b, int i) const;
  /// First edge, in F1's slot order, common to two faces of block b.
  int blk_edge(int b, int F1, int F2) const;
  /// Vertex common to the edges (F1,F2) and (F1,F3) of block b.
  int blk_vrtx_fac(int b, int F1, int F2, int F3) const;
  /// Corner (i,j,k) of block b, each 0 or 1.
  int blk_vrtx_ijk(int b, int i, int j, int k) const;
  /// Edge in slot i of face f, -1 when it has no such slot; 0 when the face is unknown.
  int fac_edge(int f, int i) const;
  /// First vertex, in E1's order, common to two edges of face f.
  int fac_vrtx_edg(int f, int E1, int E2) const;
  /// Corner (l,m) of face f, each 0 or 1.
  int fac_vrtx_lm(int f, int l, int m) const;

  // --- Listings on standard output. With a pause, one character of standard input is awaited after
  // each element. Print takes one argument, the pause, or two: Print(5) does not print kind 5.
  /// The scene, then blocks, faces, edges and vertices.
  void Print(bool pause) const;
  /// One kind: 1 blocks, 2 faces, 3 edges, 4 vertices, 5 aircraft, 6 pieces, 7 junctions.
  void Print(int sorte, bool pause) const;
  /// The first block, face, edge or vertex that has this number.
  void Print_elem(int numero) const;
  // The same on any stream.
  void imprimer(std::ostream& out, bool pause) const;
  void imprimer(std::ostream& out, int sorte, bool pause) const;
  void imprimer_elem(std::ostream& out, int numero) const;
};
