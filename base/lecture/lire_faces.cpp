#include <iostream>

#include "base/lecture/parcours.h"

using namespace topomine;

bool Base::load_faces() {
  return lire_document(*this, nom_base + "_" + type + ".face", ligne_neuve, parcourir_faces);
}

bool topomine::parcourir_faces(Base& base, const TiXmlDocument& doc, const std::string& fichier) {
  Parcours p("bool Base::load_faces()", "face", fichier);
  Face face;
  const TiXmlNode& top = p.enfant(doc, "Faces");
  for (const TiXmlNode* n = top.FirstChild(); n; n = n->NextSibling()) {
    p.suivante();
    face.clear();
    const int ident = face._id(p.ident(*n));
    face._carac(p.entier(*n, "NumCaract"));
    face._type(p.entier(*n, "Type"));
    p.pour_chaque_entier(*n, "Boundary_Conditions", [&](int code) { face.add_BC(code); });
    p.pour_chaque_entier(*n, "Surfaces", [&](int surf) { face.add_surf(surf); });
    for (const TiXmlNode* place = &p.enfant(*n, "Edge", "hnode"); place;
         place = place->NextSibling()) {
      if (!nom_commence(*place, "Edge")) {
        std::cout << "fin des edges... avec value = " << place->ValueStr() << std::endl;
        break;
      }
      const int numero = p.entier(*place, "Numero");
      const int edge = p.contenu_case(*place, "NbSubEdge", "SubEdge",
                                      "base comportant des sousedges multiples ou negatives....");
      // Any number outside the list appends; 0 would be slot -1, and so would the smallest int.
      face._edge(numero > 0 ? numero - 1 : -1, edge);
    }
    ranger(base, "face", base.faces, ident, face);
  }
  return true;
}
