#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <limits>
#include <utility>

#include "dataset/basebuffer.h"
#include "dataset/numeric.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

using namespace topomine;

namespace {

using Exemple = BaseBuffer::Exemple;
using Exemples = std::vector<Exemple>;

/// 0 to nb - 1.
std::vector<int> numeros(std::size_t nb, bool melange) {
  std::vector<int> rangs;
  vec_init(rangs, 0, static_cast<int>(nb), 1);
  if (melange) melanger(rangs);
  return rangs;
}

/// Integer part of nb * ratio, held within int; 0 for a ratio that is not a number.
int part(std::size_t nb, double ratio) {
  const double n = static_cast<double>(nb) * ratio;
  if (std::isnan(n)) return 0;
  constexpr double bas = std::numeric_limits<int>::min(), haut = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(n, bas, haut));
}

/// A synthetic row: the builder's name, the row's index, the columns from "type" to the one before
/// the last from the example that `source` names for each, and the negative class. An example too
/// short for a column gives the empty text.
template <class Source>
Exemple faux_exemple(const Exemples& reels, std::size_t nb_attr, const char* nom, int i,
                     Source source) {
  Exemple ligne;
  ligne.reserve(std::max<std::size_t>(nb_attr, 3));
  ligne.emplace_back(nom);
  BaseBuffer::add_val(ligne, i);
  for (std::size_t c = col_type; c + 1 < nb_attr; ++c) {
    const Exemple& reel = reels[static_cast<std::size_t>(source(static_cast<int>(c)))];
    ligne.push_back(c < reel.size() ? reel[c] : std::string());
  }
  ligne.emplace_back("-1");
  return ligne;
}

/// First column of the group that is drawn from one and the same example: the block's volumes, the
/// means and the variances of its neighbours' volumes; any other column stands for itself.
int premiere_du_groupe(int c) {
  if (c >= col_vol_exa && c <= col_vol_nsm) return col_vol_exa;
  if (c >= col_vois_vexa_moy && c <= col_vois_vnsm_var)
    return (c - col_vois_vexa_moy) % 2 == 0 ? col_vois_vexa_moy : col_vois_vexa_var;
  return c;
}

/// One permutation of the examples per column from "type" to the last one.
std::vector<std::vector<int>> permutations(std::size_t nb_attr, std::size_t nb_expl) {
  std::vector<std::vector<int>> p;
  for (std::size_t c = col_type; c < nb_attr; ++c) p.push_back(numeros(nb_expl, true));
  return p;
}

/// Rows to build out of n asked for: no more than there are examples. Negative counts as more.
int plafonner(int n, std::size_t nb_expl) {
  const int tous = static_cast<int>(nb_expl);
  return n < 0 || n > tous ? tous : n;
}

/// What one table hands over to another: gathered whole before the receiver is emptied, since the
/// two may be the same.
struct Contenu {
  decltype(BaseBuffer::_attr) attr;
  std::string nom;
  int num_classe;
  Exemples expl;

  /// The receiver keeps its shown flags.
  void remplacer(BaseBuffer& cible) {
    cible.clear();
    cible._attr = std::move(attr);
    cible._nom = std::move(nom);
    cible._num_classe = num_classe;
    cible._expl = std::move(expl);
  }
};

/// Runs a builder; 0 when it ran out of memory, which leaves the tables as they were.
template <class Action>
int tenter(Action action) {
  try {
    action();
  } catch (const std::exception&) {
    return 0;
  }
  return 1;
}

}  // namespace

void BaseBuffer::rdm_list() {
  melanger(_expl);
}

int BaseBuffer::sep_buffer(double ratio, BaseBuffer& first, BaseBuffer& second, bool shuffle) {
  return tenter([&] {
    const auto k = static_cast<std::size_t>(part(_expl.size(), std::clamp(ratio, 0.0, 1.0)));
    Contenu debut{_attr, _nom, _num_classe, {}};
    Contenu fin = debut;
    const std::vector<int> rangs = numeros(_expl.size(), shuffle);
    // Both targets the same table: it gets everything.
    const bool une_cible = &first == &second;
    for (std::size_t i = 0; i < rangs.size(); ++i)
      (i < k || une_cible ? debut : fin).expl.push_back(_expl[static_cast<std::size_t>(rangs[i])]);
    debut.remplacer(first);
    if (!une_cible) fin.remplacer(second);
  });
}

int BaseBuffer::create_fakes(int n) {
  return tenter([&] {
    const std::size_t nb = _expl.size();
    // Every row is read from the last permutation at the column's own rank, not at its own: all
    // the rows of a call carry the same example. create_fake_base is the one that varies them. With
    // fewer examples than columns the ranks start again from the first.
    const auto p = permutations(_attr.size(), nb);
    Exemples faux;
    for (int i = 0; i < plafonner(n, nb); ++i)
      faux.push_back(faux_exemple(_expl, _attr.size(), "fake_base", i, [&](int c) {
        return p.back()[static_cast<std::size_t>(premiere_du_groupe(c) - col_type) % nb];
      }));
    _expl.insert(_expl.end(), std::make_move_iterator(faux.begin()),
                 std::make_move_iterator(faux.end()));
  });
}

int BaseBuffer::create_fakes(double ratio) {
  return create_fakes(part(_expl.size(), ratio));
}

int BaseBuffer::create_fake_base(BaseBuffer& out, int n) {
  return tenter([&] {
    const auto p = permutations(_attr.size(), _expl.size());
    Contenu contenu{_attr, "fake_base", _num_classe, {}};
    for (int i = 0; i < plafonner(n, _expl.size()); ++i)
      contenu.expl.push_back(faux_exemple(_expl, _attr.size(), "fake_base", i, [&](int c) {
        return p[static_cast<std::size_t>(premiere_du_groupe(c) - col_type)]
                [static_cast<std::size_t>(i)];
      }));
    contenu.remplacer(out);
  });
}

int BaseBuffer::create_fake_base(BaseBuffer& out, double ratio) {
  return create_fake_base(out, part(_expl.size(), ratio));
}

int BaseBuffer::create_fake_base2(BaseBuffer& out, int n) {
  return tenter([&] {
    const MyRandom tirer;
    const int nb = static_cast<int>(_expl.size());
    Contenu contenu{_attr, "fake_base2", _num_classe, {}};
    std::vector<int> tire(_attr.size());  // example drawn for each column that leads its group
    for (int i = 0; i < n && nb > 0; ++i)
      contenu.expl.push_back(faux_exemple(_expl, _attr.size(), "fake_base2", i, [&](int c) {
        const int premiere = premiere_du_groupe(c);
        int& s = tire[static_cast<std::size_t>(premiere)];
        if (c == premiere) s = tirer(nb);
        return s;
      }));
    contenu.remplacer(out);
  });
}

int BaseBuffer::create_fake_base2(BaseBuffer& out, double ratio) {
  return create_fake_base2(out, part(_expl.size(), ratio));
}
