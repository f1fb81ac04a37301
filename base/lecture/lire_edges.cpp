#include <iostream>

#include "base/lecture/parcours.h"

using namespace topomine;

bool Base::load_edges() {
  return lire_document(*this, nom_base + "_" + type + ".edge", ligne_neuve, parcourir_edges);
}

bool topomine::parcourir_edges(Base& base, const TiXmlDocument& doc, const std::string& fichier) {
  Parcours p("bool Base::load_edges()", "edge", fichier);
  Edge edge;
  const TiXmlNode& top = p.enfant(doc, "Edges");
  for (const TiXmlNode* n = top.FirstChild(); n; n = n->NextSibling()) {
    p.suivante();
    edge.clear();
    const int ident = edge._id(p.ident(*n));
    edge._carac(p.entier(*n, "NumCaract"));
    p.pour_chaque_entier(*n, "Boundary_Conditions", [&](int code) { edge.add_BC(code); });
    if (p.entier(*n, "NbVertex") != nb_vrtxs_edge) {
      std::cerr << "Erreur avec l'edge " << ident << " ..." << std::endl;
      return false;
    }
    const TiXmlNode& bouts = p.enfant(*n, "Vertices");
    edge._vrtx(0, p.entier(bouts, "rmin"));
    edge._vrtx(1, p.entier(bouts, "rmax"));
    ranger(base, "edge", base.edges, ident, edge);
  }
  return true;
}
