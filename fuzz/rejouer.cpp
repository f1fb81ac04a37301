#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/cibles.h"

// Runs a target on files, and on all the files of a folder, without the fuzzer:
// rejouer CIBLE FICHIER...
int main(int argc, char** argv) {
  const auto* const cible =
      argc < 3 ? cibles.end() : std::ranges::find(cibles, std::string_view(argv[1]), &Cible::nom);
  if (cible == cibles.end()) {
    std::cerr << "utilisation : rejouer CIBLE FICHIER...\n";
    return 1;
  }
  std::vector<std::filesystem::path> fichiers;
  for (int i = 2; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      fichiers.emplace_back(argv[i]);
      continue;
    }
    for (const auto& f : std::filesystem::directory_iterator(argv[i])) fichiers.push_back(f.path());
  }
  std::ranges::sort(fichiers);
  int nb = 0;
  for (const auto& fichier : fichiers) {
    std::ifstream flux(fichier, std::ios::binary);
    if (!flux) {
      std::cerr << fichier << " illisible\n";
      return 1;
    }
    std::cout << fichier.string() << std::endl;  // the last one is the one that failed
    if (cible->binaire) {
      cible->essayer(std::string(std::istreambuf_iterator<char>(flux), {}));
      ++nb;
      continue;
    }
    // Short inputs share a file.
    for (std::string octets; std::getline(flux, octets, '\x1d'); ++nb) cible->essayer(octets);
  }
  std::cout << nb << " entrees sans faute" << std::endl;
  return nb == 0 ? 1 : 0;
}
