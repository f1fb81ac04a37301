#include "app/topodata/rapport.h"

#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

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

void ecrire_marques(std::ostream& out, const Fiche& f) {
  out << " [" << nom(f.gravite) << "] [" << nom(f.code) << "]\n";
}

void ecrire_constat(std::ostream& out, const Constat& c) {
  const Fiche& f = fiche(c.code);
  out << c.fichier << ':' << c.ligne << ": " << c.sorte << (c.numero.empty() ? "" : " ") << c.numero
      << ": " << c.quoi << "; " << f.remede;
  ecrire_marques(out, f);
}

/// The findings of one kind in one file.
struct Groupe {
  std::vector<const Constat*> constats;
  std::size_t ecrits = 0;
};

void ecrire_autres(std::ostream& out, const Groupe& g) {
  const Constat& premier = *g.constats[un_par_un];
  const std::size_t autres = g.constats.size() - un_par_un;
  out << premier.fichier << ':' << premier.ligne << ": " << premier.sorte << ": et " << autres
      << (autres == 1 ? " autre, ligne " : " autres, lignes ");
  for (std::size_t i = 0; i < autres && i < lignes_citees; ++i)
    out << (i == 0 ? "" : ", ") << g.constats[un_par_un + i]->ligne;
  out << (autres > lignes_citees ? ", ..." : "") << "; " << fiche(premier.code).titre;
  ecrire_marques(out, fiche(premier.code));
}

}  // namespace

void RapportTexte::ecrire(const std::vector<Constat>& constats) {
  std::map<std::pair<std::string_view, Code>, Groupe> groupes;
  for (const Constat& c : constats) groupes[{c.fichier, c.code}].constats.push_back(&c);
  for (const Constat& c : constats) {
    Groupe& g = groupes[{c.fichier, c.code}];
    const std::size_t rang = g.ecrits++;
    // A line on the others is for two at least: one is said as well by itself.
    if (choix_.tout || rang < un_par_un || g.constats.size() == un_par_un + 1)
      ecrire_constat(out_, c);
    else if (rang == un_par_un)
      ecrire_autres(out_, g);
  }
}

namespace {

/// Texts come from files: what is not UTF-8 is taken for ISO-8859-1.
std::string en_utf8(const std::string& texte) {
  using nlohmann::json;
  try {
    static_cast<void>(json(texte).dump());
    return texte;
  } catch (const json::type_error&) {
    std::string utf8;
    for (const char c : texte) {
      const auto u = static_cast<unsigned char>(c);
      if (u < 0x80) {
        utf8 += c;
      } else {
        utf8 += static_cast<char>(0xC0 | u >> 6);
        utf8 += static_cast<char>(0x80 | (u & 0x3F));
      }
    }
    return utf8;
  }
}

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

}  // namespace

void RapportJson::ecrire(const std::vector<Constat>& constats) {
  for (const Constat& c : constats) {
    out_ << (std::exchange(vide_, false) ? "[\n" : ",\n") << en_json(c).dump();
  }
}

void RapportJson::finir() {
  out_ << (vide_ ? "[]\n" : "\n]\n");
}

}  // namespace topomine
