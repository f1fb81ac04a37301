#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/base.h"
#include "dataset/numeric.h"

/// The dataset: typed attributes (columns), a shown flag per attribute name, and examples (rows) of
/// text values, one per attribute, in the same order. A record: its fields are read by everyone.
/// Operations on attributes and tables answer 1, or 0 when they change nothing.
class BaseBuffer {
 public:
  using Exemple = std::vector<std::string>;

  // --- Fields
  std::vector<std::pair<std::string, std::string>> _attr;  ///< name and type, in column order
  std::map<std::string, bool> _aff;                        ///< shown flag by attribute name
  std::vector<Exemple> _expl;
  std::string _nom = "base_de_donnees";  ///< relation name of the ARFF form
  int _num_classe = -1;                  ///< column that the writers print last, -1 for none

  // --- Construction
  /// The attributes of dataset/schema.h, all shown, and no example.
  BaseBuffer();
  BaseBuffer(std::string nom);
  /// Moves are copies: a table that has been moved from would have lost its shown flags.
  BaseBuffer(const BaseBuffer&) = default;
  ~BaseBuffer() = default;
  /// Copies the name, the attributes and the examples. The shown flags and the class column stay
  /// the receiver's: they say how this table is written, not what it holds.
  BaseBuffer& operator=(const BaseBuffer& autre);
  /// Empties the examples, the attributes and the name; no class column. The shown flags stay: they
  /// outlive the data for the next use of the table.
  void clear();
  std::string _nom_base() const { return _nom; }
  /// Sets the name and returns it.
  std::string _nom_base(const std::string& nom);

  // --- Attributes. The first attribute of a name is meant where names repeat.
  /// Appends the attributes of dataset/schema.h to those already there.
  void init();
  /// Appends an attribute, shown; rows and earlier attributes of that name are left alone.
  void add_attr(std::string nom, std::string type);
  /// Column of an attribute, -1 when there is none.
  int num_attr(const std::string& nom) const;
  /// Name of column i, "%" when there is none.
  std::string nom_attr(int i) const;
  int change_type(const std::string& nom, const std::string& type);
  /// Removes an attribute and its value in each row that has one. Its shown flag stays, and goes on
  /// counting in nb_attr_aff.
  int del_attr(const std::string& nom);
  int hide_attr(const std::string& nom);
  int unhide_attr(const std::string& nom);
  void hide_all();
  void unhide_all();
  /// Number of names whose flag is true: names, not columns.
  int nb_attr_aff() const;

  // --- Examples
  int nb_expl() const { return static_cast<int>(_expl.size()); }
  /// Append one value to a row: a number as a default-formatted stream writes it, a character
  /// (blank: the empty text), or a text unchanged.
  static void add_val(Exemple& ligne, int v);
  static void add_val(Exemple& ligne, double v);
  static void add_val(Exemple& ligne, char v);
  static void add_val(Exemple& ligne, std::string v);
  /// Appends the other table's examples when its attributes are exactly the same.
  int add_buffer(const BaseBuffer& autre);
  /// Appends an example per block, by ascending number; the table must have the attributes of
  /// dataset/schema.h. Without memory for all of them, or when texts of BCCODE that are no plain
  /// numbers are seen too often, it says so on standard error and appends none.
  void add_base(Base& base);

  // --- Column statistics, by column or attribute name: hidden columns count like the others.
  // False, with the outputs untouched, when there is no such numeric column.
  bool is_numeric(int col) const;
  /// Also stores the attribute's column, -1 when there is none.
  bool is_numeric(const std::string& nom, int& col) const;
  /// One number per example. A text that is not a number repeats the one before it (0 at first),
  /// and what it leaves unread spoils the texts below it: FluxNombres.
  bool get_vec_dbl(int col, std::vector<double>& valeurs) const;
  bool get_vec_dbl(const std::string& nom, std::vector<double>& valeurs) const;
  bool calc_moy(int col, double& moy) const;
  bool calc_moy(const std::string& nom, double& moy) const;
  /// Population variance.
  bool calc_var(int col, double& var) const;
  bool calc_var(const std::string& nom, double& var) const;
  bool calc_std(int col, double& ecart) const;
  bool calc_std(const std::string& nom, double& ecart) const;
  /// False also when there are no examples.
  bool calc_min_max(int col, double& min, double& max) const;
  bool calc_min_max(const std::string& nom, double& min, double& max) const;

  // --- Whole table
  /// Maps each numeric column onto [0, 1] as x / d - min / d with d = max - min; a constant column
  /// becomes 0. Returns 1, or 0 when memory ran out. Throws std::out_of_range at a row that is too
  /// short for a numeric column.
  int normalize();
  /// Mean of the products of two columns, the means not subtracted; -1 when one is not numeric, not
  /// a number without examples.
  double covar(int a, int b) const;
  /// covar of every pair of columns: a line per column, a tab after each cell, five significant
  /// digits, "NaN" for -1. Progress goes to standard error.
  std::ostream& mat_cov(std::ostream& out) const;

  // --- Random operations: all draws are drand48's (MyRandom), in a fixed order.
  // Synthetic examples have the class "-1" and the builder's name as base; each of
  // their other columns, or group of columns that belong together, comes from a real example. The
  // tables that a call fills are emptied first, keep their shown flags and may be the table itself.
  // 1, or 0 when memory ran out, with every table as it was.
  /// Shuffles the examples.
  void rdm_list();
  /// Copies the first part of the examples, of size nb_expl() * ratio, into `first` and the others
  /// into `second`, in file order or shuffled. The ratio is held within 0 and 1.
  int sep_buffer(double ratio, BaseBuffer& first, BaseBuffer& second, bool shuffle);
  /// Appends n rows, at most nb_expl(), a negative n counting as all. All the rows of one call
  /// carry the same values and differ in "ident" alone.
  int create_fakes(int n);
  int create_fakes(double ratio);
  /// Fills `out` with n rows, capped in the same way, by permuting the columns: no example is used
  /// twice for the same column.
  int create_fake_base(BaseBuffer& out, int n);
  int create_fake_base(BaseBuffer& out, double ratio);
  /// Fills `out` with n rows by independent draws; none from an empty table or for a negative n.
  int create_fake_base2(BaseBuffer& out, int n);
  int create_fake_base2(BaseBuffer& out, double ratio);

  // --- Writers. The class column, _num_classe or else the last one, ends every row even when it is
  // hidden; the other columns are written when their name is shown. A name without a flag is
  // hidden, and gets its flag. Values are written as they stand.
  /// The rows, values separated by sep.
  std::ostream& Print_attr(std::ostream& out, char sep);
  /// ARFF, with _nom as relation.
  std::ostream& Print_weka(std::ostream& out);
  /// A line with the numbers of examples and of shown attributes, then the rows, blank-separated.
  std::ostream& Print_torch(std::ostream& out);
};
