#include "cgns/scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <utility>

#include "mesh/numbering.h"

namespace topomine {

namespace {

constexpr std::size_t cotes = 4;
constexpr double cosinus_demi_tour = -0.17364817766693033;  // 100 degrees
constexpr double cosinus_c90 = 0.3826834323650898;          // 67.5 degrees

class Scene {
 public:
  Scene(const Structure& s, const Decoupage& d, const std::vector<MesuresZone>& mesures,
        const Familles& familles, const Topologie& t)
      : s_(s), d_(d), mesures_(mesures), familles_(familles), t_(t) {}

  SceneSuggeree executer() {
    for (const FaceTopo& f : t_.faces)
      for (const std::size_t famille : f.familles)
        if (familles_.liste[famille].bccode == bccode_paroi) {
          parois_[famille].push_back(f.morceau);
          scene_.parois.couvrir(mesure(f.morceau).boite);
        }
    for (const auto& [famille, morceaux] : parois_) {
      const std::string& nom = familles_.liste[famille].nom;
      scene_.pieces.push_back(
          {sans_prefixe(nom), nom, lettre(morceaux), static_cast<int>(morceaux.size())});
    }
    chercher_raccords();
    return std::move(scene_);
  }

 private:
  /// A piece of wall entered by one of its sides.
  struct Pas {
    std::size_t morceau, entree;
    friend auto operator<=>(const Pas&, const Pas&) = default;
  };

  const MesuresMorceau& mesure(std::size_t m) const {
    const std::size_t zone = d_.morceaux[m].zone;
    return mesures_[zone].morceaux[m - d_.debut(zone, 0)];
  }

  static std::string sans_prefixe(const std::string& nom) {
    constexpr std::string_view prefixe = "paroi_";
    return nom.starts_with(prefixe) && nom.size() > prefixe.size() ? nom.substr(prefixe.size())
                                                                   : nom;
  }

  char lettre(const std::vector<std::size_t>& morceaux) {
    cotes_.clear();
    for (const std::size_t m : morceaux)
      for (std::size_t c = 0; c < cotes; ++c)
        cotes_.emplace(std::pair{d_.morceaux[m].zone,
                                 cote_de_morceau(d_.morceaux[m].plage, d_.morceaux[m].place, c)},
                       Pas{m, c});
    char resultat = 'H';
    std::set<Pas> vus;
    // From the ends of open rows first, so that each is walked from end to end; what is left then
    // is closed.
    for (const bool depuis_un_bout : {true, false})
      for (const std::size_t m : morceaux)
        for (std::size_t entree = 0; entree < cotes; ++entree) {
          const Pas debut{m, entree};
          if (vus.contains(debut) || (depuis_un_bout && suivant(m, entree, nullptr))) continue;
          const char rangee = parcourir(debut, vus);
          if (rangee == 'C') return 'C';
          if (rangee == 'O') resultat = 'O';
        }
    return resultat;
  }

  char parcourir(Pas pas, std::set<Pas>& vus) const {
    const Pas debut = pas;
    const Vec premiere = mesure(pas.morceau).normales_cotes[pas.entree];
    bool tourne = false;
    while (vus.insert(pas).second) {
      const std::size_t sortie = (pas.entree + 2) % cotes;
      for (const std::size_t c : {pas.entree, sortie})
        tourne =
            tourne || scalaire(premiere, mesure(pas.morceau).normales_cotes[c]) < cosinus_demi_tour;
      if (!suivant(pas.morceau, sortie, &pas)) return tourne ? 'C' : 'H';
    }
    return pas == debut ? 'O' : 'H';
  }

  /// The piece of the same wall behind a side, where there is one whose block shares the face
  /// there.
  bool suivant(std::size_t m, std::size_t cote, Pas* la) const {
    const Morceau& morceau = d_.morceaux[m];
    const Plage ligne = cote_de_morceau(morceau.plage, morceau.place, cote);
    if (mesure(m).cotes_ecrases[cote]) return false;
    const std::size_t axe = axes_lm[static_cast<std::size_t>(morceau.place % 3)][cote % 2];
    const Indice bord = cote / 2 ? s_.zones[morceau.zone].taille[axe] : 1;
    if (ligne.min[axe] != bord) return trouver(morceau.zone, ligne, {m, cote}, la);
    const int voisine = place_face(static_cast<int>(cote / 2), static_cast<int>(axe));
    for (std::size_t n = d_.debut(morceau.zone, voisine); n < d_.fin(morceau.zone, voisine); ++n) {
      const Morceau& entre = d_.morceaux[n];
      if (entre.jonction == aucun || !entre.plage.contient(ligne)) continue;
      const Jonction& j = s_.jonctions[entre.jonction];
      const bool aller = j.zone == entre.zone && j.plage == entre.plage;
      const Plage image = aller ? j.passage(ligne) : j.passage.inverse()(ligne);
      return trouver(aller ? j.voisine : j.zone, image, {m, cote}, la);
    }
    return false;
  }

  /// Not the side one comes from; another of the same piece where a block meets itself.
  bool trouver(std::size_t zone, const Plage& ligne, const Pas& sauf, Pas* la) const {
    const auto [debut, fin] = cotes_.equal_range({zone, ligne});
    for (auto it = debut; it != fin; ++it) {
      if (it->second == sauf) continue;
      if (la) *la = it->second;
      return true;
    }
    return false;
  }

  void chercher_raccords() {
    struct Contact {
      std::size_t famille;
      Vec normale;
    };
    std::vector<std::vector<Contact>> contacts(t_.edges.size());
    for (const FaceTopo& f : t_.faces)
      for (const std::size_t famille : f.familles)
        for (std::size_t c = 0; c < cotes && parois_.contains(famille); ++c)
          if (f.edges[c] > 0)
            contacts[static_cast<std::size_t>(f.edges[c]) - 1].push_back(
                {famille, mesure(f.morceau).normales_cotes[c]});
    std::map<std::pair<std::size_t, std::size_t>, std::pair<double, int>> paires;
    for (const auto& liste : contacts)
      for (const Contact& a : liste)
        for (const Contact& b : liste)
          if (a.famille < b.famille) {
            auto& [somme, nb] = paires[{a.famille, b.famille}];
            somme += scalaire(a.normale, b.normale);
            ++nb;
          }
    for (const auto& [paire, cosinus] : paires)
      scene_.raccords.push_back({sans_prefixe(familles_.liste[paire.first].nom),
                                 sans_prefixe(familles_.liste[paire.second].nom),
                                 cosinus.first <= cosinus.second * cosinus_c90 ? "C90" : "C45"});
  }

  const Structure& s_;
  const Decoupage& d_;
  const std::vector<MesuresZone>& mesures_;
  const Familles& familles_;
  const Topologie& t_;
  std::map<std::size_t, std::vector<std::size_t>> parois_;   // family to pieces of wall
  std::multimap<std::pair<std::size_t, Plage>, Pas> cotes_;  // of one wall's pieces
  SceneSuggeree scene_;
};

}  // namespace

SceneSuggeree suggerer_scene(const Structure& s, const Decoupage& d,
                             const std::vector<MesuresZone>& mesures, const Familles& familles,
                             const Topologie& t) {
  return Scene(s, d, mesures, familles, t).executer();
}

}  // namespace topomine
