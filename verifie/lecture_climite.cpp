#include <algorithm>
#include <cstddef>
#include <string_view>

#include "base/configuration.h"
#include "base/lecture/climite.h"
#include "texte/nombres.h"
#include "verifie/journal_constats.h"

namespace topomine {

namespace {

class Config {
 public:
  Config(ConfigLue& config, std::string_view texte) : r_(config), texte_(texte), l_(texte) {}

  void lire() {
    if (texte_.find_first_not_of(" \t\r") == std::string_view::npos)
      return signaler(Code::config_vide, "vide");
    while (l_.suivante()) {
      numero_.clear();
      lire_ligne();
      if (!utilisable_) return;
    }
    r_.lue = true;
  }

 private:
  void signaler(Code code, const std::string& quoi) {
    const std::string sorte = l_.numero() == 0 ? "fichier" : l_.numero() == 1 ? "entete" : "code";
    retenir(r_.constats, {code, r_.nom, std::max(l_.numero(), 1), sorte, numero_, quoi});
  }

  std::optional<std::string_view> champ(std::size_t rang) const {
    if (rang >= l_.champs().size()) return {};
    return l_.champs()[rang];
  }

  void lire_ligne() {
    if (!l_.finie() && l_.blanche()) return;
    const bool entete = l_.numero() == 1;
    if (const auto code = champ(rang_code_); code && !entete) numero_ = citer(*code);
    if (!l_.terminee()) signaler(Code::config_point_virgule, "dernier champ sans point-virgule");
    if (!l_.finie()) {
      signaler(Code::config_fin, "derniere ligne sans fin de ligne, elle est ignoree");
      utilisable_ = !entete;
    }
    if (entete)
      lire_entete();
    else if (l_.blanche())
      signaler(Code::config_ligne_vide, "ligne vide");
    else
      lire_rangee();
  }

  std::size_t colonne(std::string_view nom) {
    const auto trouve = std::ranges::find(colonnes_, nom);
    if (trouve == colonnes_.end())
      signaler(Code::config_colonne_absente, "pas de colonne " + std::string(nom));
    else if (std::find(trouve + 1, colonnes_.end(), nom) != colonnes_.end())
      signaler(Code::config_colonne_double, "colonne " + std::string(nom) + " donnee deux fois");
    return static_cast<std::size_t>(trouve - colonnes_.begin());
  }

  void lire_entete() {
    colonnes_ = l_.champs();
    rang_code_ = colonne(colonne_code);
    rang_bccode_ = colonne(colonne_bccode);
    rang_famille_ = colonne(colonne_famille);
    utilisable_ = utilisable_ && rang_code_ < colonnes_.size();
  }

  void lire_rangee() {
    if (l_.champs().size() < colonnes_.size() && l_.terminee())
      signaler(Code::config_courte,
               "ligne courte, les champs manquants gardent ceux de la ligne precedente");
    if (l_.champs().size() > colonnes_.size())
      signaler(Code::config_longue, "ligne longue, la configuration ne se charge pas");
    l_.compter();
    if (l_.demesure()) {
      signaler(Code::config_demesuree, "configuration trop grande, elle ne se charge pas");
      utilisable_ = false;
      return;
    }
    const auto texte_code = champ(rang_code_);
    if (!texte_code) return;
    const auto code = entier_strict(*texte_code);
    if (!code) {
      signaler(Code::config_code, std::string(colonne_code) + " n'est pas un entier");
      return;
    }
    ConfigLue::Ligne l{l_.numero(), {}, {}};
    l.famille = champ(rang_famille_).value_or("");
    if (const auto bccode = champ(rang_bccode_)) {
      l.bccode = entier_strict(*bccode);
      if (!l.bccode)
        signaler(Code::config_bccode, "BCCODE n'est pas un entier : " + entre_apostrophes(*bccode));
    }
    const auto [place, nouveau] = r_.codes.try_emplace(*code, l);
    if (nouveau) return;
    const bool pareil = place->second.bccode == l.bccode && place->second.famille == l.famille;
    signaler(pareil ? Code::config_code_repete : Code::config_code_remplace,
             "code deja donne ligne " + std::to_string(place->second.ligne) +
                 (pareil ? ", a l'identique" : ", celle-ci la remplace"));
    place->second = l;
  }

  ConfigLue& r_;
  std::string_view texte_;
  LignesClimite l_;
  bool utilisable_ = true;
  std::string numero_;
  std::vector<std::string_view> colonnes_;
  std::size_t rang_code_ = 0, rang_bccode_ = 0, rang_famille_ = 0;
};

}  // namespace

void lire_config_strict(ConfigLue& config, std::string_view texte) {
  Config(config, texte).lire();
}

ConfigLue lire_config(const std::string& chemin) {
  ConfigLue config;
  config.nom = chemin + "climite.cfg";
  std::string texte;
  if (const Lecture lecture = lire_fichier(config.nom, texte); lecture == Lecture::faite)
    lire_config_strict(config, texte);
  else
    config.constats.push_back({code_de(lecture), config.nom, 1, "fichier", "",
                               std::string(texte_de(lecture)) + ", aucun code n'est connu"});
  return config;
}

}  // namespace topomine
