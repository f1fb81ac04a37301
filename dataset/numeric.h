#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// Number of elements equal to v.
int nb_occ(const std::vector<int>& liste, int v);

/// Sum of the elements, in order, divided by their count; 0 for an empty list.
double moyenne(const std::vector<double>& valeurs);

/// Population variance: the mean of the squares less the square of the mean. Rounding may leave it
/// slightly negative; it is not clamped.
double variance(const std::vector<double>& valeurs);

/// The square of each element.
std::vector<double> vec_square(const std::vector<double>& valeurs);

/// Empties `liste`, then appends debut, debut + pas, ... while below fin. A step below 1 that would
/// never get there appends nothing.
void vec_init(std::vector<int>& liste, int debut, int fin, int pas);

/// Generator for shuffles and draws over drand48: operator()(n) is 0 .. n - 1.
struct MyRandom {
  int operator()(int n) const;
};

namespace topomine {

/// The shuffle used everywhere: element k, from the second on, changes places with one of the first
/// k + 1. The order of the draws is part of the result.
template <class T>
void melanger(std::vector<T>& elements) {
  const MyRandom tirer;
  for (std::size_t k = 1; k < elements.size(); ++k)
    std::swap(elements[k], elements[static_cast<std::size_t>(tirer(static_cast<int>(k + 1)))]);
}

}  // namespace topomine
