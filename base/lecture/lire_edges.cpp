#include "base/fichiers.h"
#include "base/lecture/lectures.h"
#include "base/lecture/parcours.h"

namespace topomine {

bool lire_edges(Base& base, Journal& journal) {
  return lire_document(base, base.nom_base + fin_de_nom(fic_edge, base.type), parcourir_edges,
                       Echec::ligne_neuve, journal);
}

bool parcourir_edges(Base& base, const DocumentXml& doc, const std::string& fichier,
                     Journal& journal) {
  Parcours p("bool Base::load_edges()", fichier, journal);
  Edge edge;
  const Noeud edges = p.enfant(doc.noeud(), sortes_de_fichier[fic_edge].racine);
  p.sorte(sortes_de_fichier[fic_edge].sorte);
  for (Noeud n = p.premiere(edges); n; n = p.suivante(n)) {
    edge.clear();
    edge._id(p.ident(n));
    edge._carac(p.entier(n, "NumCaract"));
    p.pour_chaque_entier(n, "Boundary_Conditions", [&](int code) { edge.add_BC(code); });
    const Noeud element = p.enfant(n, "NbVertex");
    const int nb = p.entier(element, nb_vrtxs_edge);
    if (nb != nb_vrtxs_edge && !p.ecart(Ecart::nb_vertex, element, std::to_string(nb))) {
      journal.echec("Erreur avec l'edge " + std::to_string(edge._id()) + " ...");
      return false;
    }
    const Noeud bouts = p.enfant(n, "Vertices");
    edge._vrtx(0, p.reference(p.enfant(bouts, "rmin")));
    edge._vrtx(1, p.reference(p.enfant(bouts, "rmax")));
    p.ranger(base, base.edges, edge);
  }
  return true;
}

}  // namespace topomine
