#include "verifie/examen.h"

#include <algorithm>

namespace topomine {

namespace {

template <class Entite>
std::vector<const Entite*> adresses(const std::map<int, Entite>& table) {
  std::vector<const Entite*> liste;
  liste.reserve(table.size());
  for (const auto& [numero, entite] : table) liste.push_back(&entite);
  return liste;
}

}  // namespace

Examen::Examen(CasLu& cas_lu, const ConfigLue& configuration)
    : cas(cas_lu),
      config(configuration),
      maille(cas.base),
      blocs(adresses(cas.base.blocs)),
      faces(adresses(cas.base.faces)),
      edges(adresses(cas.base.edges)) {
  for (const Fichier f : {fic_blck, fic_face, fic_edge, fic_vrtx})
    douteux[f].assign(static_cast<std::size_t>(rangs(f).nb()), false);
  for (const auto& [numero, parties] : cas.illisibles[fic_vrtx])
    if (const int rang = maille.num_sommets.rang(numero); rang >= 0) douter(fic_vrtx, rang);
}

bool Examen::lus(std::initializer_list<Fichier> fichiers) const {
  return std::ranges::all_of(fichiers, [this](Fichier f) { return cas.lus[f]; });
}

const Rangs& Examen::rangs(Fichier f) const {
  switch (f) {
    case fic_blck:
      return maille.num_blocs;
    case fic_face:
      return maille.num_faces;
    case fic_edge:
      return maille.num_edges;
    default:
      return maille.num_sommets;
  }
}

bool Examen::est_douteux(Fichier f, int rang) const {
  return douteux[f][static_cast<std::size_t>(rang)];
}

void Examen::douter(Fichier f, int rang) {
  douteux[f][static_cast<std::size_t>(rang)] = true;
}

void Examen::signaler(Code code, Fichier f, int rang, const std::string& quoi,
                      const std::string& champ) {
  const int n = numero(f, rang);
  cas.signaler(code, f, cas.ligne(f, n), sorte(f), std::to_string(n), quoi);
  cas.constats.back().champ = champ;
}

void Examen::signaler(Code code, Fichier f, const std::string& quoi, int ligne) {
  cas.signaler(code, f, ligne, "fichier", "", quoi);
}

const char* sorte(Fichier f) {
  return sortes_de_fichier[f].sorte;
}

std::string enumerer(std::span<const int> numeros) {
  constexpr std::size_t assez = 6;
  std::string texte;
  for (std::size_t i = 0; i < numeros.size() && i <= assez; ++i)
    texte += (i == 0 ? "" : ", ") + (i < assez ? std::to_string(numeros[i]) : "...");
  return texte;
}

}  // namespace topomine
