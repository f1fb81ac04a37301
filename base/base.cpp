#include "base/base.h"

#include <cstdio>
#include <exception>
#include <iostream>
#include <string_view>
#include <utility>

using namespace topomine;

Base::Base(std::string nom_, std::string chemin_, std::string type_)
    : nom(std::move(nom_)), chemin(std::move(chemin_)), type(std::move(type_)) {}

std::string Base::_type(const std::string& t) {
  for (const std::string_view mot : {"ext", "min", "nrm"}) {
    if (t.starts_with(mot)) return type = mot;
  }
  return {};
}

void Base::gen_nom_base() {
  nom_base = chemin + nom + "/" + nom;
}

bool Base::test_files() {
  return true;
}

bool Base::load_all() {
  try {
    if (nom_base.empty()) gen_nom_base();
    return test_files() && load_clcfg(chemin) && load_plane() && load_scene() && load_blocs() &&
           load_faces() && load_edges() && load_vrtxs() && make_link() && maj_typeC();
  } catch (const std::exception&) {
    return false;
  }
}

namespace {

void attendre_une_touche(bool pause) {
  if (!pause) return;
  std::cout.flush();
  static_cast<void>(std::getchar());
}

template <class Elements>
void imprimer_table(const Elements& table, bool pause) {
  for (const auto& [cle, element] : table) {
    element.Print();
    attendre_une_touche(pause);
  }
}

template <class Elements>
bool imprimer_si_present(const Elements& table, int numero) {
  const auto trouve = table.find(numero);
  if (trouve == table.end()) return false;
  trouve->second.Print();
  return true;
}

}  // namespace

void Base::Print(bool pause) const {
  for (const int sorte : {5, 6, 7, 1, 2, 3, 4}) Print(sorte, pause);
}

void Base::Print(int sorte, bool pause) const {
  switch (sorte) {
    case 1:
      return imprimer_table(blocs, pause);
    case 2:
      return imprimer_table(faces, pause);
    case 3:
      return imprimer_table(edges, pause);
    case 4:
      return imprimer_table(vrtxs, pause);
    case 5:
      avion.Print();
      return attendre_une_touche(pause);
    case 6:
      return imprimer_table(pieces, pause);
    case 7:
      for (const Raccord& raccord : raccords) {
        raccord.Print();
        attendre_une_touche(pause);
      }
      return;
    default:
      return;
  }
}

void Base::Print_elem(int numero) const {
  if (imprimer_si_present(blocs, numero) || imprimer_si_present(faces, numero) ||
      imprimer_si_present(edges, numero) || imprimer_si_present(vrtxs, numero))
    return;
  std::cout << "Element " << numero << " inexistant...\n";
}
