#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "cgns/mesures.h"
#include "cgns/structure.h"

namespace topomine {

// Values as bytes, from one process of this program to another of the same build.

/// Appends what it is called with.
class Emballage {
 public:
  template <class T>
  requires std::is_arithmetic_v<T>
  void operator()(const T& v) {
    char octets[sizeof v];
    std::memcpy(octets, &v, sizeof v);
    texte.append(octets, sizeof v);
  }
  void operator()(const std::string& v) {
    (*this)(v.size());
    texte += v;
  }
  std::size_t taille(std::size_t n) {
    (*this)(n);
    return n;
  }
  std::string texte;
};

/// Reads the same values from the front of `texte`. Throws MaillageRefuse when there are not as
/// many bytes as they need: whoever sent them may have gone wrong.
class Deballage {
 public:
  explicit Deballage(std::string_view texte) : texte_(texte) {}
  template <class T>
  requires std::is_arithmetic_v<T>
  void operator()(T& v) {
    std::conditional_t<std::is_same_v<T, bool>, char, T> lu;
    std::memcpy(&lu, prendre(sizeof lu).data(), sizeof lu);
    v = static_cast<T>(lu);
  }
  void operator()(std::string& v) { v = prendre(taille(0)); }
  /// A count of things that take at least a byte each.
  std::size_t taille(std::size_t) {
    std::size_t n = 0;
    (*this)(n);
    if (n > texte_.size()) tronque();
    return n;
  }
  bool fini() const { return texte_.empty(); }

 private:
  [[noreturn]] static void tronque() { throw MaillageRefuse("resultat tronque"); }
  std::string_view prendre(std::size_t n) {
    if (n > texte_.size()) tronque();
    const std::string_view debut = texte_.substr(0, n);
    texte_.remove_prefix(n);
    return debut;
  }
  std::string_view texte_;
};

/// What reading a mesh gives.
struct Extrait {
  Structure structure;
  std::vector<MesuresZone> mesures;
};

void emballer(Emballage& vers, Extrait& e);
/// Throws MaillageRefuse unless the bytes hold an Extrait whose numbers can be used.
Extrait deballer(std::string_view octets);
/// Throws MaillageRefuse unless every piece has its measures.
void accorder(const Extrait& e, const Decoupage& d);

}  // namespace topomine
