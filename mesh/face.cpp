#include "mesh/face.h"

#include <iostream>

using namespace topomine;

void Face::set_edges(int /*e0*/, int /*e1*/, int /*e2*/, int /*e3*/) {
  edges_.clear();
  edges_.reserve(nb_edges_face);
}

void Face::clear() {
  id_ = carac_ = type_ = 0;
  bc_.clear();
  blocs_.clear();
  surfs_.clear();
  remettre_a_zero(edges_, nb_edges_face);
}

void Face::Print() const {
  imprimer(std::cout);
}

void Face::imprimer(std::ostream& out) const {
  out << "Face " << id_ << '\n' << "Type  : " << type_ << '\n' << "Carac : " << carac_ << '\n';
  out << "Nb Edges: " << edges_.size() << '\n' << "Edges\n";
  imprimer_places(out, "Edge", edges_, nb_edges_face);
  imprimer_liste(out, "Nb BCs: ", "BCs : ", bc_);
  imprimer_liste(out, "Nb blocs: ", "Blocs : ", blocs_);
  imprimer_liste(out, "Nb surfs: ", "Surfaces : ", surfs_);
  out << '\n';
}
