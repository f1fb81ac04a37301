#include <array>
#include <new>

#include "base/lecture/parcours.h"

using namespace topomine;

bool Base::load_vrtxs() {
  return lire_document(*this, nom_base + "_" + type + ".vrtx", ligne_neuve, parcourir_vrtxs);
}

namespace {

/// The texts of the X, Y and Z under `parent`, in this order.
std::array<double, 3> lire_xyz(Parcours& p, const TiXmlNode& parent) {
  const double x = p.reel(parent, "X");
  const double y = p.reel(parent, "Y");
  const double z = p.reel(parent, "Z");
  return {x, y, z};
}

}  // namespace

bool topomine::parcourir_vrtxs(Base& base, const TiXmlDocument& doc, const std::string& fichier) {
  Parcours p("bool Base::load_vrtxs()", "vertex", fichier);
  Vertex vrtx;
  const TiXmlNode& top = p.enfant(doc, "Vertices");
  for (const TiXmlNode* n = top.FirstChild(); n; n = n->NextSibling()) {
    p.suivante();
    vrtx.clear();
    const int ident = vrtx._id(p.ident(*n));
    const auto [x, y, z] = lire_xyz(p, p.enfant(*n, "Coord"));
    vrtx.set_pos(x, y, z);
    for (const TiXmlNode* proj = n->FirstChild("Proj"); proj && nom_commence(*proj, "Proj");
         proj = proj->NextSibling()) {
      const int famille = p.entier(*proj, "Famille");
      const auto [px, py, pz] = lire_xyz(p, p.enfant(*proj, "Coord"));
      const auto [nx, ny, nz] = lire_xyz(p, p.enfant(*proj, "Normale"));
      if (!vrtx.add_proj_pt(famille, px, py, pz, nx, ny, nz)) throw std::bad_alloc();
    }
    ranger(base, "vertex", base.vrtxs, ident, vrtx);
  }
  return true;
}
