#include "verifie/regles.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

#include "dataset/schema.h"
#include "texte/nombres.h"
#include "verifie/catalogue.h"
#include "verifie/examen.h"
#include "verifie/journal_constats.h"

namespace topomine {

namespace {

/// The order matters: see Examen.
constexpr Regle regles[]{
    regle_references,   regle_tours,         regle_assemblage,   regle_comptes,
    regle_codes_connus, regle_codes_de_face, regle_codes_d_edge, regle_types,
    regle_projections,  regle_confondus,     regle_volumes,      regle_pieces,
};

/// Reading findings and rule findings on one entity: only the more severe stays, with the other's
/// text in brackets if it came from elsewhere.
void joindre_lecture(std::vector<Constat>& constats) {
  std::map<std::tuple<std::string, std::string, std::string>, std::size_t> lus;
  const auto cle = [](const Constat& c) { return std::tuple(c.fichier, c.sorte, c.numero); };
  std::vector<bool> tus(constats.size());
  for (std::size_t i = 0; i < constats.size(); ++i) {
    const Fiche& f = fiche(constats[i].code);
    if (f.origine != Origine::lecture) continue;
    const auto [place, nouveau] = lus.try_emplace(cle(constats[i]), i);
    const std::size_t autre = place->second;
    const Gravite sienne = fiche(constats[autre].code).gravite;
    // An element that is not read and one that is missing are one.
    if (nouveau || f.gravite == sienne) continue;
    const bool pire = f.gravite > sienne;
    constats[pire ? i : autre].quoi += " (" + constats[pire ? autre : i].quoi + ")";
    tus[pire ? autre : i] = true;
    if (pire) place->second = i;
  }
  if (lus.empty()) return;
  for (std::size_t i = 0; i < constats.size(); ++i) {
    const Fiche& f = fiche(constats[i].code);
    const auto lu = lus.find(cle(constats[i]));
    if (lu == lus.end() || (f.origine != Origine::regle && f.origine != Origine::ensemble))
      continue;
    const Constat& cause = constats[lu->second];
    if (f.gravite > fiche(cause.code).gravite) {
      constats[i].quoi += " (" + cause.quoi + ")";
      tus[lu->second] = true;
    } else {
      tus[i] = true;
    }
  }
  std::size_t i = 0;
  std::erase_if(constats, [&](const Constat&) { return tus[i++]; });
}

/// Each cause once: what follows from another finding goes.
void elaguer(std::vector<Constat>& constats) {
  const auto a = [&](Code code) {
    return std::ranges::find(constats, code, &Constat::code) != constats.end();
  };
  if (a(Code::liens_d_un_autre_cas) || a(Code::positions_d_un_autre_cas))
    std::erase_if(constats,
                  [](const Constat& c) { return fiche(c.code).origine == Origine::ensemble; });
  if (a(Code::code_inconnu))  // a row that is gone takes the family with it
    std::erase_if(constats, [](const Constat& c) {
      return c.code == Code::famille_inconnue || c.code == Code::famille_c_inconnue;
    });
  if (a(Code::scene_d_un_autre_cas))
    std::erase_if(constats, [](const Constat& c) { return c.code == Code::nom_d_une_autre_base; });
  joindre_lecture(constats);
}

void scene_d_une_autre(CasLu& r, Voisinage& v) {
  const std::string nom = r.base.avion._name();
  if (nom.empty()) return;
  const auto [place, premiere] = v.noms.try_emplace(nom, r.base.nom);
  const bool autre =
      nom != r.base.nom && (std::ranges::find(v.bases, nom) != v.bases.end() ||
                            std::ranges::find(bases_integrees, nom) != bases_integrees.end());
  if (!autre && (premiere || place->second == r.base.nom)) return;
  r.signaler(
      Code::nom_d_une_autre_base, fic_def, r.ligne_avion("name"), "reference_avion", "",
      "name " + entre_apostrophes(nom) + " est celui de la base " + (autre ? nom : place->second));
}

void mesures_negatives(CasLu& r) {
  const Avion& a = r.base.avion;
  std::string dit;
  int ligne = 1;
  for (const auto& [nom, v] : {std::pair{"fuse_length", a._fuse_length()},
                               {"fuse_width", a._fuse_width()},
                               {"height", a._height()},
                               {"wing_span", a._wing_span()},
                               {"corde", a._corde()},
                               {"wing_area", a._wing_area()},
                               {"nb_engine", static_cast<double>(a._nb_engine())}})
    if (v < 0) {
      if (dit.empty()) ligne = r.ligne_avion(nom);
      dit += (dit.empty() ? "" : ", ") + std::string(nom) + ' ' + en_texte(v);
    }
  if (!dit.empty())
    r.signaler(Code::mesure_negative, fic_def, ligne, "reference_avion", "", dit + " negatif");
}

/// In most configurations a code is a hundred times its BCCODE plus a rank, and one family has one
/// BCCODE: a row that alone does otherwise is a slip.
void codes_isoles(const ConfigLue& config, std::vector<Constat>& constats) {
  std::map<std::string, std::map<int, std::size_t>> par_famille;
  std::size_t nb = 0, centieme = 0;
  constexpr int sans_condition = 9999;
  for (const auto& [code, l] : config.codes) {
    if (!l.bccode || *l.bccode == sans_condition) continue;
    ++nb;
    centieme += code / 100 == *l.bccode;
    ++par_famille[l.famille][*l.bccode];
  }
  const bool regle = nb >= 4 && (nb - centieme) * 10 <= nb;
  for (const auto& [code, l] : config.codes) {
    if (!l.bccode || *l.bccode == sans_condition) continue;
    const auto& famille = par_famille[l.famille];
    const bool seul = famille.size() > 1 && famille.at(*l.bccode) == 1;
    if (!(regle && code / 100 != *l.bccode) && !(seul && !regle)) continue;
    constats.push_back({Code::config_isole, config.nom, l.ligne, "code", std::to_string(code),
                        "BCCODE " + std::to_string(*l.bccode) +
                            (regle ? ", les autres lignes ont le centieme du code"
                                   : ", les autres lignes de sa famille en ont un autre")});
  }
}

}  // namespace

std::vector<Constat> verifier(CasLu& cas, Voisinage& voisinage) {
  scene_d_une_autre(cas, voisinage);
  mesures_negatives(cas);
  Examen examen(cas, voisinage.config);
  for (const Regle regle : regles) regle(examen);
  const auto rang = [&](const Constat& c) {
    return std::pair(std::ranges::find(cas.noms, c.fichier) - cas.noms.begin(), c.ligne);
  };
  elaguer(cas.constats);
  preciser_lignes(cas);
  std::ranges::stable_sort(cas.constats, {}, rang);
  return std::move(cas.constats);
}

std::vector<Constat> verifier(const ConfigLue& config) {
  std::vector<Constat> constats = config.constats;
  for (const auto& [code, l] : config.codes)
    if (l.bccode && std::ranges::find(codes_comptes, *l.bccode) == codes_comptes.end())
      constats.push_back({Code::config_non_compte, config.nom, l.ligne, "code",
                          std::to_string(code),
                          "BCCODE " + std::to_string(*l.bccode) + " qu'aucune colonne ne compte"});
  if (constats.empty()) codes_isoles(config, constats);
  std::ranges::stable_sort(constats, {}, &Constat::ligne);
  return constats;
}

}  // namespace topomine
