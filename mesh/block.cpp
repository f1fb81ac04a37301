#include "mesh/block.h"

#include <iostream>

using namespace topomine;

void Block::set_faces(int f0, int f1, int f2, int f3, int f4, int f5) {
  faces_ = {f0, f1, f2, f3, f4, f5};
  nb_faces_ = 0;
}

void Block::clear() {
  id_ = type_ = 0;
  erik_ = volexa_ = volmor_ = volmoy_ = volnsm_ = 0.0;
  forme_ = 'H';
  faces_.fill(0);
  // typeC_ stays: the class of a block is set by classification and cleared by nobody.
}

void Block::Print() const {
  imprimer(std::cout);
}

void Block::imprimer(std::ostream& out) const {
  out << "Bloc " << id_ << '\n'
      << "Type : " << type_ << '\n'
      << "Erikson : " << erik_ << '\n'
      << "Volumes\n"
      << "  Exact : " << volexa_ << '\n'
      << "  Mor   : " << volmor_ << '\n'
      << "  Moyen : " << volmoy_ << '\n'
      << "  NSMB  : " << volnsm_ << '\n'
      << "Nb faces: " << nb_faces_ << '\n'
      << "Faces\n";
  for (int i = 0; i < nb_faces_bloc; ++i) {
    out << "Face " << i;
    if (i < nb_faces_)
      out << " : " << _face(i) << '\n';
    else
      out << " absente\n";
  }
}
