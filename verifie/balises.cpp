#include "verifie/balises.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "base/lecture/limites_xml.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

constexpr std::string_view blancs = " \t\r\n\v\f";

/// A reading head that goes from tag to tag and keeps count of the lines.
class Balises {
 public:
  explicit Balises(std::string_view texte) : texte_(texte) {}

  std::optional<FauteOctets> chercher() {
    while (!faute_ && aller_au_chevron()) balise();
    if (!faute_ && !ouvertes_.empty()) fin_du_fichier();
    return std::move(faute_ ? faute_ : esperluette_);
  }

 private:
  struct Ouverte {
    std::string_view nom;
    int ligne;
    int pareille = 0;  // line of its first child of the same name
  };

  void signaler(int ligne, std::string quoi) {
    faute_ = {Code::xml_mal_forme, ligne, std::move(quoi)};
  }
  static std::string en(std::string_view balise, std::string_view nom, const char* fin = ">`") {
    return "`" + std::string(balise) + citer(nom) + fin;
  }
  static std::string ouverte(const Ouverte& o) {
    return en("<", o.nom) + " ouvert ligne " + std::to_string(o.ligne);
  }

  std::string_view reste() const { return texte_.substr(p_); }
  bool au_bout() const { return p_ >= texte_.size(); }
  bool voit(std::string_view mot) const { return reste().starts_with(mot); }

  void avancer(std::size_t n) {
    ligne_ += static_cast<int>(std::ranges::count(texte_.substr(p_, n), '\n'));
    p_ += n;
  }
  void sauter_blancs() { avancer(std::min(reste().find_first_not_of(blancs), reste().size())); }
  std::string_view nom() {
    std::size_t n = 0;
    while (n < reste().size() && (n == 0 ? commence_nom(reste()[0]) : continue_nom(reste()[n])))
      ++n;
    const std::string_view lu = reste().substr(0, n);
    avancer(n);
    return lu;
  }

  /// What is wrong with the "&" and what follows it, up to the end of the entity; empty for
  /// nothing.
  static std::string defaut(std::string_view entite) {
    if (entite.size() == 1) return "`&` isole, l'ecrire `&amp;`";
    if (entite[1] != '#') return {};
    const std::string_view chiffres = entite.substr(entite.find_first_not_of("&#x0"));
    const bool hexa = entite.size() > 2 && entite[2] == 'x';
    const std::uint64_t code = naturel_en_tete(chiffres, hexa ? 16 : 10).value_or(0);
    constexpr std::uint64_t code_max = std::numeric_limits<std::uint32_t>::max();
    if ((code >= ' ' && code <= code_max) ||
        (code >= '\t' && code <= '\r' && code != '\v' && code != '\f'))
      return {};
    return "`" + citer(entite) + "` n'est pas un caractere de XML";
  }

  /// To the next "<"; on the way, the first "&" that begins no character is kept in mind.
  bool aller_au_chevron() {
    const std::string_view entre = reste().substr(0, reste().find('<'));
    for (std::size_t i = entre.find('&'); i != std::string_view::npos && !esperluette_;
         i = entre.find('&', i + 1)) {
      const std::size_t fin = entre.find_first_not_of(
          "#abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", i + 1);
      const bool isolee = fin == i + 1 || fin == std::string_view::npos || entre[fin] != ';';
      if (std::string quoi = defaut(entre.substr(i, isolee ? 1 : fin + 1 - i)); !quoi.empty()) {
        const auto lignes = std::ranges::count(entre.substr(0, i), '\n');
        esperluette_ = {Code::xml_mal_forme, ligne_ + static_cast<int>(lignes), std::move(quoi)};
      }
    }
    avancer(entre.size());
    return !au_bout();
  }

  /// Past what begins with `debut` and ends with `fin`.
  void bloc(std::string_view debut, std::string_view fin, const char* quoi) {
    const std::size_t i = reste().find(fin, debut.size());
    if (i == std::string_view::npos)
      return signaler(ligne_, std::string(quoi) + " " + en(debut, "", "`") + " jamais ferme par `" +
                                  std::string(fin) + "`");
    avancer(i + fin.size());
  }

  void balise() {
    if (voit("<!--")) return bloc("<!--", "-->", "commentaire");
    if (voit("<![CDATA[")) return bloc("<![CDATA[", "]]>", "texte");
    if (voit("<?")) return bloc("<?", "?>", "declaration");
    if (voit("<!")) return bloc("<!", ">", "declaration");
    if (voit("</")) return fermante();
    avancer(1);
    if (au_bout() || !commence_nom(reste()[0])) return signaler(ligne_, "`<` isole");
    ouvrante();
  }

  void ouvrante() {
    const int ligne = ligne_;
    const std::string_view nom_lu = nom();
    for (;;) {
      sauter_blancs();
      if (voit("/>")) return avancer(2);
      if (voit(">")) break;
      if (au_bout() || !commence_nom(reste()[0]))
        return signaler(
            ligne, "balise " + en("<", nom_lu, "`") +
                       (au_bout() ? " coupee par la fin du fichier" : " jamais fermee par `>`"));
      if (!attribut(nom_lu)) return;
    }
    avancer(1);
    if (!ouvertes_.empty() && ouvertes_.back().nom == nom_lu && ouvertes_.back().pareille == 0)
      ouvertes_.back().pareille = ligne;
    ouvertes_.push_back({nom_lu, ligne});
  }

  bool attribut(std::string_view element) {
    const int ligne = ligne_;
    const std::string dit = "attribut `" + citer(nom()) + "` de " + en("<", element);
    sauter_blancs();
    if (!voit("=")) return signaler(ligne, dit + " sans valeur"), false;
    avancer(1);
    sauter_blancs();
    const char guillemet = au_bout() ? '\0' : reste()[0];
    if (guillemet != '"' && guillemet != '\'')
      return signaler(ligne, dit + " sans guillemets"), false;
    const std::size_t fin = reste().find(guillemet, 1);
    if (fin == std::string_view::npos || reste().substr(0, fin).find('<') != std::string_view::npos)
      return signaler(ligne, dit + " sans guillemet a la fin"), false;
    avancer(fin + 1);
    return true;
  }

  void fermante() {
    const int ligne = ligne_;
    avancer(2);
    const std::string_view nom_lu = nom();
    sauter_blancs();
    if (!voit(">"))
      return signaler(ligne, "balise de fin " + en("</", nom_lu, "`") + " jamais fermee par `>`");
    avancer(1);
    if (ouvertes_.empty()) return signaler(ligne, en("</", nom_lu) + " ne ferme rien");
    const Ouverte& o = ouvertes_.back();
    if (o.nom == nom_lu) return ouvertes_.pop_back();
    if (o.pareille > 0) return non_fermee(o);
    signaler(ligne,
             ouverte(o) + ", ferme par " + en("</", nom_lu) + " ligne " + std::to_string(ligne));
  }

  /// An element that contains its own name was probably not closed before it: no element of ours
  /// nests in itself.
  void non_fermee(const Ouverte& o) {
    signaler(o.pareille, ouverte(o) + ", pas ferme avant " + en("<", o.nom) + " ligne " +
                             std::to_string(o.pareille));
  }

  void fin_du_fichier() {
    for (const Ouverte& o : ouvertes_)
      if (o.pareille > 0) return non_fermee(o);
    signaler(ligne_, "fichier coupe, " + ouverte(ouvertes_.back()) + " jamais ferme");
  }

  std::string_view texte_;
  std::size_t p_ = 0;
  int ligne_ = 1;
  std::vector<Ouverte> ouvertes_;
  std::optional<FauteOctets> faute_, esperluette_;
};

}  // namespace

std::optional<FauteOctets> faute_xml(std::string_view texte) {
  return Balises(texte).chercher();
}

}  // namespace topomine
