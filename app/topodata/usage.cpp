#include "app/topodata/usage.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace topomine {

void sans_valeur_aux_drapeaux(CLI::App& commande) {
  for (CLI::Option* option : commande.get_options())
    if (option->get_expected_max() == 0) option->disable_flag_override();
}

void franciser(CLI::App& app) {
  app.set_help_flag("-h,--help", "Affiche cette aide");
  auto& mots = *app.get_formatter();
  for (const auto& [mot, traduit] : {std::pair{"Usage", "Usage"},
                                     {"Positionals", "Arguments"},
                                     {"Options", "Options"},
                                     {"OPTIONS", "OPTIONS"},
                                     {"Subcommands", "Commandes"},
                                     {"SUBCOMMAND", "COMMANDE"},
                                     {"SUBCOMMANDS", "COMMANDES"},
                                     {"REQUIRED", "OBLIGATOIRE"},
                                     {"Excludes", "Exclut"},
                                     {"Needs", "Demande"},
                                     {"TEXT", "TEXTE"},
                                     {"FLOAT", "REEL"},
                                     {"INT", "ENTIER"},
                                     {"UINT", "ENTIER"}})
    mots.label(mot, traduit);
}

namespace {

/// The pieces of a text that a pattern's # stand for; nothing when it is another text.
std::optional<std::vector<std::string>> lire_motif(std::string_view motif, std::string_view texte) {
  std::vector<std::string> morceaux;
  std::size_t diese = motif.find('#');
  if (!texte.starts_with(motif.substr(0, diese))) return std::nullopt;
  while (diese != std::string_view::npos) {
    texte.remove_prefix(std::min(diese, motif.size()));
    motif.remove_prefix(diese + 1);
    diese = motif.find('#');
    const std::string_view suite = motif.substr(0, diese);
    const std::size_t ici = diese == std::string_view::npos && texte.ends_with(suite)
                                ? texte.size() - suite.size()
                                : texte.find(suite);
    if (ici == std::string_view::npos) return std::nullopt;
    morceaux.emplace_back(texte.substr(0, ici));
    texte.remove_prefix(ici);
  }
  if (texte != motif) return std::nullopt;
  return morceaux;
}

/// What the parser says, # for what varies, and the same in French, $1 for the first of them.
constexpr std::pair<const char*, const char*> messages[]{
    {"A subcommand is required", "il manque une commande"},
    {"# is required", "il manque $1"},
    {"# excludes #", "$1 et $2 ne vont pas ensemble"},
    {"# requires #", "$1 ne va pas sans $2"},
    {"#: # required # missing", "$1 : il manque sa valeur"},
    {"#: At Most 1 required but received #", "$1 : une seule valeur est permise"},
    {"#: too many inputs for a flag", "$1 ne prend pas de valeur"},
    {"#: Should be true/false or a number", "$1 ne prend pas de valeur"},
    {"# was given a disallowed flag override", "--$1 ne prend pas de valeur"},
    {"#: attendu : #", "$1 : attendu : $2"},
    {"#: # not in {#}", "$1 : '$2' (attendu : $3)"},
    {"Could not convert: # = #", "$1 : valeur refusee : '$2'"},
    {"--#: #", "--$1 : $2"},
};

}  // namespace

std::string en_francais(const CLI::App& app, const CLI::Error& erreur) {
  const std::vector<std::string> restes = app.remaining(true);
  const auto inconnue =
      std::ranges::find_if(restes, [](const auto& r) { return r.starts_with('-'); });
  if (inconnue != restes.end()) return "option inconnue : '" + *inconnue + "'";
  if (!restes.empty()) return "argument de trop : '" + restes[0] + "'";
  for (const auto& [motif, francais] : messages) {
    const auto morceaux = lire_motif(motif, erreur.what());
    if (!morceaux) continue;
    std::string dit;
    for (std::string_view f = francais; !f.empty(); f.remove_prefix(1)) {
      if (f[0] == '$') {
        f.remove_prefix(1);
        dit += (*morceaux)[static_cast<std::size_t>(f[0] - '1')];
      } else {
        dit += f[0];
      }
    }
    return dit;
  }
  return erreur.what();
}

}  // namespace topomine
