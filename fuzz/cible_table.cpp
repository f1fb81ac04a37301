#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "dataset/basebuffer.h"
#include "dataset/numeric.h"
#include "fuzz/cibles.h"
#include "fuzz/outils.h"

namespace {

std::vector<std::string_view> couper(std::string_view texte, char sep) {
  std::vector<std::string_view> parts;
  for (std::size_t fin; (fin = texte.find(sep)) != std::string_view::npos;) {
    parts.push_back(texte.substr(0, fin));
    texte.remove_prefix(fin + 1);
  }
  parts.push_back(texte);
  return parts;
}

/// First line: the types, "n" for numeric; then a row per line; values end at ";". A byte that
/// chooses the parameters of the operations comes first.
BaseBuffer lire_table(std::string_view entree) {
  BaseBuffer table("essai");
  table._attr.clear();
  table._aff.clear();
  auto lignes = couper(entree, '\n');
  if (lignes.size() > 200) lignes.resize(200);
  for (const std::string_view type : couper(lignes[0], ';')) {
    if (table._attr.size() == 40) break;
    std::string nom = "a";
    nom += std::to_string(table._attr.size() % 30);  // names repeat from the 30th on
    table.add_attr(nom, type == "n" ? "numeric" : std::string(type));
  }
  for (std::size_t i = 1; i < lignes.size(); ++i) {
    const auto valeurs = couper(lignes[i], ';');
    table._expl.emplace_back(valeurs.begin(), valeurs.end());
  }
  return table;
}

std::string_view valeur(const BaseBuffer::Exemple& ligne, int col) {
  const auto c = static_cast<std::size_t>(col);
  return c < ligne.size() ? std::string_view(ligne[c]) : std::string_view();
}

/// A column by the literal model.
std::vector<double> colonne(const BaseBuffer& table, int col) {
  Modele nombres;
  std::vector<double> valeurs;
  for (const auto& ligne : table._expl) valeurs.push_back(nombres.reel(valeur(ligne, col)));
  return valeurs;
}

/// Any NaN stands for any other: which of two operands' NaN comes out of a sum is the compiler's.
bool egaux(double a, double b) {
  return memes_bits(a, b) || (std::isnan(a) && std::isnan(b));
}

double covar_modele(const BaseBuffer& table, int a, int b) {
  const auto va = colonne(table, a), vb = colonne(table, b);
  double somme = 0;
  for (std::size_t i = 0; i < va.size(); ++i) somme += va[i] * vb[i];
  return somme / static_cast<double>(va.size());
}

void verifier_colonnes(const BaseBuffer& table) {
  const int nb = static_cast<int>(table._attr.size());
  for (int a = -1; a <= nb; ++a) {
    std::vector<double> valeurs;
    double min = 0, max = 0;
    const bool numerique = table.is_numeric(a);
    PROMET(table.get_vec_dbl(a, valeurs) == numerique);
    double moy = 0, var = 0, ecart = 0;
    PROMET(table.calc_moy(a, moy) == numerique && table.calc_var(a, var) == numerique);
    PROMET(table.calc_std(a, ecart) == numerique);
    PROMET(table.calc_min_max(a, min, max) == (numerique && !table._expl.empty()));
    if (numerique) {
      const auto attendues = colonne(table, a);
      PROMET(std::ranges::equal(valeurs, attendues, memes_bits));
      for (const double x : valeurs) PROMET(min <= x && x <= max);
      const double n = static_cast<double>(valeurs.size());
      double somme = 0, carres = 0;
      for (const double x : valeurs) somme += x, carres += x * x;
      PROMET(valeurs.empty() || (egaux(moy, somme / n) && egaux(var, carres / n - moy * moy)));
      PROMET(egaux(ecart, std::sqrt(var)));
    }
    for (int b = a; b <= nb; ++b) {
      const double c = table.covar(a, b);
      PROMET(memes_bits(c, table.covar(b, a)));
      if (numerique && table.is_numeric(b))
        PROMET(egaux(c, covar_modele(table, a, b)));
      else
        PROMET(c == -1.0);
    }
  }
}

void verifier_matrice(const BaseBuffer& table) {
  std::ostringstream ecrit, attendu;
  table.mat_cov(ecrit);
  attendu.precision(5);
  const int nb = static_cast<int>(table._attr.size());
  for (int a = 0; a < nb; ++a) {
    for (int b = 0; b < nb; ++b) {
      const double c = table.covar(a, b);
      if (c != -1.0)
        attendu << c << '\t';
      else
        attendu << "NaN\t";
    }
    attendu << '\n';
  }
  PROMET(ecrit.str() == attendu.str());
}

void verifier_partage(BaseBuffer table, double ratio, bool melange) {
  BaseBuffer un, deux;
  PROMET(table.sep_buffer(ratio, un, deux, melange) == 1);
  PROMET(un._attr == table._attr && deux._attr == table._attr);
  auto ensemble = un._expl;
  ensemble.insert(ensemble.end(), deux._expl.begin(), deux._expl.end());
  auto avant = table._expl;
  if (melange) {
    std::ranges::sort(ensemble);
    std::ranges::sort(avant);
  }
  PROMET(ensemble == avant);
  // The source as a target, and both targets the same.
  BaseBuffer copie(table);
  PROMET(table.sep_buffer(ratio, table, deux, melange) == 1);
  PROMET(table.nb_expl() + deux.nb_expl() == copie.nb_expl());
  PROMET(copie.sep_buffer(ratio, copie, copie, melange) == 1);
}

void verifier_faux(const BaseBuffer& table, double ratio, int n) {
  BaseBuffer sortie, elle_meme(table);
  const auto terminees = [](const BaseBuffer& t, std::size_t depuis) {
    for (std::size_t i = depuis; i < t._expl.size(); ++i)
      PROMET(t._expl[i].size() >= 3 && t._expl[i].back() == "-1");
  };
  PROMET(elle_meme.create_fakes(ratio) == 1);
  terminees(elle_meme, table._expl.size());
  PROMET(BaseBuffer(table).create_fake_base(sortie, ratio) == 1);
  PROMET(BaseBuffer(table).create_fake_base(sortie, n) == 1);
  PROMET(sortie.nb_expl() == (n < 0 ? table.nb_expl() : std::min(n, table.nb_expl())));
  terminees(sortie, 0);
  PROMET(BaseBuffer(table).create_fake_base2(sortie, n) == 1);
  PROMET(sortie.nb_expl() == (table.nb_expl() == 0 ? 0 : std::max(n, 0)));
  terminees(sortie, 0);
  PROMET(elle_meme.create_fake_base(elle_meme, n) == 1);
  PROMET(elle_meme.create_fake_base2(elle_meme, n) == 1);
}

void verifier_ecrivains(BaseBuffer table, int n) {
  if (n > 0 && n <= static_cast<int>(table._attr.size())) table.hide_attr(table._attr[0].first);
  table._num_classe = n;
  std::ostringstream weka, torch;
  table.Print_weka(weka);
  table.Print_torch(torch);
  const std::string texte = torch.str();
  PROMET(std::ranges::count(texte, '\n') >= table.nb_expl() + 2);
  PROMET(weka.str().ends_with("\n\n"));
}

/// The short row that normalize must not get past is said by an exception; anything else succeeds.
void verifier_normalisation(BaseBuffer table) {
  BaseBuffer attendu(table);
  bool courte = false;
  for (int col = 0; col < static_cast<int>(table._attr.size()) && !courte; ++col) {
    if (!table.is_numeric(col) || table._expl.empty()) continue;
    const auto valeurs = colonne(table, col);
    const double min = *std::ranges::min_element(valeurs);
    double d = *std::ranges::max_element(valeurs) - min;
    if (d == 0) d = 1.0;
    const double o = min / d;
    for (std::size_t j = 0; j < valeurs.size() && !courte; ++j) {
      auto& ligne = attendu._expl[j];
      courte = static_cast<std::size_t>(col) >= ligne.size();
      if (courte) break;
      std::ostringstream flux;
      flux << valeurs[j] / d - o;
      ligne[static_cast<std::size_t>(col)] = flux.str();
    }
  }
  try {
    PROMET(table.normalize() == 1);
    PROMET(!courte);
  } catch (const std::out_of_range&) {
    PROMET(courte);
  }
  PROMET(table._expl == attendu._expl);
}

}  // namespace

void cible_table(std::string_view entree) {
  if (entree.empty()) return;
  const auto choix = static_cast<unsigned char>(entree[0]);
  BaseBuffer table = lire_table(entree.substr(1));
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double ratios[] = {0, 0.25, 0.5, 1, 1.7, -3, 1e300, nan};
  const double ratio = ratios[choix % 8];
  const int n = choix / 8 - 3;

  Ecoute ecoute;
  srand48(choix);
  verifier_colonnes(table);
  verifier_matrice(table);
  verifier_partage(table, ratio, choix >= 128);
  verifier_faux(table, std::min(ratio, 2.0), n);
  verifier_ecrivains(table, n);
  verifier_normalisation(table);
  table.rdm_list();
  const std::size_t avant = table._attr.size();
  if (avant > 0) PROMET(table.del_attr(table.nom_attr(static_cast<int>(choix % avant))) == 1);
  PROMET(table.nom_attr(n) != "" && table.nom_attr(1000) == "%");
  verifier_colonnes(table);
}
