#include "app/topodata/rapport.h"

#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "app/topodata/console.h"
#include "texte/affichable.h"
#include "texte/nombres.h"

namespace topomine {

void Rapport::ajouter(std::vector<Constat> constats) {
  std::erase_if(constats, [&](const Constat& c) { return !choix_.garde(c); });
  for (const Constat& c : constats) ++nb_[static_cast<std::size_t>(fiche(c.code).gravite)];
  ecrire(constats);
}

int Rapport::statut() const {
  return nb(Gravite::erreur) > 0 ? 2 : nb(Gravite::avertissement) > 0 ? 1 : 0;
}

namespace {

constexpr std::size_t un_par_un = 3;  // of a kind, in one file
constexpr std::size_t lignes_citees = 10;

void ecrire_ligne(std::ostream& out, const Constat& c, const std::string& quoi) {
  const Fiche& f = fiche(c.code);
  std::string ligne = c.fichier + ':' + std::to_string(c.ligne) + ": " + quoi;
  ligne.append(" [").append(nom(f.gravite)).append("] [").append(nom(f.code)).append("]");
  out << pour_lecteur(ligne) << '\n';
}

void ecrire_constat(std::ostream& out, const Constat& c) {
  std::string quoi = c.sorte + (c.numero.empty() ? "" : " ") + c.numero + ": " + c.quoi + "; ";
  ecrire_ligne(out, c, quoi.append(fiche(c.code).remede));
}

/// The findings of one kind in one file.
struct Groupe {
  std::vector<const Constat*> constats;
  std::size_t ecrits = 0;
};

void ecrire_autres(std::ostream& out, const Groupe& g) {
  const Constat& premier = *g.constats[un_par_un];
  const std::size_t autres = g.constats.size() - un_par_un;
  std::string quoi = premier.sorte + ": et " + std::to_string(autres) + " autres, lignes ";
  for (std::size_t i = 0; i < autres && i < lignes_citees; ++i)
    quoi += (i == 0 ? "" : ", ") + std::to_string(g.constats[un_par_un + i]->ligne);
  quoi += autres > lignes_citees ? ", ...; " : "; ";
  ecrire_ligne(out, premier, quoi.append(fiche(premier.code).titre));
}

}  // namespace

void RapportTexte::ecrire(const std::vector<Constat>& constats) {
  std::map<std::pair<std::string_view, Code>, Groupe> groupes;
  for (const Constat& c : constats) groupes[{c.fichier, c.code}].constats.push_back(&c);
  for (const Constat& c : constats) {
    Groupe& g = groupes[{c.fichier, c.code}];
    const std::size_t rang = g.ecrits++;
    // A single remaining finding is written itself instead of "1 other".
    if (choix_.tout || rang < un_par_un || g.constats.size() == un_par_un + 1)
      ecrire_constat(out_, c);
    else if (rang == un_par_un)
      ecrire_autres(out_, g);
  }
}

namespace {

nlohmann::ordered_json en_json(const Constat& c) {
  const Fiche& f = fiche(c.code);
  nlohmann::ordered_json numero;
  if (const auto entier = entier_strict(c.numero))
    numero = *entier;
  else if (!c.numero.empty())
    numero = en_utf8(c.numero);
  return {{"file", en_utf8(c.fichier)}, {"line", c.ligne},   {"code", nom(c.code)},
          {"severity", nom(f.gravite)}, {"kind", c.sorte},   {"number", numero},
          {"text", en_utf8(c.quoi)},    {"remedy", f.remede}};
}

/// If any character is a control character, all non-ASCII ones are escaped.
std::string en_texte(const nlohmann::ordered_json& objet) {
  const std::string texte = objet.dump();
  return affichable(texte) == texte ? texte : objet.dump(-1, ' ', true);
}

}  // namespace

void RapportJson::ecrire(const std::vector<Constat>& constats) {
  for (const Constat& c : constats) {
    out_ << (std::exchange(vide_, false) ? "[\n" : ",\n") << en_texte(en_json(c));
  }
}

void RapportJson::finir() {
  out_ << (vide_ ? "[]\n" : "\n]\n");
}

}  // namespace topomine
