#include "app/topodata/scene_dessin.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>

#include "app/topodata/une_base.h"
#include "base/conditions.h"
#include "dataset/caracteristiques.h"
#include "dataset/schema.h"
#include "texte/nombres.h"
#include "vtk/coins.h"

namespace topomine {

namespace {

constexpr Couleur blanc{1, 1, 1}, gris_paroi{0.80, 0.78, 0.74}, gris_contour{0.42, 0.40, 0.37},
    gris_trait{0.62, 0.65, 0.69}, orange{0.84, 0.33, 0.02};
constexpr auto couleurs_familles = std::to_array<Couleur>({{0.84, 0.33, 0.02},
                                                           {0.00, 0.45, 0.70},
                                                           {0.00, 0.60, 0.45},
                                                           {0.80, 0.40, 0.65},
                                                           {0.75, 0.60, 0.00},
                                                           {0.34, 0.71, 0.91},
                                                           {0.50, 0.30, 0.15},
                                                           {0.45, 0.25, 0.65},
                                                           {0.55, 0.70, 0.10},
                                                           {0.80, 0.10, 0.20},
                                                           {0.10, 0.40, 0.30},
                                                           {0.40, 0.40, 0.40}});

static_assert(sont_des_couleurs(couleurs_familles));

/// More blocks than these are drawn with each shared edge once, and only at the boundary: the eye
/// could not tell them apart.
constexpr std::size_t blocs_separes_max = 400, blocs_interieurs_max = 2000;

Vec milieu(const Base& base, const CoinsBloc& coins) {
  Vec m;
  for (const int v : coins) m = m + 0.125 * position(base, v);
  return m;
}

/// The value of each block, and its place on the scale from 0 to 1.
class EchelleBlocs {
 public:
  EchelleBlocs(const BaseBuffer& table, const std::string& attribut) {
    const std::size_t colonne = colonne_de(table, attribut, {"famille"});
    FluxNombres nombres;
    for (const auto& ligne : table._expl) {
      if (!est_un_reel(ligne.at(colonne)))
        throw Erreur("l'attribut '" + attribut + "' n'est pas un nombre partout : '" +
                     ligne[colonne] + "'");
      valeurs_.push_back(nombres.reel(ligne[colonne]));
    }
    const auto [min, max] = std::ranges::minmax(valeurs_);
    min_ = min;
    max_ = max;
    constexpr double rapport_max = 1e3;  // beyond, a linear scale shows the largest only
    logarithmique_ = min > 0 && max / min > rapport_max;
  }

  LegendeCas legende(const std::string& titre) const {
    return {titre, {{min_, max_}}, logarithmique_, {}};
  }

  Couleur couleur(std::size_t rang) const {
    const auto sur = [&](double v) { return logarithmique_ ? std::log(v) : v; };
    const double etendue = sur(max_) - sur(min_);
    const double t = etendue > 0 ? (sur(valeurs_[rang]) - sur(min_)) / etendue : 0.5;
    const double place = std::clamp(t, 0.0, 1.0) * (palette.size() - 1);
    const auto i = std::min(static_cast<std::size_t>(place), palette.size() - 2);
    return entre(palette[i], palette[i + 1], place - static_cast<double>(i));
  }

 private:
  std::vector<double> valeurs_;
  double min_ = 0, max_ = 0;
  bool logarithmique_ = false;
};

/// The families of the faces, each with its colour: walls first.
class Familles {
 public:
  explicit Familles(const Base& base) {
    // A name, one that is a wall's first, and the codes that stand for it.
    std::map<std::pair<bool, std::string>, std::vector<int>> noms;
    for (const auto& [numero, face] : base.faces)
      for (int i = 0; i < face.nb_BC(); ++i) {
        const auto [code, nouveau] = codes_.try_emplace(face._BC(i));
        if (!nouveau) continue;
        const ConditionLimite l = condition_limite(base, code->first);
        code->second.paroi = l.paroi;
        noms[{!l.paroi, nom_de(l)}].push_back(l.code);
      }
    std::map<std::string_view, Couleur> couleurs;
    for (const auto& [nom, codes] : noms) {
      const auto [place, nouveau] = couleurs.try_emplace(
          nom.second, couleurs_familles[couleurs.size() % couleurs_familles.size()]);
      if (nouveau) legende_.push_back({nom.second, place->second});
      for (const int code : codes) codes_.at(code).couleur = place->second;
    }
  }

  const std::vector<LegendeCas::Nom>& legende() const { return legende_; }

  /// The colour of a face: that of a wall, or else of its first family.
  std::optional<Couleur> couleur(const Face& face, bool& paroi) const {
    std::optional<Couleur> c;
    paroi = false;
    for (int i = 0; i < face.nb_BC(); ++i) {
      const Code& code = codes_.at(face._BC(i));
      if (!c || (code.paroi && !paroi)) c = code.couleur;
      paroi = paroi || code.paroi;
    }
    return c;
  }

 private:
  static std::string nom_de(const ConditionLimite& l) {
    return l.famille.empty() ? "code " + std::to_string(l.code) : l.famille;
  }

  struct Code {
    Couleur couleur{};
    bool paroi = false;
  };
  std::unordered_map<int, Code> codes_;
  std::vector<LegendeCas::Nom> legende_;
};

/// The twelve edges of a block, by corners i + 2j + 4k.
constexpr auto cotes_bloc = std::to_array<std::array<std::size_t, 2>>({{0, 1},
                                                                       {2, 3},
                                                                       {4, 5},
                                                                       {6, 7},
                                                                       {0, 2},
                                                                       {1, 3},
                                                                       {4, 6},
                                                                       {5, 7},
                                                                       {0, 4},
                                                                       {1, 5},
                                                                       {2, 6},
                                                                       {3, 7}});

bool au_bord(const Base& base, const Block& bloc) {
  for (int s = 0; s < 6; ++s) {
    const auto face = base.faces.find(bloc._face(s));
    if (face != base.faces.end() && face->second.nb_bloc() < 2) return true;
  }
  return false;
}

/// Blocks drawn apart from each other, a little smaller than they are, or with shared edges once.
template <class Peindre>
void traits_des_blocs(Scene& scene, const Base& base, Peindre peindre) {
  const bool separes = base.blocs.size() <= blocs_separes_max;
  const bool interieurs = base.blocs.size() <= blocs_interieurs_max;
  if (!interieurs)
    scene.manques.push_back("plus de " + std::to_string(blocs_interieurs_max) +
                            " blocs : seuls ceux du bord sont dessines");
  constexpr double retrait = 0.06;
  std::set<std::pair<int, int>> vus;
  std::size_t sans = 0, rang = 0;
  for (const auto& [numero, bloc] : base.blocs) {
    const auto [couleur, fort] = peindre(rang++, bloc);
    if (!interieurs && !au_bord(base, bloc)) continue;
    const auto coins = coins_bloc(base, bloc);
    if (!coins) {
      ++sans;
      continue;
    }
    const Vec centre = milieu(base, *coins);
    for (const auto& [a, b] : cotes_bloc) {
      const auto [v, w] = std::minmax((*coins)[a], (*coins)[b]);
      if (v == w || (!separes && !vus.emplace(v, w).second)) continue;
      const double t = separes ? retrait : 0;
      scene.traits.push_back({entre(position(base, v), centre, t),
                              entre(position(base, w), centre, t), couleur, fort});
    }
  }
  if (sans > 0)
    scene.manques.push_back(std::to_string(sans) +
                            " bloc(s) dont les coins ne se trouvent pas, non dessines");
}

/// The edges of the boundary in the colour of their family, the others grey.
void traits_des_familles(Scene& scene, const Base& base, const Familles& familles) {
  std::map<int, std::pair<Couleur, bool>> peints;
  for (const auto& [numero, face] : base.faces) {
    bool paroi = false;
    const auto couleur = familles.couleur(face, paroi);
    for (int p = 0; couleur && p < face.nb_edge(); ++p) {
      const auto [place, nouveau] = peints.try_emplace(face._edge(p), *couleur, paroi);
      if (paroi && !place->second.second) place->second = {*couleur, true};
    }
  }
  const bool interieurs = base.blocs.size() <= blocs_interieurs_max;
  if (!interieurs)
    scene.manques.push_back("plus de " + std::to_string(blocs_interieurs_max) +
                            " blocs : seules les edges du bord sont dessinees");
  for (const auto& [numero, edge] : base.edges) {
    const auto peint = peints.find(numero);
    const auto bouts = bouts_edge(base, numero);
    if (!bouts || (peint == peints.end() && !interieurs)) continue;
    const bool grise = peint == peints.end();
    scene.traits.push_back({position(base, (*bouts)[0]), position(base, (*bouts)[1]),
                            grise ? gris_trait : peint->second.first, !grise});
  }
}

void ajouter_parois(Scene& scene, const Base& base, const Familles& familles, bool par_famille) {
  for (const auto& [numero, face] : base.faces) {
    bool paroi = false;
    const auto couleur = familles.couleur(face, paroi);
    if (!paroi) continue;
    const auto coins = coins_face(base, face);
    if (!coins) continue;
    Paroi& p = scene.parois.emplace_back();
    for (std::size_t c = 0; c < 4; ++c) p.coins[c] = position(base, (*coins)[c]);
    // Lighter than the edges on it.
    p.couleur = par_famille ? entre(*couleur, blanc, 0.45) : gris_paroi;
    for (std::size_t c = 0; c < 4 && !par_famille; ++c)
      if ((*coins)[c] != (*coins)[(c + 1) % 4])
        scene.traits.push_back({p.coins[c], p.coins[(c + 1) % 4], gris_contour, false});
    if (face.nb_bloc() != 1) continue;
    if (const auto bloc = base.blocs.find(face._bloc(0)); bloc != base.blocs.end())
      if (const auto huit = coins_bloc(base, bloc->second)) p.bloc = milieu(base, *huit);
  }
}

}  // namespace

Scene scene_de(Base& base, const std::string& par) {
  Scene scene;
  const std::string& mode = base.type;
  scene.titre = base.nom + " (" + mode + "), " + std::to_string(base.blocs.size()) + " blocs";
  if (base.blocs.empty()) throw Erreur("rien a dessiner : " + base.nom + " n'a aucun bloc");
  const Familles familles(base);
  if (par == "famille") {
    scene.legende = {"famille", {}, false, familles.legende()};
    traits_des_familles(scene, base, familles);
  } else if (par == schema[col_TypeC].nom) {
    scene.legende = {par, {}, false, {{"topologie C", orange}, {"autres blocs", gris_trait}}};
    traits_des_blocs(scene, base, [](std::size_t, const Block& b) {
      return std::pair(b._typeC() ? orange : gris_trait, b._typeC());
    });
  } else {
    const EchelleBlocs echelle(table_de(base), par);
    scene.legende = echelle.legende(par);
    traits_des_blocs(scene, base, [&](std::size_t rang, const Block&) {
      return std::pair(echelle.couleur(rang), false);
    });
  }
  ajouter_parois(scene, base, familles, par == "famille");
  if (par != "famille" && !scene.parois.empty())
    scene.legende.noms.push_back({"paroi", gris_paroi});
  if (scene.traits.empty()) throw Erreur("rien a dessiner dans " + base.nom);
  return scene;
}

}  // namespace topomine
