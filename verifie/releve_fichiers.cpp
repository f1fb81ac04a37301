#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <vector>

#include "base/lecture/parcours.h"
#include "verifie/lecteur_strict.h"

namespace topomine {

// What each file must hold, entity by entity. The load_*.cpp walk the same elements for a run.

void relever_bloc(Lecteur& l, const TiXmlNode& n) {
  Block bloc;
  const auto ident = l.ident(n);
  bloc._type(l.entier(n, "Type", 30));  // one that nobody will find fault with
  bloc._erik(l.cellule(&n, "Erikson").value_or(0.0));
  const TiXmlNode* volumes = l.enfant(&n, "Volumes");
  // 1 where there is none to judge: its absence has been said.
  bloc._volexa(l.cellule(volumes, "Exact").value_or(1.0));
  bloc._volmor(l.cellule(volumes, "Mor").value_or(bloc._volexa()));
  bloc._volmoy(l.cellule(volumes, "Moyen").value_or(bloc._volexa()));
  bloc._volnsm(l.cellule(volumes, "NSMB").value_or(bloc._volexa()));
  if (const TiXmlNode* liste = l.enfant(&n, "Faces")) {
    Lecteur::Cases cases{"face", "NbSubFace", "SubFace", nb_faces_bloc};
    for (const TiXmlNode* place = l.enfant(liste, "Face"); place; place = place->NextSibling())
      l.lire_case(cases, *place, [&](int i, int face) { bloc._face(i, face); });
    if (liste->FirstChild("Face")) l.cases_manquantes(cases, *liste);
  }
  if (ident) l.r.base.blocs.insert_or_assign(bloc._id(*ident), bloc);
}

void relever_face(Lecteur& l, const TiXmlNode& n) {
  Face face;
  const auto ident = l.ident(n);
  face._carac(l.entier(n, "NumCaract"));
  face._type(l.entier(n, "Type"));
  l.pour_chaque_entier(n, "Boundary_Conditions", [&](int code) { face.add_BC(code); });
  l.pour_chaque_entier(n, "Surfaces", [&](int surf) { face.add_surf(surf); });
  if (const TiXmlNode* place = l.enfant(&n, "Edge")) {
    Lecteur::Cases cases{"edge", "NbSubEdge", "SubEdge", nb_edges_face};
    for (; place && nom_commence(*place, "Edge"); place = place->NextSibling())
      l.lire_case(cases, *place, [&](int i, int edge) { face._edge(i, edge); });
    if (place)
      l.signaler(*place, "la liste des edges s'arrete a un autre element",
                 "mettre les edges a la fin de la face", Gravite::avertissement);
    l.cases_manquantes(cases, n);
  }
  if (ident) l.r.base.faces.insert_or_assign(face._id(*ident), face);
}

void relever_edge(Lecteur& l, const TiXmlNode& n) {
  Edge edge;
  const auto ident = l.ident(n);
  edge._carac(l.entier(n, "NumCaract"));
  l.pour_chaque_entier(n, "Boundary_Conditions", [&](int code) { edge.add_BC(code); });
  const TiXmlNode* nb = l.enfant(&n, "NbVertex");
  if (const auto v = l.entier(nb); v && *v != nb_vrtxs_edge)
    l.signaler(*nb, "NbVertex vaut " + std::to_string(*v) + ", la base ne se charge pas",
               "une edge a 2 sommets");
  const TiXmlNode* bouts = l.enfant(&n, "Vertices");
  for (const int i : {0, 1}) {
    const TiXmlNode* bout = l.enfant(bouts, i == 0 ? "rmin" : "rmax");
    const auto v = l.entier(bout);
    if (v && *v <= 0)
      l.signaler(*bout, bout->ValueStr() + " nul ou negatif", "donner le numero d'un sommet");
    edge._vrtx(i, std::max(v.value_or(0), 0));
  }
  if (ident) l.r.base.edges.insert_or_assign(edge._id(*ident), edge);
}

namespace {

void relever_xyz(Lecteur& l, const TiXmlNode* parent) {
  for (const char* nom : {"X", "Y", "Z"}) l.reel(l.enfant(parent, nom));
}

}  // namespace

void relever_vertex(Lecteur& l, const TiXmlNode& n) {
  const auto ident = l.ident(n);
  relever_xyz(l, l.enfant(&n, "Coord"));
  const TiXmlNode* proj = n.FirstChild("Proj");
  for (; proj && nom_commence(*proj, "Proj"); proj = proj->NextSibling()) {
    l.entier(l.enfant(proj, "Famille"));
    relever_xyz(l, l.enfant(proj, "Coord"));
    relever_xyz(l, l.enfant(proj, "Normale"));
  }
  if (proj && proj->NextSibling("Proj"))
    l.signaler(*proj, "la liste des projections s'arrete a un autre element",
               "mettre les projections a la fin du vertex");
  if (ident) l.r.base.vrtxs[*ident]._id(*ident);
}

namespace {

void relever_avion(Lecteur& l, const TiXmlNode* avion) {
  if (!avion) return;
  for (const char* nom : {"name", "family"}) l.texte(l.enfant(avion, nom));
  for (const char* nom :
       {"fuse_length", "fuse_width", "height", "wing_span", "corde", "wing_area", "sweep"})
    l.reel(l.enfant(avion, nom));
  l.entier(l.enfant(avion, "nb_engine"));
}

void relever_topologie(Lecteur& l, const TiXmlNode* element, Piece& piece) {
  const std::string* t = l.texte(element);
  if (!t) return;
  if (t->size() == 1) piece._topology((*t)[0]);
  if (piece._topology() == '\0')
    l.signaler(*element, "topologie inconnue : '" + *t + "'",
               "y mettre une seule lettre, C, H ou O");
}

/// The piece, its place in the table taken or not.
void relever_piece(Lecteur& l, const TiXmlNode& n, std::vector<std::string>& noms) {
  Piece piece;
  const TiXmlNode* nom = l.enfant(&n, "nom");
  if (const std::string* t = l.texte(nom)) {
    piece._nom(*t);
    noms.push_back(*t);
    l.nommer(*t);
  }
  const TiXmlNode* fam = l.enfant(&n, "family");
  const std::string* famille = l.texte(fam);
  const TiXmlNode* topologie = l.enfant(&n, "topologie");
  relever_topologie(l, topologie, piece);
  // Without a "special" the list is all of the piece's children; the three above have been read.
  const TiXmlNode* ouvre = n.FirstChild("special");
  for (const TiXmlNode* s = ouvre ? ouvre->NextSibling() : n.FirstChild(); s; s = s->NextSibling())
    if (s != nom && s != fam && s != topologie) l.texte(s);
  if (!famille) return;
  piece._fam_BC(*famille);
  const auto [place, nouvelle] = l.r.base.pieces.try_emplace(*famille, piece);
  if (nouvelle)
    l.r.lignes_pieces[*famille] = n.Row();
  else
    l.signaler(
        n,
        "famille '" + *famille + "' deja prise ligne " +
            std::to_string(l.r.lignes_pieces[*famille]) + ", cette piece est ignoree",
        "lui donner une famille a elle",
        place->second._topology() == piece._topology() ? Gravite::avertissement : Gravite::erreur);
}

void relever_raccord(Lecteur& l, const TiXmlNode& n, const std::vector<std::string>& noms) {
  const TiXmlNode* premiere = l.enfant(&n, "piece");
  const TiXmlNode* seconde = premiere ? premiere->NextSibling() : nullptr;
  if (premiere && !seconde) l.signaler(n, "pas de seconde piece", "l'ajouter apres la premiere");
  for (const TiXmlNode* piece : {premiere, seconde}) {
    const std::string* nom = l.texte(piece);
    if (nom && std::ranges::find(noms, *nom) == noms.end())
      l.signaler(*piece, "piece '" + *nom + "' n'existe pas", "nommer une piece de liste_pieces",
                 Gravite::avertissement);
  }
  const TiXmlNode* type = l.enfant(&n, "type");
  const std::string* t = l.texte(type);
  if (t && Raccord()._type(*t).empty())
    l.signaler(*type, "type de raccord inconnu : '" + *t + "'", "y mettre C45 ou C90",
               Gravite::avertissement);
}

}  // namespace

void relever_scene(Lecteur& l, const TiXmlNode& scene) {
  l.changer_sorte("reference_avion");
  relever_avion(l, l.enfant(&scene, "reference_avion"));
  std::vector<std::string> noms;
  l.changer_sorte("liste_pieces");
  if (const TiXmlNode* pieces = l.enfant(&scene, "liste_pieces")) {
    l.changer_sorte("piece");
    for (const TiXmlNode* n = pieces->FirstChild(); n; n = n->NextSibling())
      if (l.suivante(*n)) relever_piece(l, *n, noms);
  }
  l.changer_sorte("liste_raccords");
  if (const TiXmlNode* raccords = l.enfant(&scene, "liste_raccords")) {
    l.changer_sorte("raccord");
    for (const TiXmlNode* n = raccords->FirstChild(); n; n = n->NextSibling())
      if (l.suivante(*n)) relever_raccord(l, *n, noms);
  }
}

}  // namespace topomine
