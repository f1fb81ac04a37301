#include "base/lecture/parcours.h"

using namespace topomine;

// The scene definition is read twice: for the aircraft, then for the pieces and their junctions.

bool Base::load_plane() {
  return lire_document(*this, nom_base + ".def", ligne_neuve, parcourir_plane);
}

bool Base::load_scene() {
  return lire_document(*this, nom_base + ".def", ligne_neuve, parcourir_scene);
}

bool topomine::parcourir_plane(Base& base, const TiXmlDocument& doc, const std::string& fichier) {
  Parcours p("bool Base::load_plane()", "reference_avion", fichier);
  const TiXmlNode& scene = p.enfant(doc, "definition_scene", "avion");
  const TiXmlNode& n = p.enfant(scene, "reference_avion", "avion");
  Avion& avion = base.avion;
  avion.clear();
  avion._name(p.texte(p.enfant(n, "name")));
  avion._family(p.texte(p.enfant(n, "family")));
  avion._fuse_length(p.reel(n, "fuse_length"));
  avion._fuse_width(p.reel(n, "fuse_width"));
  avion._height(p.reel(n, "height"));
  avion._wing_span(p.reel(n, "wing_span"));
  avion._corde(p.reel(n, "corde"));
  avion._wing_area(p.reel(n, "wing_area"));
  avion._sweep(p.reel(n, "sweep"));
  avion._nb_engine(p.entier(n, "nb_engine"));
  return true;
}

namespace {

void lire_piece(Parcours& p, const TiXmlNode& n, Piece& piece) {
  piece._nom(p.texte(p.enfant(n, "nom")));
  piece._fam_BC(p.texte(p.enfant(n, "family")));
  piece._topology(p.caractere(n, "topologie"));
  // The first "special" only opens the list: its own text is not taken. Without one the list is all
  // of the piece's children, name and family included. Meant so.
  const TiXmlNode* ouvre = n.FirstChild("special");
  for (const TiXmlNode* s = ouvre ? ouvre->NextSibling() : n.FirstChild(); s; s = s->NextSibling())
    piece.add_spe(p.texte(*s, "node->FirstChild()->Value()"));
}

void lire_raccord(const Parcours& p, const TiXmlNode& n, Raccord& raccord) {
  constexpr char expr[] = "node->FirstChild()";
  const TiXmlNode& premiere = p.enfant(n, "piece", expr);
  raccord._pc1(p.texte(premiere, expr));
  const TiXmlNode* seconde = premiere.NextSibling();
  if (!seconde) p.faute(expr, &n, "piece (seconde)");
  raccord._pc2(p.texte(*seconde, expr));
  raccord._type(p.texte(p.enfant(n, "type")));
}

}  // namespace

bool topomine::parcourir_scene(Base& base, const TiXmlDocument& doc, const std::string& fichier) {
  Parcours p("bool Base::load_scene()", "piece", fichier);
  const TiXmlNode& scene = p.enfant(doc, "definition_scene");
  const TiXmlNode& pieces = p.enfant(scene, "liste_pieces");
  Piece piece;
  for (const TiXmlNode* n = pieces.FirstChild(); n; n = n->NextSibling()) {
    p.suivante();
    piece.clear();
    lire_piece(p, *n, piece);
    base.pieces.emplace(piece._fam_BC(), piece);  // the first piece of a family stays
  }
  p.changer_sorte("raccord");
  const TiXmlNode& raccords = p.enfant(scene, "liste_raccords");
  Raccord raccord;
  for (const TiXmlNode* n = raccords.FirstChild(); n; n = n->NextSibling()) {
    p.suivante();
    raccord.clear();
    lire_raccord(p, *n, raccord);
    base.raccords.push_back(raccord);
  }
  return true;
}
