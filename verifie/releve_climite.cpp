#include <algorithm>
#include <cstddef>
#include <string_view>

#include "base/lecture/fichier.h"
#include "verifie/lecteur_strict.h"
#include "verifie/releve.h"

namespace topomine {

namespace {

constexpr char col_code[] = "Damas code", col_bccode[] = "BCCODE", col_famille[] = "Family";

class Config {
 public:
  explicit Config(ReleveConfig& r) : r_(r) {}

  void lire(std::string_view texte) {
    if (texte.find_first_not_of(" \t\r") == std::string_view::npos)
      return signaler("vide", "y mettre au moins la ligne des noms de colonnes");
    while (!texte.empty()) {
      const std::size_t fin = texte.find('\n');
      ++ligne_;
      numero_.clear();
      lire_ligne(texte.substr(0, fin), fin != std::string_view::npos);
      if (!utilisable_) return;
      texte.remove_prefix(fin == std::string_view::npos ? texte.size() : fin + 1);
    }
    r_.lue = true;
  }

 private:
  void signaler(const std::string& quoi, const std::string& remede,
                Gravite gravite = Gravite::erreur) {
    const std::string sorte = ligne_ == 0 ? "fichier" : ligne_ == 1 ? "entete" : "code";
    r_.constats.push_back({r_.nom, std::max(ligne_, 1), sorte, numero_, quoi, remede, gravite});
  }

  void lire_ligne(std::string_view texte, bool finie) {
    const bool blanche = texte.find_first_not_of(" \t\r") == std::string_view::npos;
    if (!finie && blanche) return;
    champs_.clear();
    for (std::size_t fin; (fin = texte.find(';')) != std::string_view::npos;) {
      clear_blk(champs_.emplace_back(texte.substr(0, fin)));
      texte.remove_prefix(fin + 1);
    }
    if (!champs_.empty() && ligne_ > 1 && rang_code_ < champs_.size())
      numero_ = champs_[rang_code_];
    terminee_ = texte.find_first_not_of(" \t\r") == std::string_view::npos;
    if (!terminee_) signaler("dernier champ sans point-virgule", "terminer la ligne par ';'");
    if (!finie) {
      signaler("derniere ligne sans fin de ligne, elle est ignoree",
               "finir le fichier par une fin de ligne");
      utilisable_ = ligne_ > 1;
    }
    if (ligne_ == 1)
      lire_entete();
    else if (blanche)
      signaler("ligne vide", "l'enlever", Gravite::avertissement);
    else
      lire_rangee();
  }

  std::size_t colonne(const char* nom) {
    const auto trouve = std::ranges::find(colonnes_, nom);
    if (trouve == colonnes_.end())
      signaler(std::string("pas de colonne ") + nom, "l'ajouter, sans blanc avant son ';'");
    else if (std::find(trouve + 1, colonnes_.end(), nom) != colonnes_.end())
      signaler(std::string("colonne ") + nom + " donnee deux fois", "n'en garder qu'une");
    return static_cast<std::size_t>(trouve - colonnes_.begin());
  }

  void lire_entete() {
    colonnes_ = champs_;
    rang_code_ = colonne(col_code);
    rang_bccode_ = colonne(col_bccode);
    rang_famille_ = colonne(col_famille);
    utilisable_ = utilisable_ && rang_code_ < colonnes_.size();
  }

  void lire_rangee() {
    if (champs_.size() < colonnes_.size() && terminee_)
      signaler("ligne courte, les champs manquants gardent ceux de la ligne precedente",
               "donner un champ par colonne");
    if (champs_.size() > colonnes_.size())
      signaler("ligne longue, la configuration ne se charge pas", "donner un champ par colonne");
    if (rang_code_ >= champs_.size()) return;
    const auto code = entier_strict(champs_[rang_code_]);
    if (!code) {
      signaler(std::string(col_code) + " n'est pas un entier", "y mettre un entier seul");
      return;
    }
    ReleveConfig::Ligne l{ligne_, {}, {}};
    if (rang_famille_ < champs_.size()) l.famille = champs_[rang_famille_];
    if (rang_bccode_ < champs_.size()) {
      l.bccode = entier_strict(champs_[rang_bccode_]);
      if (!l.bccode)
        signaler("BCCODE n'est pas un entier : '" + champs_[rang_bccode_] + "'",
                 "y mettre un entier seul, sinon le compte va au code precedent");
    }
    const auto [place, nouveau] = r_.codes.try_emplace(*code, l);
    if (nouveau) return;
    const bool pareil = place->second.bccode == l.bccode && place->second.famille == l.famille;
    signaler("code deja donne ligne " + std::to_string(place->second.ligne) +
                 (pareil ? ", a l'identique" : ", celle-ci la remplace"),
             "n'en garder qu'une", pareil ? Gravite::avertissement : Gravite::erreur);
    place->second = l;
  }

  ReleveConfig& r_;
  int ligne_ = 0;
  bool utilisable_ = true;
  bool terminee_ = true;  // the line under way ends with its ";"
  std::string numero_;
  std::vector<std::string> champs_, colonnes_;
  std::size_t rang_code_ = 0, rang_bccode_ = 0, rang_famille_ = 0;
};

}  // namespace

void relever_texte(ReleveConfig& r, std::string_view texte) {
  Config(r).lire(texte);
}

ReleveConfig relever_config(const std::string& chemin) {
  ReleveConfig r;
  r.nom = chemin + "climite.cfg";
  std::string texte;
  switch (lire_fichier(r.nom, texte)) {
    case Lecture::absente:
      r.constats.push_back({r.nom, 1, "fichier", "", "absent, aucun code n'est connu",
                            "le mettre dans le dossier des cas", Gravite::erreur});
      break;
    case Lecture::impossible:
      r.constats.push_back({r.nom, 1, "fichier", "", "n'est pas un fichier lisible",
                            "mettre un fichier texte a sa place", Gravite::erreur});
      break;
    case Lecture::faite:
      relever_texte(r, texte);
      break;
  }
  return r;
}

}  // namespace topomine
