#include "verifie/lecteur_strict.h"

#include <algorithm>

namespace topomine {

namespace {

constexpr char mettre_un_nombre[] = "y mettre un nombre seul, sinon la lecture garde le precedent";

/// What a message calls an element: those named "Cell" only tell which one with their parent.
std::string nom_de(const TiXmlNode& n) {
  if (!n.ToElement()) return "commentaire ou texte";
  return n.ValueStr() == "Cell" && n.Parent() ? n.Parent()->ValueStr() + "/Cell" : n.ValueStr();
}

}  // namespace

void Lecteur::signaler(const TiXmlNode& ou, const std::string& quoi, const std::string& remede,
                       Gravite gravite) {
  r.signaler(f_, std::max(ou.Row(), 1), sorte_, numero_, quoi, remede, gravite);
}

void Lecteur::changer_sorte(const char* sorte) {
  sorte_ = sorte;
  rang_ = 0;
  numero_.clear();
}

bool Lecteur::suivante(const TiXmlNode& entite) {
  numero_ = "de rang " + std::to_string(++rang_);
  if (entite.ToElement()) return true;
  signaler(entite, "un commentaire ou un texte tient sa place",
           "l'enlever, il serait lu comme un element");
  return false;
}

std::optional<int> Lecteur::ident(const TiXmlNode& entite) {
  const auto numero = entier(enfant(&entite, "Ident"));
  if (!numero) return {};
  numero_ = std::to_string(*numero);
  if (*numero <= 0)
    signaler(entite, "numero nul ou negatif, rien ne s'y relie", "lui donner un numero positif");
  const auto [place, nouveau] = r.lignes[f_].try_emplace(*numero, entite.Row());
  if (!nouveau)
    signaler(entite, "numero deja pris ligne " + std::to_string(place->second) + ", il le remplace",
             "lui donner un numero a lui");
  place->second = entite.Row();
  return numero;
}

const TiXmlNode* Lecteur::enfant(const TiXmlNode* parent, const char* nom) {
  if (!parent) return nullptr;
  const TiXmlNode* n = parent->FirstChild(nom);
  if (!n)
    signaler(*parent, std::string("pas d'element ") + nom,
             "l'ajouter, la lecture s'arrete sans lui");
  return n;
}

const std::string* Lecteur::texte(const TiXmlNode* element) {
  if (!element) return nullptr;
  const TiXmlNode* n = element->FirstChild();
  if (n && n->ToText()) return &n->ValueStr();
  if (n)
    signaler(*element, nom_de(*element) + " ne commence pas par un texte",
             "y mettre son texte d'abord");
  else
    signaler(*element, nom_de(*element) + " sans texte",
             "y mettre un texte, la lecture s'arrete sans lui");
  return nullptr;
}

std::optional<int> Lecteur::entier(const TiXmlNode* element) {
  const std::string* t = texte(element);
  const auto v = t ? entier_strict(*t) : std::nullopt;
  if (t && !v)
    signaler(*element, nom_de(*element) + " n'est pas un entier : '" + *t + "'", mettre_un_nombre);
  return v;
}

std::optional<double> Lecteur::reel(const TiXmlNode* element) {
  const std::string* t = texte(element);
  const auto v = t ? reel_strict(*t) : std::nullopt;
  if (t && !v)
    signaler(*element, nom_de(*element) + " n'est pas un nombre : '" + *t + "'", mettre_un_nombre);
  return v;
}

int Lecteur::numero_de_case(Cases& cases, const TiXmlNode& place) {
  const auto numero = entier(enfant(&place, "Numero"));
  if (!numero) {
    cases.illisible = true;
    return 0;
  }
  const std::string nom = std::string(cases.quoi) + " " + std::to_string(*numero);
  if (*numero < 1 || *numero > cases.nb_cases) {
    signaler(place, nom + " hors de 1 a " + std::to_string(cases.nb_cases), "corriger son Numero");
    cases.illisible = true;
    return 0;
  }
  const unsigned bit = 1U << *numero;
  if (cases.vues & bit) signaler(place, nom + " donnee deux fois", "corriger l'un des deux Numero");
  cases.vues |= bit;
  return *numero;
}

int Lecteur::contenu_de_case(const Cases& cases, int numero, const TiXmlNode& place) {
  const std::string nom = std::string(cases.quoi) + " " + std::to_string(numero);
  const auto nb = entier(enfant(&place, cases.nb));
  if (!nb) return 0;
  if (*nb == 0) {
    signaler(place, nom + " vide (" + cases.nb + " 0)",
             "normal si elle est degeneree, sinon donner son numero", Gravite::avertissement);
    return 0;
  }
  if (*nb != 1) {
    signaler(place,
             nom + " : " + cases.nb + " vaut " + std::to_string(*nb) + ", lu comme un numero",
             "decouper pour n'avoir qu'un element par case");
    return 0;
  }
  const auto contenu = entier(enfant(&place, cases.sous));
  if (contenu && *contenu <= 0)
    signaler(place, nom + " : " + cases.sous + " nul ou negatif", "donner un numero positif");
  return std::max(contenu.value_or(0), 0);
}

void Lecteur::cases_manquantes(const Cases& cases, const TiXmlNode& entite) {
  if (cases.illisible) return;
  for (int i = 1; i <= cases.nb_cases; ++i)
    if (!(cases.vues & 1U << i))
      signaler(entite, std::string(cases.quoi) + " " + std::to_string(i) + " absente", "l'ajouter");
}

}  // namespace topomine
