#include <limits>

#include "base/fichiers.h"
#include "base/lecture/lectures.h"
#include "base/lecture/parcours.h"

namespace topomine {

namespace {

constexpr double inconnu = std::numeric_limits<double>::quiet_NaN();

/// The defaults are for strict readings only: values that no rule reports.
void lire_mesures(Parcours& p, Noeud n, Block& bloc) {
  bloc._type(p.entier(n, "Type", type_sans_bord));
  bloc._erik(p.cellule(n, "Erikson", inconnu));
  const Noeud volumes = p.enfant(n, "Volumes", "volm");
  bloc._volexa(p.cellule(volumes, "Exact", inconnu));
  bloc._volmor(p.cellule(volumes, "Mor", inconnu));
  bloc._volmoy(p.cellule(volumes, "Moyen", inconnu));
  bloc._volnsm(p.cellule(volumes, "NSMB", inconnu));
}

void lire_cases(Parcours& p, Noeud n, Block& bloc) {
  Cases cases{"face", "NbSubFace", "SubFace", nb_faces_bloc,
              "base comportant des sousfaces mulitples ou negatives...."};
  const Noeud liste = p.enfant(n, "Faces", "facs");
  for (Noeud place = p.enfant(liste, "Face", "face"); place; place = place.suivant()) {
    const auto lue = p.lire_case(cases, place);
    if (!lue) continue;
    if (lue->numero >= 1 && lue->numero <= nb_faces_bloc)
      bloc._face(lue->numero - 1, lue->contenu);
    else
      p.journal().avertissement("Attention au bloc " + std::to_string(bloc._id()) +
                                ", Numero de face " + std::to_string(lue->numero) +
                                " hors de 1 \340 " + std::to_string(nb_faces_bloc) +
                                " : case ignor\351e");
  }
  p.cases_manquantes(cases, liste);
}

}  // namespace

bool lire_blocs(Base& base, Journal& journal) {
  return lire_document(base, base.nom_base + fin_de_nom(fic_blck, base.type), parcourir_blocs,
                       Echec::meme_ligne, journal);
}

bool parcourir_blocs(Base& base, const DocumentXml& doc, const std::string& fichier,
                     Journal& journal) {
  Parcours p("bool Base::load_blocs()", fichier, journal);
  Block bloc;
  const Noeud blocs = p.enfant(doc.noeud(), sortes_de_fichier[fic_blck].racine);
  p.sorte(sortes_de_fichier[fic_blck].sorte);
  for (Noeud n = p.premiere(blocs); n; n = p.suivante(n)) {
    bloc.clear();
    bloc._id(p.ident(n));
    lire_mesures(p, n, bloc);
    lire_cases(p, n, bloc);
    p.ranger(base, base.blocs, bloc);
  }
  return true;
}

}  // namespace topomine
