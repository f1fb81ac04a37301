#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <string_view>

#include "app/topodata/commandes.h"
#include "app/topodata/console.h"
#include "app/topodata/options.h"
#include "app/topodata/recherche.h"
#include "app/topodata/sortie.h"
#include "app/topodata/une_base.h"
#include "base/base.h"
#include "base/conditions.h"
#include "mesh/numbering.h"
#include "verifie/constat.h"

namespace topomine {

namespace {

struct Options {
  UneBase base;
  std::string sorte;
  std::vector<std::string> cherche;
  std::optional<int> element, voisins, coins;
};

/// Kinds in the order of their listing numbers, from 1.
constexpr auto sortes =
    std::to_array<const char*>({"bloc", "face", "edge", "vertex", "avion", "piece", "raccord"});

int numero_sorte(const std::string& nom) {
  return 1 + static_cast<int>(std::ranges::find(sortes, nom) - sortes.begin());
}

/// Lists entity n of a table numbered by the files.
template <class Entite>
bool imprimer(std::ostream& out, const std::map<int, Entite>& table, int n) {
  const auto trouve = table.find(n);
  if (trouve == table.end()) return false;
  trouve->second.imprimer(out);
  return true;
}

/// Entities by number, pieces and junctions by rank from 1. False when there is none.
bool voir_element(std::ostream& out, const Base& base, const std::string& sorte, int n) {
  const auto rang_dans = [n](std::size_t nb) { return n >= 1 && static_cast<unsigned>(n) <= nb; };
  switch (sorte.empty() ? 0 : numero_sorte(sorte)) {
    case 0:
      if (!base.blocs.contains(n) && !base.faces.contains(n) && !base.edges.contains(n) &&
          !base.vrtxs.contains(n))
        return false;
      base.imprimer_elem(out, n);
      return true;
    case 1:
      return imprimer(out, base.blocs, n);
    case 2:
      return imprimer(out, base.faces, n);
    case 3:
      return imprimer(out, base.edges, n);
    case 4:
      return imprimer(out, base.vrtxs, n);
    case 6:
      if (!rang_dans(base.pieces.size())) return false;
      std::next(base.pieces.begin(), n - 1)->second.imprimer(out);
      return true;
    case 7:
      if (!rang_dans(base.raccords.size())) return false;
      base.raccords[static_cast<std::size_t>(n - 1)].imprimer(out);
      return true;
    default:
      return false;
  }
}

void exiger_bloc(const Base& base, int b) {
  if (!base.blocs.contains(b))
    throw Erreur("bloc " + std::to_string(b) + " inexistant dans " + base.nom);
}

/// ", code 103, famille paroi_aile, BCCODE 1" for each code of a face.
void voir_conditions(std::ostream& out, TableConditions& conditions, const Face& face) {
  for (int i = 0; i < face.nb_BC(); ++i) {
    const ConditionLimite& l = conditions[face._BC(i)];
    out << ", code " << l.code;
    if (!l.connue)
      out << " inconnu de climite.cfg";
    else
      out << ", famille " << (l.famille.empty() ? "-" : citer(l.famille)) << ", BCCODE "
          << l.bccode;
  }
}

void voir_voisins(std::ostream& out, const Base& base, int b) {
  exiger_bloc(base, b);
  const std::vector<int> voisins = base.vois_bloc(b);
  TableConditions conditions(base);
  out << "Bloc " << b << " : " << voisins.size() << " voisin(s)\n";
  for (int i = 0; i < nb_faces_bloc; ++i) {
    const int f = base.blk_face(b, i);
    out << "  " << noms_faces[static_cast<std::size_t>(i)] << " : ";
    if (f == 0) {
      out << "pas de face\n";
      continue;
    }
    const auto face = base.faces.find(f);
    if (face != base.faces.end() && face->second._id() == 0) {  // made by the links
      out << "face " << f << " absente du fichier, ou " << f << " sous-faces\n";
      continue;
    }
    out << "face " << f << " :";
    bool seul = true;
    for (int n = 0; face != base.faces.end() && n < face->second.nb_bloc(); ++n) {
      if (face->second._bloc(n) == b) continue;
      out << ' ' << face->second._bloc(n);
      seul = false;
    }
    if (seul) out << " bord";
    if (face != base.faces.end()) voir_conditions(out, conditions, face->second);
    out << '\n';
  }
}

void voir_coins(std::ostream& out, const Base& base, int b) {
  exiger_bloc(base, b);
  out << "Bloc " << b << '\n';
  for (int coin = 0; coin < 8; ++coin) {
    const int i = coin & 1, j = coin >> 1 & 1, k = coin >> 2;
    const int v = base.blk_vrtx_ijk(b, i, j, k);
    out << "  coin (" << i << ',' << j << ',' << k << ") : ";
    if (v == -2)
      out << "case vide\n";
    else if (v == -3)
      out << "face ou edge inexistante\n";
    else if (v < 1)
      out << "pas de sommet commun\n";
    else {
      double x{}, y{}, z{};
      if (const auto s = base.vrtxs.find(v); s != base.vrtxs.end()) s->second.get_pos(x, y, z);
      out << "vertex " << v << " (" << x << ',' << y << ',' << z << ")\n";
    }
  }
}

void montrer(std::ostream& out, const Base& base, const Options& o) {
  if (o.voisins) voir_voisins(out, base, *o.voisins);
  if (o.coins) voir_coins(out, base, *o.coins);
  if (o.element) {
    if (!voir_element(out, base, o.sorte, *o.element))
      throw Erreur((o.sorte.empty() ? "element" : o.sorte) + " " + std::to_string(*o.element) +
                   " inexistant dans " + base.nom);
  } else if (!o.sorte.empty()) {
    base.imprimer(out, numero_sorte(o.sorte), false);
  } else if (!o.voisins && !o.coins) {
    base.imprimer(out, false);
  }
}

Base charger(UneBase& choix) {
  Progres progres;
  return charger_une_base(choix, progres);
}

void executer(Options& o) {
  if (o.element && o.sorte == "avion") throw Erreur("une base n'a qu'un avion, sans numero");
  Base base = charger(o.base);
  std::size_t trouves = 0;
  lister([&](std::ostream& listing) {
    if (o.cherche.empty())
      montrer(listing, base, o);
    else
      trouves = chercher_blocs(base, o.cherche, listing);
  });
  if (!o.cherche.empty())
    dire(std::to_string(trouves) + " bloc(s) sur " + std::to_string(base.blocs.size()));
}

}  // namespace

void ajouter_voir(CLI::App& app, int&) {
  const auto o = std::make_shared<Options>();
  CLI::App* c = app.add_subcommand("voir", "Montre ce que contient une base");
  options_une_base(*c, o->base);
  c->add_option("--sorte", o->sorte, "Une seule sorte d'element")
      ->check(CLI::IsMember(std::vector<std::string>(sortes.begin(), sortes.end())));
  const auto option_numero = [&](const char* nom, const char* description, auto& valeur) {
    using Limites = std::numeric_limits<int>;
    option_entier(*c, nom, description, valeur, Limites::min(), Limites::max());
  };
  option_numero("--element",
                "Un seul element : son numero, ou son rang pour une piece ou un raccord",
                o->element);
  option_numero("--voisins", "Les voisins de ce bloc et les conditions aux limites, face par face",
                o->voisins);
  option_numero("--coins", "Les sommets des huit coins de ce bloc", o->coins);
  auto* cherche = c->add_option("--cherche", o->cherche,
                                "Les blocs qui remplissent ces conditions, separees par des "
                                "virgules ; se repete")
                      ->type_name("CONDITIONS")
                      ->allow_extra_args(false);
  for (const char* autre : {"--sorte", "--element", "--voisins", "--coins"})
    cherche->excludes(c->get_option(autre));
  c->footer(
      "Une condition : ATTRIBUT et < <= > >= = ou != et un nombre, comme dans la table ; TypeC ou\n"
      "!TypeC ; famille=NOM, code=N ou BCCODE=N (ou !=), ce que portent les faces du bloc.\n"
      "Exemples :\n"
      "  topodata voir cas/ nrm mesh_case_2 --sorte bloc --element 3 --voisins 3\n"
      "  topodata voir cas/ nrm mesh_case_2 --cherche 'erikson<0.6,famille=paroi_aile'");
  c->callback([o] { executer(*o); });
}

}  // namespace topomine
