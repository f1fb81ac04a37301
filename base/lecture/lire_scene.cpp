#include "base/fichiers.h"
#include "base/lecture/lectures.h"
#include "base/lecture/parcours.h"

namespace topomine {

namespace {

/// False when the piece has no family to be kept under.
bool lire_piece(Parcours& p, Noeud n, Piece& piece) {
  const Noeud nom = p.enfant(n, "nom");
  const auto nom_lu = p.texte(nom);
  piece._nom(std::string(nom_lu.value_or("")));
  if (nom_lu) p.nom_de_piece(*nom_lu);
  const Noeud famille = p.enfant(n, "family");
  const auto famille_lue = p.texte(famille);
  piece._fam_BC(std::string(famille_lue.value_or("")));
  const Noeud topologie = p.enfant(n, "topologie");
  piece._topology(p.topologie(topologie));
  // The first "special" only opens the list, its own text is not taken. A piece without one has all
  // of its children for specials, name, family and topology included: what users' files count on.
  const Noeud ouvre = n.premier("special");
  for (Noeud s = ouvre ? ouvre.suivant() : n.premier(); s; s = s.suivant()) {
    if (p.stricte() && (s == nom || s == famille || s == topologie)) continue;  // judged above
    piece.add_spe(std::string(p.texte(s, "node->FirstChild()->Value()").value_or("")));
  }
  return famille_lue.has_value();
}

void lire_raccord(Parcours& p, Noeud n, Raccord& raccord) {
  constexpr char expr[] = "node->FirstChild()";
  const auto lire_nom = [&](Noeud piece) {
    const auto nom = p.texte(piece, expr);
    if (nom) p.ecart(Ecart::piece_citee, piece, *nom);
    return std::string(nom.value_or(""));
  };
  const Noeud premiere = p.enfant(n, "piece", expr);
  raccord._pc1(lire_nom(premiere));
  raccord._pc2(lire_nom(p.apres(premiere, n, "piece (seconde)", Ecart::seconde_piece, expr)));
  const Noeud type = p.enfant(n, "type");
  const auto type_lu = p.texte(type);
  if (raccord._type(std::string(type_lu.value_or(""))).empty() && type_lu)
    p.ecart(Ecart::type_raccord, type, *type_lu);
}

}  // namespace

bool lire_plane(Base& base, Journal& journal) {
  return lire_document(base, base.nom_base + fin_de_nom(fic_def), parcourir_plane,
                       Echec::ligne_neuve, journal);
}

bool lire_scene(Base& base, Journal& journal) {
  return lire_document(base, base.nom_base + fin_de_nom(fic_def), parcourir_scene,
                       Echec::ligne_neuve, journal);
}

bool parcourir_plane(Base& base, const DocumentXml& doc, const std::string& fichier,
                     Journal& journal) {
  Parcours p("bool Base::load_plane()", fichier, journal);
  p.sorte("reference_avion");
  const Noeud scene = p.enfant(doc.noeud(), sortes_de_fichier[fic_def].racine, "avion");
  const Noeud n = p.enfant(scene, "reference_avion", "avion");
  Avion& avion = base.avion;
  avion.clear();
  avion._name(p.texte_de(n, "name"));
  avion._family(p.texte_de(n, "family"));
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

bool parcourir_scene(Base& base, const DocumentXml& doc, const std::string& fichier,
                     Journal& journal) {
  Parcours p("bool Base::load_scene()", fichier, journal);
  const Noeud scene = p.enfant(doc.noeud(), sortes_de_fichier[fic_def].racine);
  p.sorte("liste_pieces");
  const Noeud pieces = p.enfant(scene, "liste_pieces");
  p.sorte("piece");
  Piece piece;
  for (Noeud n = p.premiere(pieces); n; n = p.suivante(n)) {
    piece.clear();
    if (!lire_piece(p, n, piece)) continue;
    const auto [gardee, nouvelle] = base.pieces.emplace(piece._fam_BC(), piece);  // the first stays
    p.famille(n, piece, gardee->second, nouvelle);
  }
  p.sorte("liste_raccords");
  const Noeud raccords = p.enfant(scene, "liste_raccords");
  p.sorte("raccord");
  Raccord raccord;
  for (Noeud n = p.premiere(raccords); n; n = p.suivante(n)) {
    raccord.clear();
    lire_raccord(p, n, raccord);
    base.raccords.push_back(raccord);
  }
  return true;
}

}  // namespace topomine
