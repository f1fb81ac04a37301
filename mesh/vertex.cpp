#include "mesh/vertex.h"

#include <exception>
#include <iostream>

using namespace topomine;

namespace {

void imprimer_triplet(std::ostream& out, const Triplet& t) {
  out << '(' << t._x() << ',' << t._y() << ',' << t._z() << ")\n";
}

}  // namespace

void Vertex::get_pos(double& x, double& y, double& z) const {
  x = pos_._x();
  y = pos_._y();
  z = pos_._z();
}

void Vertex::set_pos(double x, double y, double z) {
  pos_._x(x);
  pos_._y(y);
  pos_._z(z);
}

bool Vertex::add_proj_pt(int surf, double px, double py, double pz, double nx, double ny,
                         double nz) {
  Projection p;
  p._surf(surf);
  p._point()._x(px);
  p._point()._y(py);
  p._point()._z(pz);
  p._normale()._x(nx);
  p._normale()._y(ny);
  p._normale()._z(nz);
  try {
    projs_.push_back(p);
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

bool Vertex::add_proj(int surf, double nx, double ny, double nz) {
  return add_proj_pt(surf, pos_._x(), pos_._y(), pos_._z(), nx, ny, nz);
}

const Projection* Vertex::projection(int k) const {
  if (k < 0 || k >= nb_proj()) return nullptr;
  return &projs_[static_cast<std::size_t>(k)];
}

bool Vertex::get_proj_pt(int k, int& surf, double& px, double& py, double& pz, double& nx,
                         double& ny, double& nz) const {
  const Projection* p = projection(k);
  if (!p) return false;
  px = p->_point()._x();
  py = p->_point()._y();
  pz = p->_point()._z();
  return get_proj(k, surf, nx, ny, nz);
}

bool Vertex::get_proj(int k, int& surf, double& nx, double& ny, double& nz) const {
  const Projection* p = projection(k);
  if (!p) return false;
  surf = p->_surf();
  nx = p->_normale()._x();
  ny = p->_normale()._y();
  nz = p->_normale()._z();
  return true;
}

void Vertex::clear() {
  id_ = 0;
  pos_.clear();
  projs_.clear();
  edges_.clear();
}

void Vertex::Print() const {
  imprimer(std::cout);
}

void Vertex::imprimer(std::ostream& out) const {
  out << "Vertex " << id_ << '\n' << "Coordonn\351es ";
  imprimer_triplet(out, pos_);
  out << "Nb projections : " << projs_.size() << '\n';
  if (!projs_.empty()) out << "Projections : \n";
  for (std::size_t k = 0; k < projs_.size(); ++k) {
    out << "  projection " << k << '\n' << "     Fam_surf : " << projs_[k]._surf() << '\n';
    out << "     Coordonn\351es  ";
    imprimer_triplet(out, projs_[k]._point());
    out << "     Normale      ";
    imprimer_triplet(out, projs_[k]._normale());
  }
  imprimer_liste(out, "Nb edges: ", "Edges : ", edges_);
  out << '\n';
}
