#include <array>
#include <new>

#include "base/fichiers.h"
#include "base/lecture/lectures.h"
#include "base/lecture/parcours.h"

namespace topomine {

namespace {

/// The numbers in X, Y and Z of `parent`, read in this order: a bad text spoils the next one.
std::array<double, 3> lire_xyz(Parcours& p, Noeud parent) {
  const double x = p.reel(parent, "X");
  const double y = p.reel(parent, "Y");
  const double z = p.reel(parent, "Z");
  return {x, y, z};
}

void lire_projections(Parcours& p, Noeud n, Vertex& vrtx) {
  Noeud proj = n.premier("Proj");
  for (; proj && nom_commence(proj, "Proj"); proj = proj.suivant()) {
    const int famille = p.entier(proj, "Famille");
    const auto [px, py, pz] = lire_xyz(p, p.enfant(proj, "Coord"));
    const auto [nx, ny, nz] = lire_xyz(p, p.enfant(proj, "Normale"));
    if (!vrtx.add_proj_pt(famille, px, py, pz, nx, ny, nz)) throw std::bad_alloc();
  }
  p.ecart(Ecart::projections_interrompues, proj);
}

}  // namespace

bool lire_vrtxs(Base& base, Journal& journal) {
  return lire_document(base, base.nom_base + fin_de_nom(fic_vrtx, base.type), parcourir_vrtxs,
                       Echec::ligne_neuve, journal);
}

bool parcourir_vrtxs(Base& base, const DocumentXml& doc, const std::string& fichier,
                     Journal& journal) {
  Parcours p("bool Base::load_vrtxs()", fichier, journal);
  Vertex vrtx;
  const Noeud vertices = p.enfant(doc.noeud(), sortes_de_fichier[fic_vrtx].racine);
  p.sorte(sortes_de_fichier[fic_vrtx].sorte);
  for (Noeud n = p.premiere(vertices); n; n = p.suivante(n)) {
    vrtx.clear();
    vrtx._id(p.ident(n));
    const auto [x, y, z] = lire_xyz(p, p.enfant(n, "Coord"));
    vrtx.set_pos(x, y, z);
    lire_projections(p, n, vrtx);
    p.ranger(base, base.vrtxs, vrtx);
  }
  return true;
}

}  // namespace topomine
