#include "app/topodata/aide.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>

#include "texte/nombres.h"

namespace topomine {

namespace {

constexpr std::size_t largeur_habituelle = 80, largeur_min = 40;

/// Where the second and further lines of a broken line begin.
std::size_t retrait(const std::string& ligne) {
  const std::size_t debut = ligne.find_first_not_of(' ');
  if (debut == std::string::npos || debut == 0) return 0;
  const std::size_t blancs = ligne.find("  ", debut);
  const std::size_t suite =
      blancs == std::string::npos ? blancs : ligne.find_first_not_of(' ', blancs);
  return suite == std::string::npos ? debut : suite;
}

void replier_ligne(std::string ligne, std::size_t largeur, std::string& texte) {
  const std::size_t marge = std::min(retrait(ligne), largeur / 2);
  std::size_t debut = marge;  // no break in the margin itself
  while (ligne.size() > largeur) {
    std::size_t coupe = ligne.rfind(' ', largeur);
    // A word that is too long for a line stays whole.
    if (coupe == std::string::npos || coupe < debut + 1) coupe = ligne.find(' ', largeur);
    if (coupe == std::string::npos) break;
    const std::size_t reprise = ligne.find_first_not_of(' ', coupe);
    if (reprise == std::string::npos) break;
    texte.append(ligne, 0, ligne.find_last_not_of(' ', coupe) + 1) += '\n';
    ligne = std::string(marge, ' ') + ligne.substr(reprise);
    debut = marge;
  }
  texte += ligne += '\n';
}

class MiseEnPage : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string nom,
                        CLI::AppFormatMode mode) const override {
    return replier(Formatter::make_help(app, std::move(nom), mode), largeur_aide());
  }

  // The parser leaves one blank when a name just fits before its column: it would look like one
  // text.
  std::string make_option_opts(const CLI::Option* option) const override {
    std::string suite = Formatter::make_option_opts(option);
    const std::size_t nom = make_option_name(option, option->get_positional()).size();
    if (nom + suite.size() + 3 == get_column_width()) suite += ' ';
    return suite;
  }

  // Lines of a paragraph are joined; an indented one is an example, to be copied as it stands.
  std::string make_footer(const CLI::App* app) const override {
    std::istringstream lignes(app->get_footer());
    std::string texte;
    bool suite = false;
    for (std::string ligne; std::getline(lignes, ligne);) {
      const bool phrase = !ligne.empty() && ligne[0] != ' ';
      if (!texte.empty()) texte += suite && phrase ? ' ' : '\n';
      texte += ligne;
      suite = phrase && !ligne.ends_with(':') && !ligne.ends_with('.');
    }
    return texte.empty() ? texte : texte + '\n';
  }
};

struct TypeOption {
  std::string_view nom, type;
};

/// What the values of options are called, for those whose type alone says nothing.
constexpr auto types = std::to_array<TypeOption>({
    {"garde", "ATTRIBUTS"},
    {"cache", "ATTRIBUTS"},
    {"classe", "ATTRIBUT"},
    {"stratifie", "ATTRIBUT"},
    {"par", "COULEUR"},
    {"bases", "BASES"},
    {"avec", "DOSSIER"},
    {"CHEMIN", "DOSSIER"},
    {"MODE", "MODE"},
    {"modes", "MODES"},
    {"BASE", "BASE"},
    {"base-cgns", "NOM"},
    {"nom", "NOM"},
    {"sortie", "FICHIER"},
    {"image", "FICHIER"},
    {"sommes", "FICHIER"},
    {"depuis-sommes", "FICHIER"},
    {"codes", "FICHIER"},
    {"pieces", "FICHIER"},
    {"MAILLAGE", "FICHIER"},
    {"echelle", "FICHIER"},
    {"applique-echelle", "FICHIER"},
    {"epsilon", "NOMBRE"},
    {"plis", "K|bases"},
    {"explique", "CODE"},
    {"ignore", "CODES"},
    {"seulement", "GRAVITES"},
});

void nommer_type(CLI::Option& option) {
  if (option.get_type_size() == 0) return;  // a flag
  std::string nom = option.get_positional() ? option.get_name(true) : option.get_name();
  nom.erase(0, nom.find_first_not_of('-'));
  const auto* const trouve = std::ranges::find(types, nom, &TypeOption::nom);
  if (trouve != types.end())
    option.type_name(std::string(trouve->type));
  else if (option.get_type_name().starts_with("TEXT:{"))
    option.type_name("MOT");
  // The name of an argument says what it is.
  if (option.get_positional()) option.option_text(option.get_required() ? "OBLIGATOIRE" : " ");
}

}  // namespace

std::size_t largeur_aide() {
  std::size_t largeur = 0;
  if (const char* texte = std::getenv("COLUMNS")) {
    largeur = naturel_en_tete(texte).value_or(0);
  }
  winsize ecran{};
  if (largeur == 0 && ioctl(STDOUT_FILENO, TIOCGWINSZ, &ecran) == 0) largeur = ecran.ws_col;
  return largeur == 0 ? largeur_habituelle : std::max(largeur, largeur_min);
}

std::string replier(const std::string& texte, std::size_t largeur) {
  std::istringstream lignes(texte);
  std::string replie;
  bool exemple = false;
  for (std::string ligne; std::getline(lignes, ligne);) {
    // What follows a line that announces it is meant to be copied.
    if (!ligne.starts_with(' ')) exemple = ligne.ends_with(" :");
    if (exemple && ligne.starts_with(' '))
      replie += ligne += '\n';
    else
      replier_ligne(ligne, largeur, replie);
  }
  return replie;
}

void mettre_en_page(CLI::App& app) {
  const auto page = std::make_shared<MiseEnPage>();
  page->column_width(std::min<std::size_t>(30, largeur_aide() / 3));
  app.formatter(page);
}

void completer_commandes(CLI::App& app) {
  for (CLI::App* commande : app.get_subcommands({})) {
    commande->set_version_flag("--version", version, "Affiche la version");
    for (CLI::Option* option : commande->get_options()) nommer_type(*option);
  }
}

std::vector<std::string> developper_help(std::vector<std::string> mots) {
  if (mots.size() < 2 || mots[1] != "help") return mots;
  if (mots.size() == 2) return {mots[0], "--help"};
  if (mots.size() == 3 && !mots[2].starts_with('-')) return {mots[0], mots[2], "--help"};
  return mots;
}

}  // namespace topomine
