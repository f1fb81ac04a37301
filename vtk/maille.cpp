#include "vtk/maille.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <string_view>
#include <unordered_map>

#include "base/conditions.h"
#include "dataset/caracteristiques.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

/// "2 bloc(s) sans coins : 3, 7", for the first few.
std::string dire(const std::string& quoi, const std::vector<int>& numeros) {
  constexpr std::size_t cites = 5;
  std::string texte = std::to_string(numeros.size()) + ' ' + quoi + " :";
  for (std::size_t i = 0; i < std::min(cites, numeros.size()); ++i)
    texte += (i > 0 ? ", " : " ") + std::to_string(numeros[i]);
  return texte + (numeros.size() > cites ? ", ..." : "");
}

/// A grid under way: cells over vertex numbers.
class Construction {
 public:
  explicit Construction(const Base& base) : base_(base) {
    grille.titre = base.nom + ' ' + base.type;
  }

  void ajouter(TypeCellule type, std::span<const int> vertices) {
    Cellule& c = grille.cellules.emplace_back(Cellule{type, vertices.size(), {}});
    for (std::size_t i = 0; i < vertices.size(); ++i) c.points[i] = rang(vertices[i]);
  }

  /// Appends a column and says where its values go.
  template <class T>
  std::vector<T>& colonne(const std::string& nom) {
    return std::get<std::vector<T>>(
        grille.donnees.emplace_back(Donnee{nom, std::vector<T>()}).valeurs);
  }

  Grille grille;

 private:
  std::size_t rang(int vertex) {
    const auto [place, nouveau] = rangs_.try_emplace(vertex, grille.points.size());
    if (nouveau) {
      grille.points.push_back(position(base_, vertex));
      grille.vertices.push_back(vertex);
    }
    return place->second;
  }

  const Base& base_;
  std::unordered_map<int, std::size_t> rangs_;
};

/// Column `attribut` of the rows; false when one of its values is no number.
bool colonne_numerique(const BaseBuffer& table, const std::vector<std::size_t>& lignes,
                       std::size_t attribut, std::vector<double>& valeurs) {
  FluxNombres nombres;
  for (const std::size_t l : lignes) {
    const std::string& texte = table._expl[l].at(attribut);
    if (!est_un_reel(texte)) return false;
    valeurs.push_back(nombres.reel(texte));
  }
  return true;
}

/// The numeric attributes, and ident, type and TypeC as integers.
void ajouter_attributs(Construction& c, Base& base, const std::vector<std::size_t>& lignes) {
  const BaseBuffer table = table_de(base);
  for (std::size_t a = 0; a < table._attr.size(); ++a) {
    const auto& [nom, type] = table._attr[a];
    const bool entier = a == col_ident || a == col_type || a == col_TypeC;
    if (!entier && type != "numeric") continue;
    std::vector<double> valeurs;
    if (!colonne_numerique(table, lignes, a, valeurs))
      c.grille.manques.push_back("attribut " + nom +
                                 " laisse de cote : une valeur n'est pas finie");
    else if (entier)
      c.colonne<int>(nom).assign(valeurs.begin(), valeurs.end());
    else
      c.grille.donnees.push_back({nom, std::move(valeurs)});
  }
}

/// The boundary columns of faces and edges.
class Bords {
 public:
  explicit Bords(const Base& base) : base_(base) {}

  template <class Entite>
  void ajouter(const Entite& entite) {
    codes_.emplace_back();
    for (int i = 0; i < entite.nb_BC(); ++i) codes_.back().push_back(entite._BC(i));
    for (const int code : codes_.back())
      if (!limites_.contains(code)) limites_.emplace(code, condition_limite(base_, code));
  }

  void ecrire(Construction& c) const {
    std::size_t plus = 1;
    auto& nb = c.colonne<int>("nb_codes");
    for (const auto& codes : codes_) {
      nb.push_back(static_cast<int>(codes.size()));
      plus = std::max(plus, codes.size());
    }
    if (plus > codes_max) {
      plus = codes_max;
      c.grille.manques.push_back("plus de " + std::to_string(codes_max) +
                                 " codes sur un meme bord : les suivants sont laisses de cote");
    }
    for (std::size_t n = 0; n < plus; ++n) {
      const std::string suite = n == 0 ? "" : "_" + std::to_string(n + 1);
      auto& code = c.colonne<int>("code" + suite);
      for (const auto& codes : codes_) code.push_back(n < codes.size() ? codes[n] : 0);
      auto& bccode = c.colonne<int>("BCCODE" + suite);
      for (const auto& codes : codes_)
        bccode.push_back(n < codes.size() ? limites_.at(codes[n]).bccode : 0);
    }
    ecrire_familles(c);
  }

 private:
  void ecrire_familles(Construction& c) const {
    std::map<std::string_view, int> noms;  // and their ranks from 1
    for (const auto& [code, limite] : limites_)
      if (!limite.famille.empty()) noms.emplace(limite.famille, 0);
    int rang = 0;
    for (auto& [nom, place] : noms) place = ++rang;
    std::unordered_map<int, int> rangs;
    for (const auto& [code, limite] : limites_)
      rangs[code] = limite.famille.empty() ? 0 : noms.at(limite.famille);
    auto& famille = c.colonne<int>("famille");
    for (const auto& codes : codes_) famille.push_back(codes.empty() ? 0 : rangs.at(codes[0]));
    if (noms.size() > familles_max) {
      c.grille.manques.push_back("plus de " + std::to_string(familles_max) +
                                 " familles : pas de colonne pour chacune");
      return;
    }
    for (const auto& [nom, n] : noms) {
      auto& est = c.colonne<int>("famille_" + std::string(nom));
      for (const auto& codes : codes_)
        est.push_back(
            std::ranges::any_of(codes, [&, n = n](int code) { return rangs.at(code) == n; }));
    }
  }

  static constexpr std::size_t codes_max = 8, familles_max = 64;

  const Base& base_;
  std::vector<std::vector<int>> codes_;
  std::map<int, ConditionLimite> limites_;
};

/// The grid of faces and edges, with what is known of each.
class GrilleBords {
 public:
  explicit GrilleBords(const Base& base) : base_(base), c_(base), bords_(base) {}

  void inscrire_faces() {
    std::vector<int> sans;
    for (const auto& [numero, face] : base_.faces) {
      const auto coins = coins_face(base_, face);
      if (!coins) {
        sans.push_back(numero);
        continue;
      }
      inscrire(cellule_quad, *coins, face);
      type_.push_back(face._type());
      bloc_1_.push_back(std::max(face._bloc(0), 0));
      bloc_2_.push_back(std::max(face._bloc(1), 0));
    }
    manquer("face(s) dont les coins ne se trouvent pas", sans);
  }

  void inscrire_edges() {
    std::vector<int> sans;
    for (const auto& [numero, edge] : base_.edges) {
      if (const auto bouts = bouts_edge(base_, numero))
        inscrire(cellule_ligne, *bouts, edge);
      else
        sans.push_back(numero);
    }
    manquer("edge(s) dont les bouts ne se trouvent pas", sans);
  }

  Grille conclure(bool faces) {
    donner("ident", ident_);
    donner("sorte", sorte_);
    donner("carac", carac_);
    if (faces) {
      donner("type", type_);
      donner("bloc_1", bloc_1_);
      donner("bloc_2", bloc_2_);
    }
    bords_.ecrire(c_);
    return std::move(c_.grille);
  }

 private:
  template <class Entite>
  void inscrire(TypeCellule cellule, std::span<const int> vertices, const Entite& entite) {
    c_.ajouter(cellule, vertices);
    bords_.ajouter(entite);
    ident_.push_back(entite._id());
    sorte_.push_back(cellule == cellule_ligne ? 1 : 0);
    carac_.push_back(entite._carac());
  }

  void manquer(const char* quoi, const std::vector<int>& sans) {
    if (!sans.empty()) c_.grille.manques.push_back(dire(quoi, sans));
  }

  void donner(const char* nom, std::vector<int>& valeurs) {
    valeurs.resize(c_.grille.cellules.size());  // what edges do not have is 0
    c_.colonne<int>(nom) = std::move(valeurs);
  }

  const Base& base_;
  Construction c_;
  Bords bords_;
  std::vector<int> ident_, sorte_, carac_, type_, bloc_1_, bloc_2_;
};

}  // namespace

Grille grille_blocs(Base& base) {
  Construction c(base);
  std::vector<std::size_t> lignes;  // of the table, for the blocks that have their corners
  std::vector<double> volumes;
  std::vector<int> sans;
  std::size_t ligne = 0;
  for (const auto& [numero, bloc] : base.blocs) {
    const std::size_t l = ligne++;
    auto coins = coins_bloc(base, bloc);
    if (!coins) {
      sans.push_back(numero);
      continue;
    }
    double v = volume(base, *coins);
    if (v < 0) {
      std::swap_ranges(coins->begin(), coins->begin() + 4, coins->begin() + 4);
      v = -v;
    }
    const auto& s = *coins;
    c.ajouter(cellule_hexaedre, std::array{s[0], s[1], s[3], s[2], s[4], s[5], s[7], s[6]});
    lignes.push_back(l);
    volumes.push_back(v);
  }
  if (!sans.empty())
    c.grille.manques.push_back(dire("bloc(s) dont les coins ne se trouvent pas", sans));
  ajouter_attributs(c, base, lignes);
  if (std::ranges::all_of(volumes, [](double v) { return std::isfinite(v); }))
    c.colonne<double>("vol_coins") = std::move(volumes);
  else
    c.grille.manques.push_back("vol_coins laisse de cote : un volume n'est pas fini");
  return std::move(c.grille);
}

Grille grille_bords(const Base& base, bool faces, bool edges) {
  GrilleBords g(base);
  if (faces) g.inscrire_faces();
  if (edges) g.inscrire_edges();
  return g.conclure(faces);
}

}  // namespace topomine
