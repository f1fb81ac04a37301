#include "base/base.h"

#include <cstdio>
#include <iostream>
#include <string_view>
#include <utility>

#include "base/lecture/journal.h"
#include "base/lecture/lectures.h"
#include "base/modes.h"

using namespace topomine;

Base::Base(std::string nom_, std::string chemin_, std::string type_)
    : nom(std::move(nom_)), chemin(std::move(chemin_)), type(std::move(type_)) {}

std::string Base::_type(const std::string& t) {
  for (const std::string_view mode : noms_des_modes) {
    if (t.starts_with(mode)) return type = mode;
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

void attendre_une_touche(std::ostream& out, bool pause) {
  if (!pause) return;
  out.flush();
  static_cast<void>(std::getchar());
}

template <class Elements>
void imprimer_table(std::ostream& out, const Elements& table, bool pause) {
  for (const auto& [cle, element] : table) {
    element.imprimer(out);
    attendre_une_touche(out, pause);
  }
}

template <class Elements>
bool imprimer_si_present(std::ostream& out, const Elements& table, int numero) {
  const auto trouve = table.find(numero);
  if (trouve == table.end()) return false;
  trouve->second.imprimer(out);
  return true;
}

}  // namespace

void Base::Print(bool pause) const {
  imprimer(std::cout, pause);
}

void Base::Print(int sorte, bool pause) const {
  imprimer(std::cout, sorte, pause);
}

void Base::Print_elem(int numero) const {
  imprimer_elem(std::cout, numero);
}

void Base::imprimer(std::ostream& out, bool pause) const {
  for (const int sorte : {5, 6, 7, 1, 2, 3, 4}) imprimer(out, sorte, pause);
}

void Base::imprimer(std::ostream& out, int sorte, bool pause) const {
  switch (sorte) {
    case 1:
      return imprimer_table(out, blocs, pause);
    case 2:
      return imprimer_table(out, faces, pause);
    case 3:
      return imprimer_table(out, edges, pause);
    case 4:
      return imprimer_table(out, vrtxs, pause);
    case 5:
      avion.imprimer(out);
      return attendre_une_touche(out, pause);
    case 6:
      return imprimer_table(out, pieces, pause);
    case 7:
      for (const Raccord& raccord : raccords) {
        raccord.imprimer(out);
        attendre_une_touche(out, pause);
      }
      return;
    default:
      return;
  }
}

void Base::imprimer_elem(std::ostream& out, int numero) const {
  if (imprimer_si_present(out, blocs, numero) || imprimer_si_present(out, faces, numero) ||
      imprimer_si_present(out, edges, numero) || imprimer_si_present(out, vrtxs, numero))
    return;
  out << "Element " << numero << " inexistant...\n";
}
