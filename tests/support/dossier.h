#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

inline std::string lire_octets(const std::string& fichier) {
  std::ifstream f(fichier, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), {}};
}

/// A fresh folder of its own, removed at the end with all that it holds.
class Dossier {
 public:
  Dossier() {
    std::string modele = (std::filesystem::temp_directory_path() / "topomine_XXXXXX").string();
    if (!mkdtemp(modele.data())) throw std::runtime_error("mkdtemp");
    chemin_ = modele + "/";
  }
  ~Dossier() {
    std::error_code erreur;
    std::filesystem::remove_all(chemin_, erreur);
  }
  Dossier(const Dossier&) = delete;
  Dossier& operator=(const Dossier&) = delete;

  /// Ends in "/".
  const std::string& chemin() const { return chemin_; }

  /// Writes a file, and the folders above it.
  void ecrire(const std::string& nom, std::string_view contenu) const {
    const std::filesystem::path fichier = chemin_ + nom;
    std::filesystem::create_directories(fichier.parent_path());
    std::ofstream(fichier, std::ios::binary) << contenu;
  }
  std::string lire(const std::string& nom) const { return lire_octets(chemin_ + nom); }

 private:
  std::string chemin_;
};
