#include "cgns/mesures.h"

#include <algorithm>
#include <string>

#include "mesh/numbering.h"

namespace topomine {

namespace {

/// Shorter than this part of its zone, a line is a point: equal numbers, give or take the rounding
/// of what wrote them.
constexpr double part_ecrasee = 1e-9;

/// The nodes of a piece of surface, by their place along l and m.
class Surface {
 public:
  Surface(const Coordonnees& c, const Plage& plage, int place)
      : c_(c), plage_(plage), place_(place), axes_(axes_lm[static_cast<std::size_t>(place % 3)]) {
    for (std::size_t d = 0; d < 2; ++d) n_[d] = plage.max[axes_[d]] - plage.min[axes_[d]] + 1;
  }

  Indice nb(std::size_t d) const { return n_[d]; }
  Vec operator()(Indice l, Indice m) const {
    Ijk p = plage_.min;
    p[axes_[0]] += l;
    p[axes_[1]] += m;
    return c_.noeud(p);
  }
  /// 1 when l x m points out of a right-handed zone, else -1.
  double dehors() const {
    const double lm = place_ % 3 == 1 ? -1 : 1;
    return place_ / 3 ? lm : -lm;
  }
  /// Twice the area vector of the cell face from (l,m).
  Vec aire(Indice l, Indice m) const {
    return vectoriel((*this)(l + 1, m + 1) - (*this)(l, m), (*this)(l, m + 1) - (*this)(l + 1, m));
  }

 private:
  const Coordonnees& c_;
  Plage plage_;
  int place_;
  std::array<std::size_t, 2> axes_;
  std::array<Indice, 2> n_{};
};

double tetraedre(const Vec& a, const Vec& b, const Vec& c) {
  return det(a, b, c) / 6;
}

/// Volume between a bilinear quadrilateral and the origin: the mean of its two cuts into triangles,
/// since the surface halves the tetrahedron of its four corners.
double sous_la_face(const Vec& p, const Vec& q, const Vec& r, const Vec& s) {
  return 0.5 * (tetraedre(p, q, r) + tetraedre(p, r, s) + tetraedre(p, q, s) + tetraedre(q, r, s));
}

double longueur(const Coordonnees& c, const Plage& ligne) {
  double somme = 0;
  Ijk p = ligne.min;
  for (const std::size_t a : axes_ijk)
    for (; p[a] < ligne.max[a]; ++p[a]) {
      Ijk suivant = p;
      ++suivant[a];
      somme += norme(c.noeud(suivant) - c.noeud(p));
    }
  return somme;
}

/// Both directions of a piece: has every line along it shrunk?
std::array<bool, 2> mesurer_lignes(const Surface& f, double petite) {
  std::array<bool, 2> ecrase{true, true};
  for (Indice m = 0; m < f.nb(1) && ecrase[0]; ++m) {
    double somme = 0;
    for (Indice l = 0; l + 1 < f.nb(0); ++l) somme += norme(f(l + 1, m) - f(l, m));
    ecrase[0] = somme <= petite;
  }
  for (Indice l = 0; l < f.nb(0) && ecrase[1]; ++l) {
    double somme = 0;
    for (Indice m = 0; m + 1 < f.nb(1); ++m) somme += norme(f(l, m + 1) - f(l, m));
    ecrase[1] = somme <= petite;
  }
  return ecrase;
}

/// Sum of the cell faces' area vectors along one side.
Vec aire_du_cote(const Surface& f, std::size_t cote) {
  const Indice nl = f.nb(0) - 1, nm = f.nb(1) - 1;
  const Indice l0 = cote == 2 ? nl - 1 : 0, l1 = cote == 0 ? 1 : nl;
  const Indice m0 = cote == 3 ? nm - 1 : 0, m1 = cote == 1 ? 1 : nm;
  Vec somme;
  for (Indice m = m0; m < m1; ++m)
    for (Indice l = l0; l < l1; ++l) somme = somme + f.aire(l, m);
  return somme;
}

MesuresMorceau mesurer_morceau(const Coordonnees& c, const Morceau& morceau, double sens,
                               double petite) {
  const Surface f(c, morceau.plage, morceau.place);
  MesuresMorceau r;
  Vec moyenne;
  for (Indice m = 0; m < f.nb(1); ++m)
    for (Indice l = 0; l < f.nb(0); ++l) {
      r.boite.couvrir(f(l, m));
      if (l + 1 < f.nb(0) && m + 1 < f.nb(1)) moyenne = moyenne + f.aire(l, m);
    }
  const auto dehors = [&](const Vec& aire) {
    const Vec n = unitaire(aire);
    return (f.dehors() * sens) * (scalaire(n, n) > 0 ? n : unitaire(moyenne));
  };
  for (std::size_t n = 0; n < 4; ++n) {
    const Indice l = n & 1 ? f.nb(0) - 1 : 0, m = n >> 1 ? f.nb(1) - 1 : 0;
    r.coins[n] = f(l, m);
    r.normales[n] = dehors(f.aire(l ? l - 1 : 0, m ? m - 1 : 0));
    r.normales_cotes[n] = dehors(aire_du_cote(f, n));
    r.cotes_ecrases[n] = longueur(c, cote_de_morceau(morceau.plage, morceau.place, n)) <= petite;
  }
  r.ecrase = mesurer_lignes(f, petite);
  return r;
}

}  // namespace

Plage arete_de_zone(const Ijk& taille, std::size_t n) {
  Plage p = zone_entiere(taille);
  const std::size_t axe = n / 4;
  for (std::size_t d = 0; d < 2; ++d) {
    const std::size_t autre = axes_lm[axe][d];
    p.min[autre] = p.max[autre] = n >> d & 1 ? taille[autre] : 1;
  }
  return p;
}

Plage cote_de_morceau(const Plage& plage, int place, std::size_t cote) {
  const std::size_t axe = axes_lm[static_cast<std::size_t>(place % 3)][cote % 2];
  Plage p = plage;
  p.min[axe] = p.max[axe] = cote / 2 ? plage.max[axe] : plage.min[axe];
  return p;
}

// The contributions of a face between two cells cancel, so only the zone's outside is summed.
double volume_exact(const Coordonnees& c) {
  const Vec origine = c.noeud({1, 1, 1});
  double volume = 0;
  for (int place = 0; place < nb_faces_bloc; ++place) {
    const Surface f(c, face_entiere(c.taille, place), place);
    double somme = 0;
    for (Indice m = 0; m + 1 < f.nb(1); ++m)
      for (Indice l = 0; l + 1 < f.nb(0); ++l)
        somme += sous_la_face(f(l, m) - origine, f(l + 1, m) - origine, f(l + 1, m + 1) - origine,
                              f(l, m + 1) - origine);
    volume += f.dehors() * somme;
  }
  return volume;
}

MesuresZone mesurer(const Structure& s, const Decoupage& d, std::size_t zone, const Coordonnees& c,
                    unsigned fils) {
  MesuresZone r;
  r.exact = volume_exact(c);
  r.gauche = r.exact < 0;
  const double sens = r.gauche ? -1 : 1;
  const MesuresCellules cellules = mesurer_cellules(c, sens, fils);
  if (!cellules.finies)
    throw MaillageRefuse("zone '" + s.zones[zone].nom +
                         "' : coordonnees qui ne sont pas des nombres finis");
  r.exact *= sens;
  // Over all cells, the two cuts of each into five tetrahedra cut every face along both of its
  // diagonals: their mean is the exact volume again.
  r.moyen = r.exact;
  r.nsmb = cellules.centres;
  r.erikson = cellules.jacobien_min;

  Boite boite;
  for (std::size_t n = 0; n < 8; ++n) {
    Ijk p;
    for (const std::size_t a : axes_ijk) p[a] = n >> a & 1 ? c.taille[a] : 1;
    r.coins[n] = c.noeud(p);
  }
  for (int place = 0; place < nb_faces_bloc; ++place) {
    const Surface f(c, face_entiere(c.taille, place), place);
    for (Indice m = 0; m < f.nb(1); ++m)
      for (Indice l = 0; l < f.nb(0); ++l) boite.couvrir(f(l, m));
  }
  r.taille = boite.diagonale();
  const double petite = part_ecrasee * r.taille;
  r.mor = 1;
  for (std::size_t axe = 0; axe < 3; ++axe) {
    double somme = 0;
    for (std::size_t n = 4 * axe; n < 4 * axe + 4; ++n) {
      const double l = longueur(c, arete_de_zone(c.taille, n));
      r.aretes_ecrasees[n] = l <= petite;
      somme += l;
    }
    r.mor *= somme / 4;
  }
  for (std::size_t m = d.debut(zone, 0); m < d.fin(zone, nb_faces_bloc - 1); ++m)
    r.morceaux.push_back(mesurer_morceau(c, d.morceaux[m], sens, petite));
  return r;
}

std::vector<bool> pieces_ecrasees(const Decoupage& d, const std::vector<MesuresZone>& mesures) {
  std::vector<bool> r;
  for (std::size_t m = 0; m < d.morceaux.size(); ++m) {
    const std::size_t zone = d.morceaux[m].zone;
    const MesuresMorceau& mesure = mesures[zone].morceaux[m - d.debut(zone, 0)];
    r.push_back(mesure.ecrase[0] || mesure.ecrase[1]);
  }
  return r;
}

}  // namespace topomine
