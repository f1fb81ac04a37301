#include "app/topodata/parts.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <map>
#include <set>

#include "app/topodata/attributs.h"
#include "app/topodata/console.h"
#include "dataset/arff.h"
#include "dataset/partage.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

void controler_options(const OptionsPartage& o) {
  if (trouver_endroit(o.prefixe).flux >= 0)
    throw Erreur("partage ecrit plusieurs fichiers : -o y donne le debut de leurs noms");
  const bool plis = o.plis || o.un_pli_par_base;
  if (o.ratio.has_value() == plis)
    throw Erreur(plis ? "--ratio et --plis s'excluent : les plis fixent la part de chaque partie"
                      : "donner --ratio (deux parties) ou --plis (autant de paires)");
  if (o.un_pli_par_base && !o.stratifie.empty())
    throw Erreur("--plis bases et --stratifie s'excluent : chaque base est un essai a elle seule");
  if (o.melange && o.sans_melange) throw Erreur("--melange et --sans-melange s'excluent");
  if (o.sans_melange && o.graine && !o.par_base)
    throw Erreur("--sans-melange et --graine s'excluent : rien n'est tire au sort");
  if (o.stratifie.empty()) return;
  std::vector<std::string> noms, nominaux;
  for (const Attribut& a : schema) {
    noms.emplace_back(a.nom);
    if (valeurs_nominales(a.type)) nominaux.emplace_back(a.nom);
  }
  exiger_attribut(o.stratifie, noms);
  if (std::ranges::find(nominaux, o.stratifie) == nominaux.end())
    throw Erreur("--stratifie : '" + o.stratifie +
                 "' n'est pas nominal (attendu : " + enumerer(nominaux) + ")");
}

/// A number for each value of a column, in order of first appearance.
std::vector<int> numeroter_valeurs(const BaseBuffer& table, int col) {
  std::map<std::string, int> numeros;
  std::vector<int> strates;
  for (const auto& e : table._expl)
    strates.push_back(
        numeros.try_emplace(e.at(static_cast<std::size_t>(col)), static_cast<int>(numeros.size()))
            .first->second);
  return strates;
}

/// The bases that have examples, and how these lie in them.
struct Groupes {
  std::vector<const Provenance*> bases;
  std::vector<std::size_t> du_rang;  ///< group of each example
  Effectifs effectifs;

  Groupes(const BaseBuffer& table, const std::vector<Provenance>& liste,
          const std::vector<int>& strates) {
    std::set<std::string> presents;
    for (const auto& e : table._expl) presents.insert(e[col_Num_Base]);
    std::map<std::string, std::size_t> par_numero;
    for (const Provenance& p : liste) {
      const std::string numero = std::to_string(p.numero);
      if (!presents.contains(numero)) continue;
      par_numero[numero] = bases.size();
      bases.push_back(&p);
    }
    const int nb = *std::ranges::max_element(strates) + 1;
    effectifs.assign(bases.size(), std::vector<std::size_t>(static_cast<std::size_t>(nb)));
    for (std::size_t i = 0; i < strates.size(); ++i) {
      du_rang.push_back(par_numero.at(table._expl[i][col_Num_Base]));
      ++effectifs[du_rang[i]][static_cast<std::size_t>(strates[i])];
    }
  }
};

/// The fold whose test part each example is in; one fold, 0, for a split by ratio, whose first part
/// is -1.
struct Repartition {
  std::vector<int> pli;
  int nb_plis = 1;
};

int nb_plis(const OptionsPartage& o, std::size_t nb, const char* quoi) {
  const int plis = o.un_pli_par_base ? static_cast<int>(nb) : *o.plis;
  if (static_cast<std::size_t>(plis) > nb || nb < 2)
    throw Erreur("--plis " + (o.plis ? std::to_string(*o.plis) : std::string("bases")) +
                 " : il y a trop peu " + quoi + " (" + std::to_string(nb) +
                 ") ; chaque pli en veut au moins un a l'essai, et il faut deux plis");
  return plis;
}

Repartition repartir_bases(const OptionsPartage& o, const Groupes& groupes) {
  const std::size_t nb = groupes.bases.size();
  std::vector<int> du_groupe;
  Repartition r;
  if (o.ratio) {
    if (nb < 2 || !(*o.ratio > 0 && *o.ratio < 1))
      throw Erreur(
          "--par-base --ratio " + en_texte(*o.ratio) +
          " : une partie est vide ; il faut deux bases au moins, et un nombre entre 0 et 1");
    for (const bool premiere : groupes_de_la_premiere(groupes.effectifs, *o.ratio))
      du_groupe.push_back(premiere ? -1 : 0);
  } else {
    r.nb_plis = nb_plis(o, nb, "de bases");
    if (o.un_pli_par_base)
      for (int g = 0; g < r.nb_plis; ++g) du_groupe.push_back(g);
    else
      du_groupe = plis_par_groupe(groupes.effectifs, r.nb_plis);
  }
  for (const std::size_t g : groupes.du_rang) r.pli.push_back(du_groupe[g]);
  return r;
}

Repartition repartir_exemples(const OptionsPartage& o, const std::vector<int>& strates) {
  Repartition r;
  if (o.plis) {
    r.nb_plis = nb_plis(o, strates.size(), "d'exemples");
    r.pli = plis_par_strate(strates, r.nb_plis);
    return r;
  }
  for (const bool premiere : premiers_par_strate(strates, *o.ratio))
    r.pli.push_back(premiere ? -1 : 0);
  for (const int cote : {-1, 0})
    if (std::ranges::find(r.pli, cote) == r.pli.end())
      throw Erreur("--ratio " + en_texte(*o.ratio) + " : la " +
                   (cote < 0 ? "premiere" : "seconde") + " partie est vide (" +
                   std::to_string(strates.size()) + " exemples)");
  return r;
}

/// The examples whose part is the wanted one; only the rows of folds are needed again.
BaseBuffer partie(BaseBuffer& table, const Repartition& r, int pli, bool essai) {
  BaseBuffer t;
  for (std::size_t i = 0; i < r.pli.size(); ++i) {
    if ((r.pli[i] == pli) != essai) continue;
    if (r.nb_plis == 1)
      t._expl.push_back(std::move(table._expl[i]));
    else
      t._expl.push_back(table._expl[i]);
  }
  return t;
}

/// FILE.csv becomes FILE_pli2.csv.
std::string nom_du_pli(const std::string& fichier, const std::string& suffixe) {
  const std::size_t point = fichier.rfind('.');
  if (point == std::string::npos || fichier.find('/', point) != std::string::npos)
    return fichier + suffixe;
  return fichier.substr(0, point) + suffixe + fichier.substr(point);
}

/// The bases of a part, by name, and how many examples they have together.
std::string dire_la_partie(const Groupes& groupes, const Repartition& r, int pli, bool essai,
                           std::size_t& exemples) {
  std::vector<bool> prises(groupes.bases.size());
  exemples = 0;
  for (std::size_t i = 0; i < r.pli.size(); ++i) {
    if ((r.pli[i] == pli) != essai) continue;
    prises[groupes.du_rang[i]] = true;
    ++exemples;
  }
  const bool plusieurs = groupes.bases.front()->chemin != groupes.bases.back()->chemin;
  std::vector<std::string> noms;
  for (std::size_t g = 0; g < prises.size(); ++g)
    if (prises[g])
      noms.push_back((plusieurs ? groupes.bases[g]->collection + "/" : "") +
                     groupes.bases[g]->base);
  return std::to_string(noms.size()) + " base(s), " + std::to_string(exemples) +
         " exemples : " + enumerer(noms);
}

void dire_les_parts(const OptionsPartage& o, const Groupes& groupes, const Repartition& r) {
  std::size_t n = 0;
  if (o.ratio) {
    const std::string premiere = dire_la_partie(groupes, r, 0, false, n);
    dire("part obtenue " + en_texte(static_cast<double>(n) / static_cast<double>(r.pli.size())) +
         ", voulue " + en_texte(*o.ratio));
    dire("partie 1 : " + premiere);
    dire("partie 2 : " + dire_la_partie(groupes, r, 0, true, n));
    return;
  }
  for (int pli = 0; pli < r.nb_plis; ++pli)
    dire("pli " + std::to_string(pli + 1) +
         ", essai : " + dire_la_partie(groupes, r, pli, true, n));
}

}  // namespace

void partager(OptionsPartage& o) {
  o.par_base = o.par_base || o.un_pli_par_base;
  controler_options(o);
  Progres progres;
  controler(o.cible);
  const std::vector<Provenance> liste = o.cible.liste();
  const Atelier atelier(o.table, liste);
  BaseBuffer table = atelier.construire(o.cible.mode, progres);
  if (table._expl.empty()) throw Erreur("aucun exemple a partager");
  srand48(o.graine.value_or(1));
  if (!o.sans_melange) table.rdm_list();
  const std::vector<int> strates = o.stratifie.empty()
                                       ? std::vector<int>(table._expl.size())
                                       : numeroter_valeurs(table, table.num_attr(o.stratifie));
  std::optional<Groupes> groupes;
  if (o.par_base) groupes.emplace(table, liste, strates);
  const Repartition r = groupes ? repartir_bases(o, *groupes) : repartir_exemples(o, strates);

  std::deque<Sortie> sorties;
  const auto largeur = std::to_string(r.nb_plis).size();
  for (int pli = 0; pli < r.nb_plis; ++pli) {
    std::string numero = std::to_string(pli + 1);
    numero.insert(0, largeur - numero.size(), '0');
    const std::string suffixe = o.ratio ? "" : "_pli" + numero;
    progres.ecriture(o.prefixe + suffixe);
    Atelier du_pli = atelier;
    BaseBuffer premiere = partie(table, r, pli, false), seconde = partie(table, r, pli, true);
    du_pli.mettre_a_l_echelle(premiere);
    du_pli.appliquer_echelle(seconde);
    du_pli.cacher_constantes(premiere);
    const std::string debut = o.prefixe + suffixe, fin(o.table.format->extension);
    for (const auto& [nom, exemples] : {std::pair{"_1", &premiere}, {"_2", &seconde}}) {
      Sortie& sortie = sorties.emplace_back(std::string(debut).append(nom).append(fin));
      du_pli.ecrire_tout(sortie.flux(), *exemples);
      sortie.fermer();
    }
    if (o.table.echelle.empty()) continue;
    Sortie& sortie = sorties.emplace_back(nom_du_pli(o.table.echelle, suffixe));
    du_pli.ecrire_echelle(sortie.flux());
    sortie.fermer();
  }
  // Old files are replaced only when all new ones are complete.
  for (Sortie& sortie : sorties) sortie.conclure();
  progres.effacer();
  if (groupes) dire_les_parts(o, *groupes, r);
}

}  // namespace topomine
