#include "base/fichiers.h"
#include "base/lecture/lectures.h"
#include "base/lecture/limites_xml.h"
#include "base/lecture/parcours.h"
#include "texte/affichable.h"

namespace topomine {

namespace {

/// False when the face has too many of them.
bool lire_cases(Parcours& p, Noeud n, Face& face) {
  Cases cases{"edge", "NbSubEdge", "SubEdge", nb_edges_face,
              "base comportant des sousedges multiples ou negatives...."};
  Noeud place = p.enfant(n, "Edge", "hnode");
  for (; place && nom_commence(place, "Edge"); place = place.suivant()) {
    const auto lue = p.lire_case(cases, place);
    if (!lue) continue;
    // Numbers of 0 or less give slot -1, which appends; numero - 1 alone would overflow for
    // INT_MIN.
    face._edge(lue->numero > 0 ? lue->numero - 1 : -1, lue->contenu);
    if (face.nb_edge() > edges_max) return false;
  }
  if (place && !p.ecart(Ecart::edges_interrompues, place))
    p.journal().trace("fin des edges... avec value = " + affichable(place.valeur()));
  p.cases_manquantes(cases, n);
  return true;
}

}  // namespace

bool lire_faces(Base& base, Journal& journal) {
  return lire_document(base, base.nom_base + fin_de_nom(fic_face, base.type), parcourir_faces,
                       Echec::ligne_neuve, journal);
}

bool parcourir_faces(Base& base, const DocumentXml& doc, const std::string& fichier,
                     Journal& journal) {
  Parcours p("bool Base::load_faces()", fichier, journal);
  Face face;
  const Noeud faces = p.enfant(doc.noeud(), sortes_de_fichier[fic_face].racine);
  p.sorte(sortes_de_fichier[fic_face].sorte);
  for (Noeud n = p.premiere(faces); n; n = p.suivante(n)) {
    face.clear();
    face._id(p.ident(n));
    face._carac(p.entier(n, "NumCaract"));
    face._type(p.entier(n, "Type"));
    p.pour_chaque_entier(n, "Boundary_Conditions", [&](int code) { face.add_BC(code); });
    p.pour_chaque_entier(n, "Surfaces", [&](int surf) { face.add_surf(surf); });
    if (!lire_cases(p, n, face)) {
      journal.echec("Erreur avec la face " + std::to_string(face._id()) + ", plus de " +
                    std::to_string(edges_max) + " edges ...");
      return false;
    }
    p.ranger(base, base.faces, face);
  }
  return true;
}

}  // namespace topomine
