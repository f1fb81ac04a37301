// make_cases: writes a sample collection of eight multi-block bases, the same for the same
// arguments.
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "tools/gen/ecriture.h"
#include "topomine/version.h"

using namespace topomine;

namespace {

constexpr gen::Num blocs_min = 8, blocs_max = 1'000'000;

constexpr std::string_view usage = "usage : make_cases DIR [--blocs N] [--graine S] [--force]\n";

constexpr std::string_view aide =
    "\n"
    "Ecrit dans DIR une collection d'essai : climite.cfg et huit bases, mesh_case_1 a "
    "mesh_case_8.\n"
    "  --blocs N    nombre de blocs de chaque base, de 8 a 1000000 (60 par defaut)\n"
    "  --graine S   entier positif ou nul qui fait varier les dimensions (1 par defaut)\n"
    "  --force      ecrit meme si DIR n'est pas vide, par-dessus ce qui s'y trouve\n"
    "  --version    affiche la version\n"
    "Les memes arguments donnent les memes octets.\n"
    "\n"
    "Chaque base existe en trois modes :\n"
    "  ext   une face du bord porte le code de sa surface, une arete ceux des surfaces touchees\n"
    "  nrm   comme ext, mais une arete n'a de codes que si deux surfaces au moins s'y rencontrent\n"
    "  min   ni codes sur les aretes, ni surfaces, ni projections\n"
    "\n"
    "Exemple :\n"
    "  make_cases cas --blocs 500\n"
    "\n"
    "Codes de retour : 0 collection ecrite, 1 arguments refuses, 2 fichier impossible a ecrire.\n";

struct Arguments {
  std::string dossier;
  gen::Num blocs = 60;
  std::uint64_t graine = 1;
  bool force = false;
};

/// A folder that is not there yet, too. What cannot be looked into may hold anything.
bool est_vide(const std::string& dossier) {
  std::error_code erreur;
  const bool rien =
      std::filesystem::directory_iterator(dossier, erreur) == std::filesystem::directory_iterator();
  return erreur ? erreur != std::errc::permission_denied : rien;
}

/// The whole text as a number, or nothing.
std::optional<std::uint64_t> entier(std::string_view texte) {
  std::uint64_t v = 0;
  const auto [fin, erreur] = std::from_chars(texte.data(), texte.data() + texte.size(), v);
  if (erreur != std::errc{} || fin != texte.data() + texte.size()) return {};
  return v;
}

/// Fills `a`; answers what is wrong, empty if nothing is.
std::string lire_arguments(int argc, char** argv, Arguments& a) {
  for (int i = 1; i < argc; ++i) {
    const std::string mot = argv[i];
    if (mot == "--blocs" || mot == "--graine") {
      if (++i == argc) return "il manque la valeur de " + mot;
      const std::string_view valeur = argv[i];
      const auto n = entier(valeur);
      const bool des_blocs = mot == "--blocs";
      const std::uint64_t min = des_blocs ? blocs_min : 0,
                          max = des_blocs ? blocs_max : std::numeric_limits<std::uint64_t>::max();
      if (!n || *n < min || *n > max)
        return mot + " attend un entier de " + std::to_string(min) + " a " + std::to_string(max) +
               ", pas '" + std::string(valeur) + "'";
      if (des_blocs)
        a.blocs = static_cast<gen::Num>(*n);
      else
        a.graine = *n;
    } else if (mot == "--force") {
      a.force = true;
    } else if (mot.starts_with('-')) {
      return "option inconnue " + mot;
    } else if (mot.empty() || !a.dossier.empty()) {
      return "il faut un seul dossier";
    } else {
      a.dossier = mot;
    }
  }
  return a.dossier.empty() ? "il faut un dossier" : "";
}

/// What an option that asks for words is answered with; empty when there is none.
std::string reponse(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view mot = argv[i];
    if (mot == "--help") return std::string(usage).append(aide);
    if (mot == "--version") return "make_cases " TOPOMINE_VERSION "\n";
  }
  return {};
}

}  // namespace

int main(int argc, char** argv) {
  if (const std::string dit = reponse(argc, argv); !dit.empty()) {
    if (std::cout << dit << std::flush) return 0;
    std::cerr << "make_cases : sortie standard impossible a ecrire\n";
    return 2;
  }
  Arguments a;
  if (const std::string refus = lire_arguments(argc, argv, a); !refus.empty()) {
    std::cerr << "make_cases : " << refus << '\n' << usage;
    return 1;
  }
  if (!a.force && !est_vide(a.dossier)) {
    std::cerr << "make_cases : " << a.dossier
              << " n'est pas vide ; --force ecrit par-dessus ce qui s'y trouve\n";
    return 1;
  }
  try {
    gen::ecrire_conditions(a.dossier);
    for (unsigned n = 0; n < gen::nb_formes; ++n) {
      const gen::Forme f = gen::forme(n, a.graine);
      gen::ecrire_base(a.dossier, "mesh_case_" + std::to_string(n + 1), f,
                       gen::mailler(f, a.blocs));
    }
  } catch (const std::exception& e) {
    std::cerr << "make_cases : " << e.what() << '\n';
    return 2;
  }
  return 0;
}
