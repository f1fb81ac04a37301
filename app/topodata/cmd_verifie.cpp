#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "app/topodata/commandes.h"
#include "app/topodata/construction.h"
#include "verifie/regles.h"

namespace topomine {

namespace {

struct Options {
  Cible cible;
  std::string fichier;
};

struct Bilan {
  std::size_t erreurs = 0, avertissements = 0;
};

/// file:line: kind number: what; what to do about it (how bad)
void ecrire(std::ostream& out, const std::vector<Constat>& constats, Bilan& bilan) {
  for (const Constat& c : constats) {
    const bool erreur = c.gravite == Gravite::erreur;
    ++(erreur ? bilan.erreurs : bilan.avertissements);
    out << c.fichier << ':' << c.ligne << ": " << c.sorte << (c.numero.empty() ? "" : " ")
        << c.numero << ": " << c.quoi << "; " << c.remede
        << (erreur ? " [erreur]\n" : " [avertissement]\n");
  }
}

int executer(Options& o) {
  Progres progres;
  controler(o.cible, !o.cible.bases);
  Sortie sortie(o.fichier);
  Bilan bilan;
  const ReleveConfig config = relever_config(o.cible.chemin);
  ecrire(sortie.flux(), verifier(config), bilan);
  for (const std::string& nom : o.cible.noms()) {
    progres.etape("verification de " + nom);
    const std::vector<Constat> constats =
        verifier(relever(nom, o.cible.chemin, o.cible.mode), config);
    progres.effacer();
    ecrire(sortie.flux(), constats, bilan);
  }
  sortie.conclure();
  if (bilan.erreurs + bilan.avertissements > 0)
    std::cerr << "topodata : " << bilan.erreurs << " erreur(s), " << bilan.avertissements
              << " avertissement(s)\n";
  return bilan.erreurs > 0 ? 2 : bilan.avertissements > 0 ? 1 : 0;
}

}  // namespace

void ajouter_verifie(CLI::App& app, int& statut) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("verifie", "Dit tout ce qui ne va pas dans les cas");
  options_cible(*c, o->cible);
  c->add_option("-o,--sortie", o->fichier, "Fichier a ecrire (sinon la sortie standard)");
  c->footer(
      "Une ligne par constat : fichier:ligne: sorte numero: ce qui ne va pas; que faire [gravite]\n"
      "Code de retour : 0 rien, 1 des avertissements seulement, 2 des erreurs.\n"
      "Exemple :\n"
      "  topodata verifie cas/ nrm --bases mesh_case_2");
  c->callback([o, &statut] { statut = executer(*o); });
}

}  // namespace topomine
