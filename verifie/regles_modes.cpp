#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "verifie/catalogue.h"
#include "verifie/examen.h"
#include "verifie/regles.h"

namespace topomine {

namespace {

/// What two modes give for one entity.
using Nombres = std::vector<double>;

bool memes(const Nombres& x, const Nombres& y) {
  constexpr double precision = 1e-9;
  return std::ranges::equal(x, y, [](double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b)) ||
           std::abs(a - b) <= precision * std::max(std::abs(a), std::abs(b));
  });
}

Nombres valeurs(const Block& b) {
  return {static_cast<double>(b._type()),
          b._erik(),
          b._volexa(),
          b._volmor(),
          b._volmoy(),
          b._volnsm()};
}
Nombres valeurs(const Vertex& v) {
  return {v._posX(), v._posY(), v._posZ()};
}
Nombres liens(const Block& b) {
  Nombres n;
  for (int i = 0; i < nb_faces_bloc; ++i) n.push_back(b._face(i));
  return n;
}
Nombres liens(const Face& f) {
  Nombres n;
  for (int i = 0; i < nb_edges_face; ++i) n.push_back(f._edge(i));
  return n;
}
Nombres liens(const Edge& e) {
  return {static_cast<double>(e._vrtx(0)), static_cast<double>(e._vrtx(1))};
}
Nombres codes(const Face& f) {
  Nombres n;
  for (int i = 0; i < f.nb_BC(); ++i) n.push_back(f._BC(i));
  return n;
}

class Modes {
 public:
  Modes(std::span<const CasLu> modes, const std::vector<Constat>& dits) : modes_(modes) {
    for (const Constat& c : dits) {
      dits_.emplace(c.fichier, c.sorte, c.numero);
      d_un_fichier_ =
          d_un_fichier_ || (c.sorte == "fichier" && fiche(c.code).gravite == Gravite::erreur);
    }
  }

  template <class Entite>
  void table(Fichier f, std::map<int, Entite> Base::*table) {
    if (d_un_fichier_ || !std::ranges::all_of(modes_, [&](const CasLu& r) { return r.lus[f]; }))
      return;
    std::set<int> numeros;
    for (const CasLu& r : modes_)
      for (const auto& [numero, entite] : r.base.*table) numeros.insert(numero);
    for (const int numero : numeros) {
      std::vector<const Entite*> la;
      for (const CasLu& r : modes_) {
        const auto trouve = (r.base.*table).find(numero);
        la.push_back(trouve == (r.base.*table).end() ? nullptr : &trouve->second);
      }
      comparer(f, numero, la);
    }
  }

  std::vector<Constat> constats;

 private:
  template <class Entite>
  void comparer(Fichier f, int numero, const std::vector<const Entite*>& la) {
    const auto juger = [&](Code code, const char* quoi, auto pareils) {
      for (std::size_t m = 0; m < la.size(); ++m)
        if (const std::size_t autre = isole(la, m, pareils); autre != m)
          dire(code, f, numero, m, la[m] != nullptr, quoi, autre);
    };
    const bool partout = std::ranges::all_of(la, [](const Entite* e) { return e; });
    if (!partout)
      return juger(Code::modes_entites, "",
                   [](const Entite* x, const Entite* y) { return !x == !y; });
    if constexpr (requires { valeurs(*la[0]); })
      juger(Code::modes_valeurs, "nombres",
            [](const Entite* x, const Entite* y) { return memes(valeurs(*x), valeurs(*y)); });
    if constexpr (requires { liens(*la[0]); })
      juger(Code::modes_liens, "liens",
            [](const Entite* x, const Entite* y) { return memes(liens(*x), liens(*y)); });
    if constexpr (requires { codes(*la[0]); })
      juger(Code::modes_codes, "codes",
            [](const Entite* x, const Entite* y) { return memes(codes(*x), codes(*y)); });
  }

  /// A mode that the one is not like; itself when it is like most of them.
  template <class Entite, class Pareils>
  static std::size_t isole(const std::vector<const Entite*>& la, std::size_t m, Pareils pareils) {
    std::size_t semblables = 0, autre = m;
    for (std::size_t n = la.size(); n-- > 0;) {
      if (pareils(la[m], la[n]))
        ++semblables;
      else
        autre = n;
    }
    // Of two that differ, the second is named.
    if (semblables * 2 == la.size() && m < autre) return m;
    return semblables * 2 > la.size() ? m : autre;
  }

  void dire(Code code, Fichier f, int numero, std::size_t m, bool la, const std::string& quoi,
            std::size_t autre) {
    const CasLu& r = modes_[m];
    const std::string n = std::to_string(numero);
    for (const CasLu& s : modes_)
      if (dits_.contains({s.noms[f], sorte(f), n})) return;
    const std::string mode = modes_[autre].base.type;
    constats.push_back(
        {code, r.noms[f], r.ligne(f, numero), sorte(f), n,
         code == Code::modes_entites
             ? (la ? "n'est pas dans le mode " : "manque, il est dans le mode ") + mode
             : quoi + " autres que dans le mode " + mode});
  }

  std::span<const CasLu> modes_;
  std::set<std::tuple<std::string, std::string, std::string>> dits_;
  bool d_un_fichier_ = false;  // one of the files is not what it should be
};

}  // namespace

std::vector<Constat> comparer_modes(std::span<const CasLu> modes,
                                    const std::vector<Constat>& dits) {
  Modes m(modes, dits);
  m.table(fic_blck, &Base::blocs);
  m.table(fic_face, &Base::faces);
  m.table(fic_edge, &Base::edges);
  m.table(fic_vrtx, &Base::vrtxs);
  return std::move(m.constats);
}

}  // namespace topomine
