#include "cgns/topologie.h"

#include <algorithm>
#include <optional>

#include "cgns/classes.h"
#include "mesh/numbering.h"

namespace topomine {

namespace {

constexpr std::size_t cotes = 4;

/// The corners at the two ends of each side of a piece, as l + 2m.
constexpr std::array<std::array<std::size_t, 2>, cotes> bouts{{{0, 2}, {0, 1}, {1, 3}, {2, 3}}};

class Identification {
 public:
  Identification(const Structure& s, const Decoupage& d, const std::vector<MesuresZone>& mesures,
                 const Familles& familles)
      : s_(s),
        d_(d),
        mesures_(mesures),
        familles_(familles),
        ecrases_(pieces_ecrasees(d, mesures)),
        classes_(s),
        numeros_(d.morceaux.size()) {}

  Topologie executer() {
    recenser();
    ecraser();
    for (std::size_t z = 0; z < s_.zones.size(); ++z) numeroter_bloc(z);
    border();
    reserver_les_comptes();
    dire_le_reste();
    return std::move(t_);
  }

 private:
  struct Elements {  // of a piece
    std::array<std::size_t, 4> coins, cotes;
  };

  const MesuresMorceau& mesures(std::size_t m) const {
    const std::size_t zone = d_.morceaux[m].zone;
    return mesures_[zone].morceaux[m - d_.debut(zone, 0)];
  }
  bool ecrase(std::size_t m) const { return ecrases_[m]; }

  std::size_t noeud(std::size_t zone, const Ijk& p) { return classes_.element(zone, {p, p}); }

  void recenser() {
    for (std::size_t z = 0; z < s_.zones.size(); ++z)
      for (std::size_t n = 0; n < 12; ++n) {
        const Plage arete = arete_de_zone(s_.zones[z].taille, n);
        aretes_.push_back(classes_.element(z, arete));
        bouts_aretes_.push_back({noeud(z, arete.min), noeud(z, arete.max)});
      }
    for (const Morceau& m : d_.morceaux) {
      Elements& e = elements_.emplace_back();
      for (std::size_t c = 0; c < cotes; ++c) {
        const Plage cote = cote_de_morceau(m.plage, m.place, c);
        e.cotes[c] = classes_.element(m.zone, cote);
        e.coins[bouts[c][0]] = noeud(m.zone, cote.min);
        e.coins[bouts[c][1]] = noeud(m.zone, cote.max);
      }
    }
  }

  /// A line that shrank to a point makes its ends one; a surface that shrank to a line, the sides
  /// that it shrank between.
  void ecraser() {
    for (std::size_t a = 0; a < aretes_.size(); ++a)
      if (mesures_[a / 12].aretes_ecrasees[a % 12])
        classes_.unir(bouts_aretes_[a][0], bouts_aretes_[a][1]);
    for (std::size_t m = 0; m < d_.morceaux.size(); ++m) {
      const MesuresMorceau& mesure = mesures(m);
      const Elements& e = elements_[m];
      for (std::size_t c = 0; c < cotes; ++c)
        if (mesure.cotes_ecrases[c]) classes_.unir(e.coins[bouts[c][0]], e.coins[bouts[c][1]]);
      for (std::size_t axe = 0; axe < 2; ++axe)
        if (mesure.ecrase[axe]) classes_.unir(e.cotes[axe], e.cotes[axe + 2]);
    }
    for (std::size_t z = 0; z < s_.zones.size(); ++z)
      for (int place = 0; place < nb_faces_bloc; ++place) ecraser_face(z, place);
    classes_ecrasees();
  }

  void ecraser_face(std::size_t zone, int place) {
    const Plage entiere = face_entiere(s_.zones[zone].taille, place);
    bool dit = false;
    for (std::size_t axe = 0; axe < 2; ++axe) {
      bool tout = true;
      for (std::size_t m = d_.debut(zone, place); m < d_.fin(zone, place); ++m)
        tout = tout && mesures(m).ecrase[axe];
      if (!tout) continue;
      classes_.unir(classes_.element(zone, cote_de_morceau(entiere, place, axe)),
                    classes_.element(zone, cote_de_morceau(entiere, place, axe + 2)));
      if (!dit) t_.dits.push_back(ou(zone, place) + " : face ecrasee, sa case est vide");
      dit = true;
    }
    for (std::size_t m = d_.debut(zone, place); m < d_.fin(zone, place); ++m)
      for (const std::size_t c : d_.morceaux[m].conditions)
        if (s_.conditions[c].degeneree && !ecrase(m))
          t_.dits.push_back(ou(zone, place) + " : condition '" + s_.conditions[c].nom +
                            "' de face ecrasee, mais la face a une aire");
  }

  /// Where a face of the zone is on its block: blocks are right-handed, so that i of a left-handed
  /// zone goes the other way.
  int place_du_bloc(std::size_t zone, int place) const {
    return mesures_[zone].gauche && place % 3 == 0 ? nb_faces_bloc / 2 - place : place;
  }

  std::string ou(std::size_t zone, int place) const {
    return "bloc " + std::to_string(zone + 1) + " " +
           noms_faces[static_cast<std::size_t>(place_du_bloc(zone, place))];
  }

  void classes_ecrasees() {
    const auto marquer = [&](std::size_t element) { numero(edges_, classes_.classe(element)) = 0; };
    for (std::size_t a = 0; a < aretes_.size(); ++a)
      if (mesures_[a / 12].aretes_ecrasees[a % 12]) marquer(aretes_[a]);
    for (std::size_t m = 0; m < d_.morceaux.size(); ++m)
      for (std::size_t c = 0; c < cotes; ++c)
        if (mesures(m).cotes_ecrases[c]) marquer(elements_[m].cotes[c]);
  }

  /// Of a class; `inconnue` until it has one.
  static int& numero(std::vector<int>& numeros, std::size_t classe) {
    if (numeros.size() <= classe) numeros.resize(classe + 1, inconnue);
    return numeros[classe];
  }

  int sommet(std::size_t element, const Vec& position) {
    const std::size_t classe = classes_.classe(element);
    int& n = numero(sommets_, classe);
    if (n == inconnue) {
      t_.sommets.push_back({position, {}});
      n = static_cast<int>(t_.sommets.size());
    }
    return n;
  }

  int edge(std::size_t m, std::size_t cote) {
    const std::size_t classe = classes_.classe(elements_[m].cotes[cote]);
    int& n = numero(edges_, classe);
    if (n == inconnue) {
      const auto& [a, b] = bouts[cote];
      const Elements& e = elements_[m];
      const int debut = sommet(e.coins[a], mesures(m).coins[a]);
      t_.edges.push_back({debut, sommet(e.coins[b], mesures(m).coins[b]), 0, {}});
      n = static_cast<int>(t_.edges.size());
    }
    return n;
  }

  void numeroter_bloc(std::size_t zone) {
    BlocTopo& bloc = t_.blocs.emplace_back();
    for (int place = 0; place < nb_faces_bloc; ++place) {
      std::vector<int>& faces = bloc.faces[static_cast<std::size_t>(place_du_bloc(zone, place))];
      bool bord = true;
      for (std::size_t m = d_.debut(zone, place); m < d_.fin(zone, place); ++m) {
        const int n = face(m);
        if (n == 0) continue;
        faces.push_back(n);
        bord = bord && d_.morceaux[m].jonction == aucun;
      }
      bloc.nb_bord += bord && !faces.empty();
    }
  }

  int face(std::size_t m) {
    const std::size_t premier = d_.morceaux[m].face;
    if (ecrase(m) || ecrase(premier)) return 0;
    if (numeros_[premier] == 0) {
      FaceTopo f;
      f.numero = static_cast<int>(t_.faces.size()) + 1;
      f.morceau = m;
      for (std::size_t c = 0; c < cotes; ++c) {
        f.edges[c] = edge(m, c);
        if (f.edges[c] > 0) ++t_.edges[static_cast<std::size_t>(f.edges[c]) - 1].nb_faces;
      }
      numeros_[premier] = f.numero;
      t_.faces.push_back(f);
    }
    ++t_.faces[static_cast<std::size_t>(numeros_[premier]) - 1].nb_blocs;
    return numeros_[premier];
  }

  /// Families of the boundary faces, of what lies along them, and the normals at their corners.
  void border() {
    for (FaceTopo& f : t_.faces) {
      const Morceau& morceau = d_.morceaux[f.morceau];
      if (morceau.jonction != aucun) continue;
      for (const std::size_t c : morceau.conditions) ajouter(f.familles, familles_.de_condition[c]);
      if (f.familles.empty()) f.familles.push_back(familles_.sans_condition);
      if (f.familles.size() > 1)
        t_.dits.push_back(lieu(s_, morceau.zone, morceau.plage) + " : " +
                          std::to_string(f.familles.size()) +
                          " familles, la face a le code de chacune");
      for (const std::size_t famille : f.familles) border_face(f, morceau, famille);
    }
    for (SommetTopo& s : t_.sommets)
      for (auto& [famille, normale] : s.normales) normale = unitaire(normale);
  }

  void border_face(const FaceTopo& f, const Morceau& morceau, std::size_t famille) {
    const auto toucher = [&](int n) {
      if (n > 0) ajouter(t_.edges[static_cast<std::size_t>(n) - 1].familles, famille);
    };
    for (const int n : f.edges) toucher(n);
    // The side of a part of a face is a part of a block's edge: the whole edge touches it.
    for (std::size_t c = 0; c < cotes; ++c)
      for (std::size_t n = 0; n < 12; ++n)
        if (arete_de_zone(s_.zones[morceau.zone].taille, n)
                .contient(cote_de_morceau(morceau.plage, morceau.place, c)))
          toucher(numero_edge(aretes_[12 * morceau.zone + n]));
    for (std::size_t c = 0; c < cotes; ++c) {
      const int sommet = numero(sommets_, classes_.classe(elements_[f.morceau].coins[c]));
      if (sommet == inconnue) continue;
      Vec& n = t_.sommets[static_cast<std::size_t>(sommet) - 1].normales[famille];
      n = n + mesures(f.morceau).normales[c];
    }
  }

  /// 0 for a line that no face has as its edge.
  int numero_edge(std::size_t element) {
    return std::max(numero(edges_, classes_.classe(element)), 0);
  }

  static void ajouter(std::vector<std::size_t>& liste, std::size_t v) {
    const auto rang = std::ranges::lower_bound(liste, v);
    if (rang == liste.end() || *rang != v) liste.insert(rang, v);
  }

  /// Where a face is split, readers take the count of its parts for a face number. No face bears
  /// these numbers then: a wrong link would be worse than none.
  void reserver_les_comptes() {
    std::size_t plus_grand = 1;
    for (std::size_t b = 0; b < t_.blocs.size(); ++b)
      for (int place = 0; place < nb_faces_bloc; ++place)
        plus_grand =
            std::max(plus_grand, t_.blocs[b].faces[static_cast<std::size_t>(place)].size());
    const int saut = static_cast<int>(plus_grand) - 1;
    const auto decaler = [saut](int& n) { n += n > 1 ? saut : 0; };
    std::map<std::size_t, std::vector<std::size_t>> blocs_par_compte;
    for (FaceTopo& f : t_.faces) decaler(f.numero);
    for (std::size_t b = 0; b < t_.blocs.size(); ++b)
      for (int place = 0; place < nb_faces_bloc; ++place) {
        std::vector<int>& faces =
            t_.blocs[b].faces[static_cast<std::size_t>(place_du_bloc(b, place))];
        for (int& n : faces) decaler(n);
        if (faces.size() < 2) continue;
        std::vector<std::size_t>& pareils = blocs_par_compte[faces.size()];
        if (pareils.empty() || pareils.back() != b) pareils.push_back(b);
        std::string texte = ou(b, place) + " : " + std::to_string(faces.size()) + " sous-faces :";
        for (const int n : faces) texte += " " + std::to_string(n);
        t_.dits.push_back(texte + " ; lue, la case ne garde que leur nombre");
      }
    for (const auto& [nb, blocs] : blocs_par_compte) {
      if (blocs.size() < 2) continue;
      std::string texte = "blocs";
      for (const std::size_t b : blocs) texte += " " + std::to_string(b + 1);
      t_.dits.push_back(texte + " : chacun a une face en " + std::to_string(nb) +
                        " sous-faces, la lecture les prend pour voisins");
    }
  }

  void dire_le_reste() {
    for (const Jonction& j : s_.jonctions)
      if (j.zone == j.voisine && j.passage(j.plage) == j.plage)
        t_.dits.push_back(lieu(s_, j.zone, j.plage) + " : face repliee sur elle-meme, sans code");
    for (std::size_t b = 0; b < mesures_.size(); ++b)
      if (mesures_[b].exact == 0)
        t_.dits.push_back("bloc " + std::to_string(b + 1) + " : volume nul");
  }

  static constexpr int inconnue = -1;

  const Structure& s_;
  const Decoupage& d_;
  const std::vector<MesuresZone>& mesures_;
  const Familles& familles_;
  std::vector<bool> ecrases_;
  Classes classes_;
  std::vector<std::size_t> aretes_;  // 12 per zone
  std::vector<std::array<std::size_t, 2>> bouts_aretes_;
  std::vector<Elements> elements_;    // per piece
  std::vector<int> edges_, sommets_;  // number per class
  std::vector<int> numeros_;          // per piece
  Topologie t_;
};

}  // namespace

Topologie identifier(const Structure& s, const Decoupage& d,
                     const std::vector<MesuresZone>& mesures, const Familles& familles) {
  return Identification(s, d, mesures, familles).executer();
}

}  // namespace topomine
