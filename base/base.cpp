#include "base/base.h"

#include <cstdio>
#include <iostream>
#include <string_view>
#include <utility>

#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"

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
  return lire_base(*this, console());
}

bool Base::load_clcfg(const std::string& repertoire) {
  return lire_climite(repertoire, console());
}

bool Base::load_plane() {
  return lire_plane(*this, console());
}

bool Base::load_scene() {
  return lire_scene(*this, console());
}

bool Base::load_blocs() {
  return lire_blocs(*this, console());
}

bool Base::load_faces() {
  return lire_faces(*this, console());
}

bool Base::load_edges() {
  return lire_edges(*this, console());
}

bool Base::load_vrtxs() {
  return lire_vrtxs(*this, console());
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
