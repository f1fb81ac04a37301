#pragma once

#include <cstddef>
#include <ostream>
#include <string_view>
#include <vector>

namespace topomine {

// What the number lists of faces, edges and vertices have in common.

inline bool dans_liste(const std::vector<int>& liste, int i) {
  return i >= 0 && static_cast<std::size_t>(i) < liste.size();
}

inline int taille(const std::vector<int>& liste) {
  return static_cast<int>(liste.size());
}

/// Element i, or -1 out of range.
inline int lire_liste(const std::vector<int>& liste, int i) {
  return dans_liste(liste, i) ? liste[static_cast<std::size_t>(i)] : -1;
}

/// Appends v; the list's new count.
inline int ajouter(std::vector<int>& liste, int v) {
  liste.push_back(v);
  return taille(liste);
}

/// Overwrites element i and answers i; out of range appends v and answers its index.
inline int ecrire_liste(std::vector<int>& liste, int i, int v) {
  if (!dans_liste(liste, i)) return ajouter(liste, v) - 1;
  liste[static_cast<std::size_t>(i)] = v;
  return i;
}

/// Sets the first n elements to 0; a list that has fewer is emptied instead. Elements after the
/// n-th stay: readers fill one record again and again, and a face with a fifth edge hands it on
/// to every face read after it.
void remettre_a_zero(std::vector<int>& liste, int n);

/// `titre` and the count on one line, then, unless the list is empty, `entete` and the numbers.
void imprimer_liste(std::ostream& out, std::string_view titre, std::string_view entete,
                    const std::vector<int>& liste);

/// One line per slot 0..n-1: the number it holds, or " absent".
void imprimer_places(std::ostream& out, std::string_view nom, const std::vector<int>& liste, int n);

}  // namespace topomine
