#include "verifie/journal_constats.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/lecture/xml.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

/// What a message calls an element: those named "Cell" only tell which one with their parent.
std::string nom_de(Noeud n) {
  if (!n.est_element()) return "commentaire ou texte";
  const std::string nom = citer(n.valeur());
  return nom == "Cell" && n.parent() ? citer(n.parent().valeur()) + "/" + nom : nom;
}

}  // namespace

void JournalConstats::signaler(Code code, Noeud ou, const std::string& quoi) {
  r_.signaler(code, f_, ou.ligne(), sorte_, numero_, quoi);
}

void JournalConstats::refuser(Code code, Noeud element, const std::string& quoi) {
  signaler(code, element, quoi);
  perdre(element.valeur(), element.parent());
}

void JournalConstats::refuser_lien(Code code, Noeud ou, const std::string& quoi) {
  signaler(code, ou, quoi);
  perdre(partie_liens);
}

void JournalConstats::perdre(unsigned partie) {
  if (ident_ != 0) r_.illisibles[f_][ident_] |= partie;
}

void JournalConstats::perdre(std::string_view element, Noeud parent) {
  if (element == "Ident") {
    ++r_.perdus[f_];
    return;
  }
  constexpr auto liens = std::to_array<std::string_view>(
      {"Faces", "Face", "NbSubFace", "SubFace", "Edge", "NbSubEdge", "SubEdge"});
  const bool code = parent && parent.valeur() == std::string_view("Boundary_Conditions");
  perdre(code                                               ? partie_codes
         : std::ranges::find(liens, element) != liens.end() ? partie_liens
                                                            : partie_valeurs);
}

void JournalConstats::sorte(const char* sorte) {
  sorte_ = sorte;
  rang_ = 0;
  numero_.clear();
}

bool JournalConstats::entite(Noeud entite) {
  numero_ = "de rang " + std::to_string(++rang_);
  ident_ = 0;
  coupee_ = false;
  if (entite.est_element()) return true;
  if (entite.est_commentaire() && std::strchr(entite.valeur(), '<')) ++r_.perdus[f_];
  signaler(Code::intrus, entite, "un commentaire ou un texte tient sa place");
  return false;
}

void JournalConstats::ident(Noeud entite, int numero) {
  numero_ = std::to_string(numero);
  ident_ = numero;
  const auto [place, nouveau] = r_.lignes[f_].try_emplace(numero, entite.ligne());
  if (numero <= 0)
    signaler(Code::numero_negatif, entite, "numero nul ou negatif, rien ne s'y relie");
  else if (!nouveau)
    signaler(Code::numero_pris, entite,
             "numero deja pris ligne " + std::to_string(place->second) + ", il le remplace");
  if (numero <= 0 || !nouveau) {
    r_.disputes[f_].insert(numero);
    ++r_.perdus[f_];
  }
  place->second = entite.ligne();
}

void JournalConstats::nom_de_piece(std::string_view nom) {
  numero_ = citer(nom);
  noms_.emplace(nom);
}

void JournalConstats::absent(Noeud parent, const char* nom) {
  signaler(Code::element_absent, parent, std::string("pas d'element ") + nom);
  perdre(nom, parent);
}

std::optional<std::string_view> JournalConstats::texte(Noeud element) {
  if (!element.est_element()) {
    refuser(Code::intrus, element, "un commentaire ou un texte tient la place d'un element");
    return {};
  }
  const Noeud n = element.premier();
  if (!n || !n.est_texte()) {
    refuser(Code::texte_absent, element,
            nom_de(element) + (n ? " ne commence pas par un texte" : " sans texte"));
    return {};
  }
  for (Noeud suite = n.suivant(); suite; suite = suite.suivant()) {
    if (suite.est_commentaire()) continue;
    refuser(Code::texte_laisse, element,
            nom_de(element) + " : seul " + entre_apostrophes(n.valeur()) +
                " est lu, la suite est laissee");
    return {};
  }
  return n.valeur();
}

std::optional<int> JournalConstats::entier(Noeud element) {
  const auto t = texte(element);
  const auto v = t ? entier_strict(*t) : std::nullopt;
  if (t && !v)
    refuser(Code::pas_un_nombre, element,
            nom_de(element) + " n'est pas un entier : " + entre_apostrophes(*t));
  return v;
}

std::optional<double> JournalConstats::reel(Noeud element) {
  const auto t = texte(element);
  const auto v = t ? reel_strict(*t) : std::nullopt;
  if (t && !v)
    refuser(Code::pas_un_nombre, element,
            nom_de(element) + " n'est pas un nombre : " + entre_apostrophes(*t));
  return v;
}

Noeud JournalConstats::enfant(Noeud parent, const char* nom) {
  const Noeud n = parent.premier(nom);
  if (!n) absent(parent, nom);
  return n;
}

std::optional<int> JournalConstats::entier(Noeud parent, const char* nom) {
  const Noeud n = enfant(parent, nom);
  return n ? entier(n) : std::nullopt;
}

std::optional<Case> JournalConstats::lire_case(Cases& cases, Noeud place) {
  if (!place.est_element()) {
    signaler(Code::intrus, place, "un commentaire ou un texte tient la place d'une case");
    return {};
  }
  const auto numero = entier(place, "Numero");
  const bool dedans = numero && *numero >= 1 && *numero <= cases.nb_cases;
  if (numero && !dedans)
    signaler(Code::case_hors, place,
             std::string(cases.quoi) + " " + std::to_string(*numero) + " hors de 1 a " +
                 std::to_string(cases.nb_cases));
  if (!dedans) {
    perdre(partie_liens);
    cases.illisible = true;
    return {};
  }
  const unsigned bit = 1U << *numero;
  if (cases.vues & bit) {
    refuser_lien(Code::case_en_double, place,
                 std::string(cases.quoi) + " " + std::to_string(*numero) + " donnee deux fois");
    cases.illisible = true;
    return Case{*numero, 0};
  }
  cases.vues |= bit;
  return Case{*numero, contenu_de_case(cases, *numero, place)};
}

int JournalConstats::contenu_de_case(const Cases& cases, int numero, Noeud place) {
  const std::string nom = std::string(cases.quoi) + " " + std::to_string(numero);
  const auto nb = entier(place, cases.nb);
  if (!nb || *nb == 0) return 0;
  if (auto faces = sous_faces(cases, *nb, place); !faces.empty()) {
    r_.partages[ident_].push_back({numero, std::move(faces)});
    perdre(partie_liens);
    return 0;
  }
  if (*nb != 1) {
    refuser_lien(Code::case_multiple, place,
                 nom + " : " + cases.nb + " vaut " + std::to_string(*nb) + ", lu comme un numero");
    return 0;
  }
  const auto contenu = entier(place, cases.sous);
  if (contenu && *contenu <= 0)
    refuser_lien(Code::contenu_negatif, place, nom + " : " + cases.sous + " nul ou negatif");
  return std::max(contenu.value_or(0), 0);
}

std::vector<int> JournalConstats::sous_faces(const Cases& cases, int nb, Noeud place) {
  std::vector<int> faces;
  if (nb < 2 || f_ != fic_blck || ident_ <= 0) return faces;
  for (Noeud n = place.premier(cases.sous); n; n = n.suivant(cases.sous)) {
    const Noeud t = n.premier();
    const auto v = t && t.est_texte() ? entier_strict(t.valeur()) : std::nullopt;
    if (!v || *v <= 0) return {};
    faces.push_back(*v);
  }
  if (faces.size() != static_cast<std::size_t>(nb)) faces.clear();
  return faces;
}

void JournalConstats::cases_manquantes(const Cases& cases, Noeud entite) {
  if (coupee_ || cases.illisible || cases.vues == 0) return;  // said already
  for (int i = 1; i <= cases.nb_cases; ++i)
    if (!(cases.vues & 1U << i))
      refuser_lien(Code::case_absente, entite,
                   std::string(cases.quoi) + " " + std::to_string(i) + " absente");
}

void JournalConstats::famille(Noeud entite, const Piece& piece, const Piece& gardee,
                              bool nouvelle) {
  int& ligne = r_.lignes_pieces[piece._fam_BC()];
  if (nouvelle) {
    ligne = entite.ligne();
    return;
  }
  ++r_.perdus[f_];
  const bool pareille = gardee._topology() == piece._topology();
  signaler(pareille ? Code::famille_repetee : Code::famille_prise, entite,
           "famille " + entre_apostrophes(piece._fam_BC()) + " deja prise ligne " +
               std::to_string(ligne) + ", cette piece est ignoree");
}

void JournalConstats::ecart(Ecart ecart, Noeud ou, std::string_view texte) {
  const std::string cite = entre_apostrophes(texte);
  switch (ecart) {
    case Ecart::reference_nulle:
      return signaler(Code::contenu_negatif, ou, nom_de(ou) + " nul ou negatif");
    case Ecart::edges_interrompues:
      if (!ou.suivant("Edge")) return;
      coupee_ = true;
      return refuser_lien(Code::liste_coupee, ou, "la liste des edges s'arrete a " + nom_de(ou));
    case Ecart::projections_interrompues:
      if (ou.suivant("Proj"))
        signaler(Code::liste_coupee, ou, "la liste des projections s'arrete a " + nom_de(ou));
      return;
    case Ecart::nb_vertex:
      return signaler(Code::nb_sommets, ou,
                      "NbVertex vaut " + std::string(texte) + ", la base ne se charge pas");
    case Ecart::topologie:
      return signaler(Code::topologie_inconnue, ou, "topologie inconnue : " + cite);
    case Ecart::seconde_piece:
      return signaler(Code::element_absent, ou, "pas de seconde piece");
    case Ecart::piece_citee:
      if (!noms_.contains(texte))
        signaler(Code::raccord_piece, ou, "piece " + cite + " n'existe pas");
      return;
    case Ecart::type_raccord:
      return signaler(Code::raccord_type, ou, "type de raccord inconnu : " + cite);
  }
}

}  // namespace topomine
