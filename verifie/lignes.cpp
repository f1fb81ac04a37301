#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/lecture/document.h"
#include "base/lecture/xml.h"
#include "verifie/journal_constats.h"

namespace topomine {

namespace {

std::string_view texte_de(Noeud n) {
  n = n ? n.premier() : n;
  return n ? n.valeur() : std::string_view();
}

/// The element that a path leads to from n, as far as it goes: names, a number for the slot that
/// has it.
Noeud suivre(Noeud n, std::string_view chemin) {
  Noeud ici = n;
  while (!chemin.empty()) {
    const std::size_t fin = std::min(chemin.find('/'), chemin.size());
    const std::string mot(chemin.substr(0, fin));
    Noeud suite;
    if (std::isdigit(static_cast<unsigned char>(mot[0])) != 0) {
      suite = ici;
      while (suite && texte_de(suite.premier("Numero")) != mot) suite = suite.suivant();
    } else {
      suite = ici.premier(mot.c_str());
    }
    if (!suite) break;
    ici = suite;
    chemin.remove_prefix(std::min(fin + 1, chemin.size()));
  }
  return ici;
}

}  // namespace

void preciser_lignes(CasLu& cas) {
  for (const Fichier f : {fic_blck, fic_face, fic_edge, fic_vrtx}) {
    std::unordered_map<std::string_view, std::vector<Constat*>> par_numero;
    for (Constat& c : cas.constats)
      if (!c.champ.empty() && c.fichier == cas.noms[f]) par_numero[c.numero].push_back(&c);
    if (par_numero.empty()) continue;
    DocumentXml doc;
    std::string texte;
    if (lire_fichier(cas.noms[f], texte) != Lecture::faite ||
        !analyser_xml(std::move(texte), doc, true) || !doc.racine())
      continue;
    for (Noeud n = doc.racine().premier(); n; n = n.suivant()) {
      const auto trouves = par_numero.find(texte_de(n.premier("Ident")));
      if (trouves == par_numero.end()) continue;
      for (Constat* c : trouves->second) c->ligne = suivre(n, c->champ).ligne();
    }
  }
}

}  // namespace topomine
