#include "dataset/motifs.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <numeric>

namespace topomine {

namespace {

std::string en_minuscules(std::string_view texte) {
  std::string minuscules(texte);
  for (char& c : minuscules)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return minuscules;
}

/// Letters to add, drop or change between two words.
std::size_t ecart(const std::string& a, const std::string& b) {
  std::vector<std::size_t> ligne(b.size() + 1);
  std::iota(ligne.begin(), ligne.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonale = ligne[0];
    ligne[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t change = diagonale + (a[i] == b[j] ? 0 : 1);
      diagonale = ligne[j + 1];
      ligne[j + 1] = std::min({change, ligne[j] + 1, ligne[j + 1] + 1});
    }
  }
  return ligne.back();
}

}  // namespace

bool correspond(std::string_view motif, std::string_view nom) {
  std::size_t m = 0, n = 0;
  std::size_t etoile = std::string_view::npos, reprise = 0;
  while (n < nom.size()) {
    if (m < motif.size() && motif[m] == '*') {
      etoile = m++;
      reprise = n;
    } else if (m < motif.size() && (motif[m] == '?' || motif[m] == nom[n])) {
      ++m;
      ++n;
    } else if (etoile != std::string_view::npos) {
      m = etoile + 1;  // the last star takes one character more
      n = ++reprise;
    } else {
      return false;
    }
  }
  return motif.find_first_not_of('*', m) == std::string_view::npos;
}

std::string nom_le_plus_proche(std::string_view nom, const std::vector<std::string>& connus) {
  const std::string cherche = en_minuscules(nom);
  std::string meilleur;
  std::size_t moindre = std::numeric_limits<std::size_t>::max();
  for (const std::string& connu : connus) {
    const std::string candidat = en_minuscules(connu);
    const std::size_t e =
        !cherche.empty() && candidat.starts_with(cherche) ? 0 : ecart(cherche, candidat);
    if (e >= moindre) continue;
    moindre = e;
    meilleur = connu;
  }
  return meilleur;
}

}  // namespace topomine
