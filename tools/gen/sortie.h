// Buffered text file; every failed write is noticed.
#pragma once

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace topomine::gen {

[[noreturn]] inline void echouer(const std::filesystem::path& chemin, int erreur) {
  throw std::runtime_error("ecriture impossible de '" + chemin.string() + "' (" +
                           std::strerror(erreur) + ")");
}

class Sortie {
 public:
  /// Creates or empties the file. Throws std::runtime_error, as do writing and closing.
  explicit Sortie(const std::filesystem::path& chemin)
      : chemin_(chemin), fichier_(std::fopen(chemin.c_str(), "wb"), std::fclose) {
    if (!fichier_) echouer(chemin_, errno);
  }

  /// Appends texts and numbers.
  template <class... T>
  void operator()(const T&... valeurs) {
    (ajouter(valeurs), ...);
    if (tampon_.size() >= 1 << 18) vider();
  }

  /// To be called last: what is still buffered may not fit on the disk.
  void fermer() {
    vider();
    if (std::fclose(fichier_.release()) != 0) echouer(chemin_, errno);
  }

 private:
  void ajouter(std::string_view texte) { tampon_ += texte; }
  void ajouter(int v) { convertir(v); }
  void ajouter(unsigned v) { convertir(v); }
  void ajouter(double v) {
    if (std::abs(v) < 1e-14) v = 0;  // rounding dust, and the sign of -0
    convertir(v, std::chars_format::general, 10);
  }

  template <class... T>
  void convertir(T... arguments) {
    char chiffres[32];
    const char* const fin = std::to_chars(chiffres, chiffres + sizeof chiffres, arguments...).ptr;
    tampon_.append(chiffres, static_cast<std::size_t>(fin - chiffres));
  }

  void vider() {
    if (std::fwrite(tampon_.data(), 1, tampon_.size(), fichier_.get()) != tampon_.size())
      echouer(chemin_, errno);
    tampon_.clear();
  }

  std::filesystem::path chemin_;
  std::string tampon_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> fichier_;
};

}  // namespace topomine::gen
