#pragma once

#include <array>
#include <streambuf>
#include <utility>

namespace topomine {

/// An open file, closed at the end.
class Descripteur {
 public:
  explicit Descripteur(int numero = -1) : numero_(numero) {}
  ~Descripteur() { fermer(); }
  Descripteur(Descripteur&& autre) noexcept : numero_(std::exchange(autre.numero_, -1)) {}
  Descripteur& operator=(Descripteur&& autre) noexcept {
    std::swap(numero_, autre.numero_);
    return *this;
  }

  int numero() const { return numero_; }
  explicit operator bool() const { return numero_ >= 0; }
  void fermer();

 private:
  int numero_;
};

/// Writes to a descriptor. After a write that failed, nothing more is written.
class TamponSortie : public std::streambuf {
 public:
  explicit TamponSortie(int descripteur) : descripteur_(descripteur) {}
  /// The error of the write that failed; 0 without one.
  int erreur() const { return erreur_; }

 protected:
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  int descripteur_;
  int erreur_ = 0;
  std::array<char, 1 << 16> octets_;  // from the first overflow on
};

}  // namespace topomine
