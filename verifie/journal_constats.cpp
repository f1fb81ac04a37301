#include "verifie/journal_constats.h"

#include <tinyxml.h>

#include <algorithm>

#include "texte/nombres.h"

namespace topomine {

namespace {

constexpr auto avertissement_ = Gravite::avertissement;
constexpr char mettre_un_nombre[] = "y mettre un nombre seul, sinon la lecture garde le precedent";

/// What a message calls an element: those named "Cell" only tell which one with their parent.
std::string nom_de(const TiXmlNode& n) {
  if (!n.ToElement()) return "commentaire ou texte";
  const std::string nom = n.Value();
  return nom == "Cell" && n.Parent() ? n.Parent()->Value() + ("/" + nom) : nom;
}

std::string entre_apostrophes(std::string_view texte) {
  return "'" + std::string(texte) + "'";
}

}  // namespace

void JournalConstats::signaler(const TiXmlNode& ou, const std::string& quoi,
                               const std::string& remede, Gravite gravite) {
  r_.signaler(f_, std::max(ou.Row(), 1), sorte_, numero_, quoi, remede, gravite);
}

void JournalConstats::sorte(const char* sorte) {
  sorte_ = sorte;
  rang_ = 0;
  numero_.clear();
}

bool JournalConstats::entite(const TiXmlNode& entite) {
  numero_ = "de rang " + std::to_string(++rang_);
  if (entite.ToElement()) return true;
  signaler(entite, "un commentaire ou un texte tient sa place",
           "l'enlever, il serait lu comme un element");
  return false;
}

void JournalConstats::ident(const TiXmlNode& entite, int numero) {
  numero_ = std::to_string(numero);
  if (numero <= 0)
    signaler(entite, "numero nul ou negatif, rien ne s'y relie", "lui donner un numero positif");
  const auto [place, nouveau] = r_.lignes[f_].try_emplace(numero, entite.Row());
  if (!nouveau)
    signaler(entite, "numero deja pris ligne " + std::to_string(place->second) + ", il le remplace",
             "lui donner un numero a lui");
  place->second = entite.Row();
}

void JournalConstats::nom_de_piece(std::string_view nom) {
  numero_ = nom;
  noms_.emplace(nom);
}

void JournalConstats::absent(const TiXmlNode& parent, const char* nom) {
  signaler(parent, std::string("pas d'element ") + nom, "l'ajouter, la lecture s'arrete sans lui");
}

std::optional<std::string_view> JournalConstats::texte(const TiXmlNode& element) {
  const TiXmlNode* n = element.FirstChild();
  if (n && n->ToText()) return n->Value();
  if (n)
    signaler(element, nom_de(element) + " ne commence pas par un texte",
             "y mettre son texte d'abord");
  else
    signaler(element, nom_de(element) + " sans texte",
             "y mettre un texte, la lecture s'arrete sans lui");
  return {};
}

std::optional<int> JournalConstats::entier(const TiXmlNode& element) {
  const auto t = texte(element);
  const auto v = t ? entier_strict(*t) : std::nullopt;
  if (t && !v)
    signaler(element, nom_de(element) + " n'est pas un entier : " + entre_apostrophes(*t),
             mettre_un_nombre);
  return v;
}

std::optional<double> JournalConstats::reel(const TiXmlNode& element) {
  const auto t = texte(element);
  const auto v = t ? reel_strict(*t) : std::nullopt;
  if (t && !v)
    signaler(element, nom_de(element) + " n'est pas un nombre : " + entre_apostrophes(*t),
             mettre_un_nombre);
  return v;
}

const TiXmlNode* JournalConstats::enfant(const TiXmlNode& parent, const char* nom) {
  const TiXmlNode* n = parent.FirstChild(nom);
  if (!n) absent(parent, nom);
  return n;
}

std::optional<int> JournalConstats::entier(const TiXmlNode& parent, const char* nom) {
  const TiXmlNode* n = enfant(parent, nom);
  return n ? entier(*n) : std::nullopt;
}

std::optional<Case> JournalConstats::lire_case(Cases& cases, const TiXmlNode& place) {
  const auto numero = entier(place, "Numero");
  const bool dedans = numero && *numero >= 1 && *numero <= cases.nb_cases;
  if (numero && !dedans)
    signaler(place,
             std::string(cases.quoi) + " " + std::to_string(*numero) + " hors de 1 a " +
                 std::to_string(cases.nb_cases),
             "corriger son Numero");
  if (!dedans) {
    cases.illisible = true;
    return {};
  }
  const unsigned bit = 1U << *numero;
  if (cases.vues & bit)
    signaler(place, std::string(cases.quoi) + " " + std::to_string(*numero) + " donnee deux fois",
             "corriger l'un des deux Numero");
  cases.vues |= bit;
  return Case{*numero, contenu_de_case(cases, *numero, place)};
}

int JournalConstats::contenu_de_case(const Cases& cases, int numero, const TiXmlNode& place) {
  const std::string nom = std::string(cases.quoi) + " " + std::to_string(numero);
  const auto nb = entier(place, cases.nb);
  if (!nb) return 0;
  if (*nb == 0) {
    signaler(place, nom + " vide (" + cases.nb + " 0)",
             "normal si elle est degeneree, sinon donner son numero", avertissement_);
    return 0;
  }
  if (*nb != 1) {
    signaler(place,
             nom + " : " + cases.nb + " vaut " + std::to_string(*nb) + ", lu comme un numero",
             "decouper pour n'avoir qu'un element par case");
    return 0;
  }
  const auto contenu = entier(place, cases.sous);
  if (contenu && *contenu <= 0)
    signaler(place, nom + " : " + cases.sous + " nul ou negatif", "donner un numero positif");
  return std::max(contenu.value_or(0), 0);
}

void JournalConstats::cases_manquantes(const Cases& cases, const TiXmlNode& entite) {
  if (cases.illisible || cases.vues == 0) return;  // no slot at all has been said
  for (int i = 1; i <= cases.nb_cases; ++i)
    if (!(cases.vues & 1U << i))
      signaler(entite, std::string(cases.quoi) + " " + std::to_string(i) + " absente", "l'ajouter");
}

void JournalConstats::famille(const TiXmlNode& entite, const Piece& piece, const Piece& gardee,
                              bool nouvelle) {
  int& ligne = r_.lignes_pieces[piece._fam_BC()];
  if (nouvelle) {
    ligne = entite.Row();
    return;
  }
  signaler(entite,
           "famille " + entre_apostrophes(piece._fam_BC()) + " deja prise ligne " +
               std::to_string(ligne) + ", cette piece est ignoree",
           "lui donner une famille a elle",
           gardee._topology() == piece._topology() ? avertissement_ : Gravite::erreur);
}

void JournalConstats::ecart(Ecart ecart, const TiXmlNode& ou, std::string_view texte) {
  const std::string cite = entre_apostrophes(texte);
  switch (ecart) {
    case Ecart::reference_nulle:
      return signaler(ou, nom_de(ou) + " nul ou negatif", "donner le numero d'un sommet");
    case Ecart::edges_interrompues:
      return signaler(ou, "la liste des edges s'arrete a un autre element",
                      "mettre les edges a la fin de la face", avertissement_);
    case Ecart::projections_interrompues:
      if (ou.NextSibling("Proj"))
        signaler(ou, "la liste des projections s'arrete a un autre element",
                 "mettre les projections a la fin du vertex");
      return;
    case Ecart::nb_vertex:
      return signaler(ou, "NbVertex vaut " + std::string(texte) + ", la base ne se charge pas",
                      "une edge a 2 sommets");
    case Ecart::topologie:
      return signaler(ou, "topologie inconnue : " + cite, "y mettre une seule lettre, C, H ou O");
    case Ecart::seconde_piece:
      return signaler(ou, "pas de seconde piece", "l'ajouter apres la premiere");
    case Ecart::piece_citee:
      if (!noms_.contains(texte))
        signaler(ou, "piece " + cite + " n'existe pas", "nommer une piece de liste_pieces",
                 avertissement_);
      return;
    case Ecart::type_raccord:
      return signaler(ou, "type de raccord inconnu : " + cite, "y mettre C45 ou C90",
                      avertissement_);
  }
}

}  // namespace topomine
