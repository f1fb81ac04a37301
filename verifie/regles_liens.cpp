#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "verifie/examen.h"

namespace topomine {

namespace {

/// Numbers that the file next to `de` lacks, with the entities that name them.
struct Citant {
  int rang, place;
};
using Manquants = std::map<int, std::vector<Citant>>;

/// So many of the numbers are missing that the two files do not belong together.
bool etrangers(std::size_t manquants, std::size_t cibles) {
  return manquants > 3 && manquants * 10 > cibles;
}

void dire_manquants(Examen& x, Fichier de, const Manquants& manquants) {
  const auto vers = static_cast<Fichier>(de + 1);
  // As many entities lost their own number: these are the missing ones.
  if (manquants.size() <= static_cast<std::size_t>(x.cas.perdus[vers])) return;
  const std::string quoi = sorte(vers);
  if (etrangers(manquants.size(), static_cast<std::size_t>(x.rangs(vers).nb()))) {
    x.liens_perdus = true;
    x.signaler(Code::liens_d_un_autre_cas, de,
               std::to_string(manquants.size()) + " numeros de " + quoi + " n'existent pas dans " +
                   x.cas.noms[vers]);
    return;
  }
  for (const auto& [numero, citants] : manquants) {
    std::string dit = quoi + ' ' + std::to_string(numero) + " n'existe pas";
    std::vector<int> autres;
    const Citant& premier = citants.front();
    for (const Citant& c : citants)
      if (c.rang != premier.rang) autres.push_back(x.numero(de, c.rang));
    autres.erase(std::unique(autres.begin(), autres.end()), autres.end());
    if (!autres.empty())
      dit += std::string(", nommee aussi par ") + sorte(de) + ' ' + enumerer(autres);
    const std::string place = std::to_string(premier.place + 1);
    x.signaler(Code::reference_absente, de, premier.rang, dit,
               de == fic_blck       ? "Faces/Face/" + place
               : de == fic_face     ? "Edge/" + place
               : premier.place == 0 ? "Vertices/rmin"
                                    : "Vertices/rmax");
  }
}

/// The slots of the entities of file `de`, as ranks of the next one.
template <std::size_t N, class Entites, class Lire>
void relier(Examen& x, Fichier de, Liens<N>& cases, const Entites& entites, Lire lire) {
  const auto vers = static_cast<Fichier>(de + 1);
  const bool lus = x.lus({de, vers});
  Manquants manquants;
  cases.resize(entites.size());
  for (std::size_t i = 0; i < entites.size(); ++i) {
    const int rang = static_cast<int>(i);
    const bool illisible = x.cas.illisible(de, x.numero(de, rang), partie_liens);
    for (std::size_t s = 0; s < N; ++s) {
      const int numero = lire(*entites[i], static_cast<int>(s));
      int& la = cases[i][s];
      la = numero > 0 ? x.rangs(vers).rang(numero) : illisible || de == fic_edge ? inconnu : vide;
      if (numero > 0 && la == inconnu && lus)
        manquants[numero].push_back({rang, static_cast<int>(s)});
      if (la >= 0 && x.cas.disputes[vers].contains(numero)) la = inconnu;
    }
  }
  if (lus) dire_manquants(x, de, manquants);
}

/// Slots that several faces share. Of such a slot only their count is kept, in the place of a
/// number: harmless as long as nothing else has that number.
void relier_partages(Examen& x) {
  std::map<std::size_t, std::vector<int>> par_compte;
  for (const auto& [bloc, partages] : x.cas.partages)
    for (const Partage& p : partages) {
      std::vector<int>& blocs = par_compte[p.faces.size()];
      if (blocs.empty() || blocs.back() != bloc) blocs.push_back(bloc);
    }
  for (const auto& [bloc, partages] : x.cas.partages) {
    const int rang = x.maille.num_blocs.rang(bloc);
    if (rang < 0) continue;
    for (const Partage& p : partages) {
      const std::size_t nb = p.faces.size();
      const std::string champ = "Faces/Face/" + std::to_string(p.numero);
      const std::string quoi = "face " + std::to_string(p.numero) + " : NbSubFace vaut " +
                               std::to_string(nb) + ", lu comme un numero";
      if (x.lus({fic_face}) && x.maille.num_faces.rang(static_cast<int>(nb)) >= 0)
        x.signaler(Code::case_multiple, fic_blck, rang, quoi + " : celui d'une autre face", champ);
      else if (const auto& blocs = par_compte[nb]; blocs.size() > 1)
        x.signaler(Code::case_multiple, fic_blck, rang,
                   quoi + " : les blocs " + enumerer(blocs) + " passent pour voisins", champ);
      else
        x.signaler(Code::face_partagee, fic_blck, rang,
                   "face " + std::to_string(p.numero) + " en " + std::to_string(nb) +
                       " sous-faces : " + enumerer(p.faces),
                   champ);
      for (const int f : p.faces)
        if (const int la = x.maille.num_faces.rang(f); la >= 0)
          x.maille.partages.emplace_back(rang, la);
        else if (x.lus({fic_face}) && x.cas.perdus[fic_face] == 0)
          x.signaler(Code::reference_absente, fic_blck, rang,
                     "face " + std::to_string(f) + " n'existe pas", champ);
    }
  }
}

}  // namespace

void regle_references(Examen& x) {
  relier(x, fic_blck, x.maille.blocs, x.blocs, [](const Block& b, int i) { return b._face(i); });
  relier_partages(x);
  relier(x, fic_face, x.maille.faces, x.faces, [](const Face& f, int i) { return f._edge(i); });
  relier(x, fic_edge, x.maille.edges, x.edges, [](const Edge& e, int i) { return e._vrtx(i); });
}

namespace {

template <std::size_t N>
void dire_orphelins(Examen& x, Fichier de, const Liens<N>& cases, const char* quoi) {
  const auto vers = static_cast<Fichier>(de + 1);
  if (!x.lus({de, vers}) || x.cas.perdus[de] > 0) return;
  std::vector<char> cites(static_cast<std::size_t>(x.rangs(vers).nb()), 0);
  std::size_t trous = 0;
  for (const auto& places : cases)
    for (const int la : places) {
      if (la >= 0) au(cites, la) = true;
      trous += la == inconnu;
    }
  if (vers == fic_face)
    for (const auto& [bloc, face] : x.maille.partages) au(cites, face) = true;
  std::vector<int> orphelins;
  for (int v = 0; v < x.rangs(vers).nb(); ++v)
    if (!au(cites, v) && !x.est_douteux(vers, v) &&
        !x.cas.disputes[vers].contains(x.numero(vers, v)))
      orphelins.push_back(v);
  // A slot that could not be read may be the one that names it.
  if (orphelins.size() <= trous) return;
  for (const int v : orphelins) x.signaler(Code::orphelin, vers, v, quoi);
}

/// Faces that lack a block: on none, or on one and without the code of a boundary.
std::vector<int> faces_ouvertes(const Examen& x) {
  std::vector<int> ouvertes;
  for (int f = 0; f < x.maille.num_faces.nb(); ++f) {
    const std::size_t nb = x.maille.blocs_de_face[f].size();
    if (nb == 0 || (nb == 1 && au(x.faces, f)->nb_BC() == 0)) ouvertes.push_back(f);
  }
  return ouvertes;
}

/// Five or six open faces that close on themselves are the outside of a block that is missing.
/// Their component, marked in `vues`; empty when they do not.
std::vector<int> coque(const Examen& x, int premiere, const std::vector<char>& ouverte,
                       std::vector<char>& vues) {
  std::vector<int> faces{premiere};
  au(vues, premiere) = true;
  bool fermee = true;
  for (std::size_t i = 0; i < faces.size(); ++i)
    for (const int e : au(x.maille.faces, faces[i])) {
      if (e < 0) continue;
      const auto autour = x.maille.faces_d_edge[e];
      if (autour.size() > beaucoup) fermee = false;
      int nb = 0;
      for (const int g : autour.first(std::min(autour.size(), beaucoup))) {
        if (!au(ouverte, g)) continue;
        ++nb;
        if (!au(vues, g)) {
          au(vues, g) = true;
          faces.push_back(g);
        }
      }
      fermee = fermee && nb == 2;
    }
  constexpr std::size_t moins = 5;
  if (!fermee || faces.size() < moins || faces.size() > nb_faces_bloc) faces.clear();
  return faces;
}

/// The one number that the blocks skip, and the line where it should be.
struct Trou {
  std::string dit;
  int ligne = 1;
};

Trou trou_de_numeros(const Examen& x) {
  const Rangs& blocs = x.maille.num_blocs;
  for (int b = 1; b < blocs.nb(); ++b)
    if (blocs.numero(b) == blocs.numero(b - 1) + 2)
      return {", sans doute le " + std::to_string(blocs.numero(b) - 1),
              x.cas.ligne(fic_blck, blocs.numero(b))};
  return {};
}

/// All blocks but one have the numbers from 1 to the last.
void dire_hors_suite(Examen& x) {
  const Rangs& blocs = x.maille.num_blocs;
  const int nb = blocs.nb();
  if (nb < 3 || x.cas.perdus[fic_blck] > 0 || blocs.numero(nb - 2) > nb ||
      blocs.numero(nb - 1) <= nb)
    return;
  int b = 0;
  while (blocs.numero(b) == b + 1) ++b;
  x.signaler(
      Code::numero_hors_suite, fic_blck, nb - 1,
      "seul numero hors de 1 a " + std::to_string(nb) + ", ou manque " + std::to_string(b + 1));
}

}  // namespace

void regle_comptes(Examen& x) {
  if (x.liens_perdus) return;
  bool manque = false;  // a block is not there, and its number neither
  if (x.lus({fic_blck, fic_face, fic_edge}) && x.cas.perdus[fic_blck] == 0) {
    std::vector<char> ouverte(x.faces.size(), 0), vues(x.faces.size(), 0);
    const std::vector<int> ouvertes = faces_ouvertes(x);
    for (const int f : ouvertes) au(ouverte, f) = true;
    for (const int f : ouvertes) {
      if (au(vues, f)) continue;
      std::vector<int> faces = coque(x, f, ouverte, vues);
      if (faces.empty()) continue;
      std::ranges::sort(faces);
      for (int& g : faces) {
        x.douter(fic_face, g);
        g = x.numero(fic_face, g);
      }
      manque = true;
      const Trou trou = trou_de_numeros(x);
      x.signaler(Code::bloc_manquant, fic_blck,
                 "un bloc manque entre les faces " + enumerer(faces) + trou.dit, trou.ligne);
    }
  }
  if (!manque) dire_hors_suite(x);
  dire_orphelins(x, fic_blck, x.maille.blocs, "sur aucun bloc");
  dire_orphelins(x, fic_face, x.maille.faces, "sur aucune face");
  dire_orphelins(x, fic_edge, x.maille.edges, "sur aucune edge");
}

}  // namespace topomine
