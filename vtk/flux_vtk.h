#pragma once

#include <array>
#include <charconv>
#include <ostream>
#include <string_view>

namespace topomine {

// Internal to vtk/.

/// Numbers separated by blanks, a few to a line, in the shortest form that reads back the same.
class FluxVtk {
 public:
  explicit FluxVtk(std::ostream& out) : out_(out) {}

  template <class T>
  void nombre(T v) {
    std::array<char, 32> tampon;
    const auto fin = std::to_chars(tampon.data(), tampon.data() + tampon.size() - 1, v).ptr;
    *fin = ++colonne_ % par_ligne == 0 ? '\n' : ' ';
    out_.write(tampon.data(), fin + 1 - tampon.data());
  }
  void fin_de_ligne() {
    if (colonne_ % par_ligne != 0) out_.put('\n');
    colonne_ = 0;
  }

 private:
  static constexpr int par_ligne = 12;
  std::ostream& out_;
  int colonne_ = 0;
};

}  // namespace topomine
