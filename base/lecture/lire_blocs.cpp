#include <iostream>

#include "base/lecture/parcours.h"

using namespace topomine;

bool Base::load_blocs() {
  return lire_document(*this, nom_base + "_" + type + ".blck", meme_ligne, parcourir_blocs);
}

bool topomine::parcourir_blocs(Base& base, const TiXmlDocument& doc, const std::string& fichier) {
  Parcours p("bool Base::load_blocs()", "bloc", fichier);
  Block bloc;
  const TiXmlNode& top = p.enfant(doc, "Blocks");
  for (const TiXmlNode* n = top.FirstChild(); n; n = n->NextSibling()) {
    p.suivante();
    bloc.clear();
    const int ident = bloc._id(p.ident(*n));
    bloc._type(p.entier(*n, "Type"));
    bloc._erik(p.reel(p.enfant(*n, "Erikson"), "Cell"));
    const TiXmlNode& volumes = p.enfant(*n, "Volumes", "volm");
    bloc._volexa(p.reel(p.enfant(volumes, "Exact"), "Cell"));
    bloc._volmor(p.reel(p.enfant(volumes, "Mor"), "Cell"));
    bloc._volmoy(p.reel(p.enfant(volumes, "Moyen"), "Cell"));
    bloc._volnsm(p.reel(p.enfant(volumes, "NSMB"), "Cell"));
    const TiXmlNode& liste = p.enfant(*n, "Faces", "facs");
    for (const TiXmlNode* place = &p.enfant(liste, "Face", "face"); place;
         place = place->NextSibling()) {
      const int numero = p.entier(*place, "Numero");
      const int face = p.contenu_case(*place, "NbSubFace", "SubFace",
                                      "base comportant des sousfaces mulitples ou negatives....");
      if (numero < 1 || numero > nb_faces_bloc) {
        std::cerr << "Erreur avec le bloc " << ident << ", Numero de face " << numero
                  << " hors de 1 \340 " << nb_faces_bloc << " ..." << std::endl;
        return false;
      }
      bloc._face(numero - 1, face);
    }
    ranger(base, "bloc", base.blocs, ident, bloc);
  }
  return true;
}
