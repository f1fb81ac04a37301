#include "verifie/regles.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "dataset/schema.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

constexpr auto avertissement = Gravite::avertissement;
constexpr double ecart_max = 10.0;  // estimate of a volume over the exact one
constexpr int blocs_par_face = 2;
constexpr int type_min = 30, type_max = 39;
static_assert(schema[col_type].type == "{30,31,32,33,34,35,36,37,38,39}");

/// What the rules look at. A rule that needs a file that could not be read says nothing: one fault
/// is one finding.
struct Cas {
  Releve& r;
  const ReleveConfig& config;

  bool lus(std::initializer_list<Fichier> fichiers) const {
    return std::ranges::all_of(fichiers, [this](Fichier f) { return r.lus[f]; });
  }
  void signaler(Fichier f, const char* sorte, int numero, const std::string& quoi,
                const std::string& remede, Gravite gravite = Gravite::erreur) const {
    r.signaler(f, r.ligne(f, numero), sorte, std::to_string(numero), quoi, remede, gravite);
  }
};

/// How often each entity of `cibles` is named in the slots of `sources`; a name without its entity
/// is a finding.
template <class Sources, class Lire, class Cibles>
std::map<int, int> compter_references(const Cas& cas, Fichier f, const char* sorte,
                                      const Sources& sources, int nb, Lire lire, const char* quoi,
                                      const Cibles& cibles) {
  std::map<int, int> comptes;
  for (const auto& [numero, cible] : cibles) comptes.emplace_hint(comptes.end(), numero, 0);
  for (const auto& [numero, source] : sources) {
    for (int i = 0; i < nb; ++i) {
      const int n = lire(source, i);
      if (n <= 0) continue;
      if (const auto compte = comptes.find(n); compte != comptes.end())
        ++compte->second;
      else
        cas.signaler(f, sorte, numero,
                     std::string(quoi) + ' ' + std::to_string(n) + " n'existe pas",
                     "corriger ce numero ou ajouter ce qu'il designe");
    }
  }
  return comptes;
}

/// The entities that nothing names, and the faces that more than two blocks name.
void regle_comptes(const Cas& cas, Fichier f, const char* sorte, const std::map<int, int>& comptes,
                   const char* rien) {
  for (const auto& [numero, n] : comptes) {
    if (n == 0)
      cas.signaler(f, sorte, numero, rien, "l'enlever, ou corriger ce qui devait la designer",
                   avertissement);
    else if (f == fic_face && n > blocs_par_face)
      cas.signaler(f, sorte, numero, "sur " + std::to_string(n) + " blocs",
                   "une face a un bloc de chaque cote, deux au plus");
  }
}

void regle_references(const Cas& cas) {
  const Base& b = cas.r.base;
  if (cas.lus({fic_blck, fic_face}))
    regle_comptes(cas, fic_face, "face",
                  compter_references(
                      cas, fic_blck, "bloc", b.blocs, nb_faces_bloc,
                      [](const Block& x, int i) { return x._face(i); }, "face", b.faces),
                  "sur aucun bloc");
  if (cas.lus({fic_face, fic_edge}))
    regle_comptes(cas, fic_edge, "edge",
                  compter_references(
                      cas, fic_face, "face", b.faces, nb_edges_face,
                      [](const Face& x, int i) { return x._edge(i); }, "edge", b.edges),
                  "sur aucune face");
  if (cas.lus({fic_edge, fic_vrtx}))
    regle_comptes(cas, fic_vrtx, "vertex",
                  compter_references(
                      cas, fic_edge, "edge", b.edges, nb_vrtxs_edge,
                      [](const Edge& x, int i) { return x._vrtx(i); }, "vertex", b.vrtxs),
                  "sur aucune edge");
}

bool a_une_case_vide(const Base& base, const Block& bloc, int i, int j, int k) {
  for (const int slot : {place_face(i, 0), place_face(j, 1), place_face(k, 2)}) {
    const auto face = base.faces.find(bloc._face(slot));
    if (face == base.faces.end()) return true;
    for (int e = 0; e < nb_edges_face; ++e)
      if (face->second._edge(e) == 0) return true;
  }
  return false;
}

/// Corners that cannot be looked up: expected where a face or an edge shrank away, else a wrong
/// number in one of the three faces.
void regle_coins(const Cas& cas) {
  if (!cas.lus({fic_blck, fic_face, fic_edge})) return;
  for (const auto& [numero, bloc] : cas.r.base.blocs) {
    std::string perdus;
    bool degenere = true;
    for (int coin = 0; coin < 8; ++coin) {
      const int i = coin & 1, j = coin >> 1 & 1, k = coin >> 2;
      const int v = cas.r.base.blk_vrtx_ijk(numero, i, j, k);
      if (v > 0 || v == -3) continue;  // an entity that does not exist has been reported
      perdus += " (" + std::to_string(i) + "," + std::to_string(j) + "," + std::to_string(k) + ")";
      degenere = degenere && a_une_case_vide(cas.r.base, bloc, i, j, k);
    }
    if (!perdus.empty())
      cas.signaler(fic_blck, "bloc", numero,
                   "coins dont les trois faces n'ont pas de sommet commun :" + perdus,
                   degenere ? "normal si le bloc est degenere"
                            : "verifier l'ordre de ses faces et de leurs edges",
                   degenere ? avertissement : Gravite::erreur);
  }
}

std::string nombre(double v) {
  std::string texte;
  ajouter_nombre(texte, v);
  return texte;
}

void regle_blocs(const Cas& cas) {
  for (const auto& [numero, b] : cas.r.base.blocs) {
    const std::pair<const char*, double> volumes[]{{"Exact", b._volexa()},
                                                   {"Mor", b._volmor()},
                                                   {"Moyen", b._volmoy()},
                                                   {"NSMB", b._volnsm()}};
    for (const auto& [nom, v] : volumes) {
      if (v <= 0)
        cas.signaler(fic_blck, "bloc", numero,
                     std::string("volume ") + nom + " nul ou negatif : " + nombre(v),
                     "verifier l'orientation du bloc et recalculer ce volume");
      else if (b._volexa() > 0 && v > ecart_max * b._volexa())
        cas.signaler(fic_blck, "bloc", numero,
                     std::string("volume ") + nom + " (" + nombre(v) +
                         ") plus de 10 fois l'exact (" + nombre(b._volexa()) + ")",
                     "verifier l'un et l'autre", avertissement);
    }
    const std::string type = std::to_string(b._type());
    if (b._type() < type_min || b._type() > type_max)
      cas.signaler(fic_blck, "bloc", numero, "type " + type + " hors de 30 a 39",
                   "corriger son Type, la table ARFF n'en connait pas d'autre");
  }
}

/// One finding per unknown code and file, at the first entity that bears it.
template <class Entites>
void regle_codes(const Cas& cas, Fichier f, const char* sorte, const Entites& entites) {
  if (!cas.config.lue) return;
  struct Usage {
    int premier, nb;
  };
  std::map<int, Usage> inconnus;
  for (const auto& [numero, entite] : entites)
    for (int i = 0; i < entite.nb_BC(); ++i)
      if (!cas.config.codes.contains(entite._BC(i)))
        ++inconnus.try_emplace(entite._BC(i), Usage{numero, 0}).first->second.nb;
  for (const auto& [code, usage] : inconnus)
    cas.signaler(
        f, sorte, usage.premier,
        "code " + std::to_string(code) + " inconnu de climite.cfg" +
            (usage.nb > 1 ? ", " + std::to_string(usage.nb) + " fois dans ce fichier" : ""),
        "le corriger, ou l'ajouter a climite.cfg");
}

/// Families of the codes that at least one block sees on its faces or on their edges.
std::set<std::string> familles_vues(const Cas& cas) {
  std::set<int> codes;
  for (const auto& [numero, bloc] : cas.r.base.blocs) {
    for (const std::vector<int>& liste :
         {cas.r.base.BC_blk_face(numero), cas.r.base.BC_blk_edge(numero)})
      codes.insert(liste.begin(), liste.end());
  }
  std::set<std::string> familles;
  for (const int code : codes)
    if (const auto l = cas.config.codes.find(code); l != cas.config.codes.end())
      familles.insert(l->second.famille);
  return familles;
}

void regle_pieces(const Cas& cas) {
  if (!cas.config.lue) return;
  std::set<std::string> familles;
  for (const auto& [code, l] : cas.config.codes) familles.insert(l.famille);
  const bool mailles = cas.lus({fic_blck, fic_face, fic_edge});
  const std::set<std::string> vues = mailles ? familles_vues(cas) : familles;
  for (const auto& [famille, piece] : cas.r.base.pieces) {
    const bool c = piece._topology() == 'C';
    const int ligne = cas.r.lignes_pieces[famille];
    if (!familles.contains(famille))
      cas.r.signaler(fic_def, ligne, "piece", piece._nom(),
                     "famille '" + famille + "' qu'aucun code de climite.cfg ne porte",
                     "corriger la famille, ou l'ajouter a climite.cfg",
                     c ? Gravite::erreur : avertissement);
    else if (c && !vues.contains(famille))
      cas.r.signaler(fic_def, ligne, "piece", piece._nom(),
                     "famille '" + famille + "' d'une piece en C qu'aucun bloc ne voit",
                     "verifier les codes des faces qui la bordent", avertissement);
  }
}

}  // namespace

std::vector<Constat> verifier(Releve releve, const ReleveConfig& config) {
  const Cas cas{releve, config};
  regle_references(cas);
  regle_coins(cas);
  regle_blocs(cas);
  regle_codes(cas, fic_face, "face", releve.base.faces);
  regle_codes(cas, fic_edge, "edge", releve.base.edges);
  regle_pieces(cas);
  const auto rang = [&](const Constat& c) {
    return std::pair(std::ranges::find(releve.noms, c.fichier) - releve.noms.begin(), c.ligne);
  };
  std::ranges::stable_sort(releve.constats, {}, rang);
  return std::move(releve.constats);
}

std::vector<Constat> verifier(const ReleveConfig& config) {
  std::vector<Constat> constats = config.constats;
  for (const auto& [code, l] : config.codes)
    if (l.bccode && std::ranges::find(codes_comptes, *l.bccode) == codes_comptes.end())
      constats.push_back({config.nom, l.ligne, "code", std::to_string(code),
                          "BCCODE " + std::to_string(*l.bccode) + " qu'aucune colonne ne compte",
                          "prendre 1 a 13 ou 9999 s'il doit compter", avertissement});
  std::ranges::stable_sort(constats, {}, &Constat::ligne);
  return constats;
}

}  // namespace topomine
