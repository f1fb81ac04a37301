#include "cgns/paquet.h"

#include <cmath>

#include "mesh/numbering.h"

namespace topomine {

namespace {

// One function per type both writes and reads (`a` is Emballage or Deballage).

template <class A, class T, std::size_t n>
void passer(A& a, std::array<T, n>& valeurs);
template <class A, class T>
void passer(A& a, std::vector<T>& liste);

template <class A, class T>
requires(std::is_arithmetic_v<T> || std::is_same_v<T, std::string>) void passer(A& a, T& v) {
  a(v);
}

template <class A>
void passer(A& a, Vec& v) {
  for (double* x : {&v.x, &v.y, &v.z}) a(*x);
}

template <class A>
void passer(A& a, Boite& b) {
  passer(a, b.bas);
  passer(a, b.haut);
}

template <class A>
void passer(A& a, Plage& p) {
  passer(a, p.min);
  passer(a, p.max);
}

template <class A>
void passer(A& a, Zone& z) {
  passer(a, z.nom);
  passer(a, z.taille);
}

template <class A>
void passer(A& a, Jonction& j) {
  passer(a, j.nom);
  passer(a, j.zone);
  passer(a, j.voisine);
  passer(a, j.plage);
  passer(a, j.passage.depuis);
  passer(a, j.passage.vers);
  passer(a, j.passage.t);
}

template <class A>
void passer(A& a, Condition& c) {
  passer(a, c.nom);
  passer(a, c.famille);
  passer(a, c.bccode);
  passer(a, c.degeneree);
  passer(a, c.de_raccord);
  passer(a, c.zone);
  passer(a, c.plage);
}

template <class A>
void passer(A& a, MesuresMorceau& m) {
  passer(a, m.coins);
  passer(a, m.normales);
  passer(a, m.normales_cotes);
  passer(a, m.cotes_ecrases);
  passer(a, m.ecrase);
  passer(a, m.boite);
}

template <class A>
void passer(A& a, MesuresZone& m) {
  for (double* v : {&m.exact, &m.mor, &m.moyen, &m.nsmb, &m.erikson, &m.taille}) a(*v);
  passer(a, m.gauche);
  passer(a, m.coins);
  passer(a, m.aretes_ecrasees);
  passer(a, m.morceaux);
}

template <class A, class T, std::size_t n>
void passer(A& a, std::array<T, n>& valeurs) {
  for (T& v : valeurs) passer(a, v);
}

template <class A, class T>
void passer(A& a, std::vector<T>& liste) {
  const std::size_t n = a.taille(liste.size());
  for (std::size_t i = 0; i < n; ++i) {
    if (i == liste.size()) liste.emplace_back();
    passer(a, liste[i]);
  }
}

template <class A>
void passer(A& a, Extrait& e) {
  passer(a, e.structure.base);
  passer(a, e.structure.zones);
  passer(a, e.structure.jonctions);
  passer(a, e.structure.conditions);
  passer(a, e.structure.dits);
  passer(a, e.mesures);
}

bool fini(const Vec& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool finie(const MesuresZone& m) {
  bool r = true;
  for (const double v : {m.exact, m.mor, m.moyen, m.nsmb, m.erikson, m.taille})
    r = r && std::isfinite(v);
  for (const MesuresMorceau& morceau : m.morceaux)
    for (std::size_t n = 0; n < 4; ++n)
      r = r && fini(morceau.coins[n]) && fini(morceau.normales[n]) &&
          fini(morceau.normales_cotes[n]);
  return r;
}

}  // namespace

void emballer(Emballage& vers, Extrait& e) {
  passer(vers, e);
}

Extrait deballer(std::string_view octets) {
  Deballage de(octets);
  Extrait e;
  passer(de, e);
  if (!de.fini()) throw MaillageRefuse("resultat trop long");
  valider(e.structure);
  if (e.mesures.size() != e.structure.zones.size()) throw MaillageRefuse("resultat incomplet");
  for (std::size_t z = 0; z < e.mesures.size(); ++z)
    if (!finie(e.mesures[z]))
      throw MaillageRefuse("zone '" + e.structure.zones[z].nom + "' : mesures sans valeur finie");
  return e;
}

void accorder(const Extrait& e, const Decoupage& d) {
  for (std::size_t z = 0; z < e.mesures.size(); ++z)
    if (e.mesures[z].morceaux.size() != d.fin(z, nb_faces_bloc - 1) - d.debut(z, 0))
      throw MaillageRefuse("resultat incomplet");
}

}  // namespace topomine
