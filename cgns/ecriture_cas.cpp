#include "cgns/ecriture_cas.h"

#include <algorithm>
#include <charconv>
#include <ostream>

#include "base/ecriture.h"
#include "mesh/numbering.h"

namespace topomine {

namespace {

/// Numbers as they read back to the same ones, the shortest way.
class Plume {
 public:
  explicit Plume(std::ostream& out) : out_(out) {}

  template <class... T>
  void operator()(const T&... valeurs) {
    (ajouter(valeurs), ...);
  }

 private:
  void ajouter(std::string_view texte) { out_ << texte; }
  void ajouter(int v) { convertir(v); }
  void ajouter(double v) { convertir(v == 0 ? 0.0 : v); }

  template <class T>
  void convertir(T v) {
    char chiffres[32];
    const char* const fin = std::to_chars(chiffres, chiffres + sizeof chiffres, v).ptr;
    out_.write(chiffres, fin - chiffres);
  }

  std::ostream& out_;
};

std::vector<int> codes(const CasImporte& cas, const std::vector<std::size_t>& familles) {
  std::vector<int> r;
  r.reserve(familles.size());
  for (const std::size_t f : familles) r.push_back(cas.familles.liste[f].code);
  return r;
}

int rang(std::size_t famille) {
  return static_cast<int>(famille) + 1;
}

}  // namespace

void ecrire_scene(std::ostream& out, const CasImporte& cas, const std::string& nom) {
  const Boite& b = cas.scene.parois;
  const Vec d = b.vide() ? Vec{} : b.haut - b.bas;
  SceneEcrite scene{.nom = nom,
                    .famille = nom_de_famille(cas.structure.base),
                    .fuse_length = d.x,
                    .fuse_width = d.z,
                    .height = d.y,
                    .wing_span = d.z,
                    .corde = d.x,
                    .wing_area = d.x * d.z};
  for (const PieceSuggeree& p : cas.scene.pieces)
    scene.pieces.push_back({.nom = p.nom,
                            .famille = p.famille,
                            .topologie = p.topologie,
                            .speciaux = {"mesure", std::to_string(p.nb_faces) + " faces"}});
  for (const RaccordSuggere& r : cas.scene.raccords)
    scene.raccords.push_back({.piece1 = r.piece1, .piece2 = r.piece2, .type = r.type});
  Plume s(out);
  ecrire(s, scene);
}

void ecrire_blocs(std::ostream& out, const CasImporte& cas) {
  Plume s(out);
  ecrire_entites(s, fic_blck, [&] {
    for (std::size_t b = 0; b < cas.topologie.blocs.size(); ++b) {
      const BlocTopo& bloc = cas.topologie.blocs[b];
      const MesuresZone& m = cas.mesures[b];
      BlocEcrit e{.numero = static_cast<int>(b) + 1,
                  .type = type_sans_bord + bloc.nb_bord,
                  .erikson = m.erikson,
                  .exact = m.exact,
                  .mor = m.mor,
                  .moyen = m.moyen,
                  .nsmb = m.nsmb};
      std::ranges::copy(bloc.faces, e.faces.begin());
      ecrire(s, e);
    }
  });
}

void ecrire_faces(std::ostream& out, const CasImporte& cas, Mode mode) {
  Plume s(out);
  ecrire_entites(s, fic_face, [&] {
    for (const FaceTopo& f : cas.topologie.faces) {
      const std::vector<int> bc = codes(cas, f.familles);
      std::vector<int> surfaces;
      if (mode != Mode::min)
        for (const std::size_t famille : f.familles) surfaces.push_back(rang(famille));
      FaceEcrite e{.numero = f.numero, .nb_blocs = f.nb_blocs, .codes = bc, .surfaces = surfaces};
      for (std::size_t c = 0; c < f.edges.size(); ++c)
        e.edges[c] = CaseEcrite(&f.edges[c], f.edges[c] > 0 ? 1 : 0);
      ecrire(s, e);
    }
  });
}

void ecrire_edges(std::ostream& out, const CasImporte& cas, Mode mode) {
  const std::size_t assez = mode == Mode::ext ? 1 : 2;  // families that must meet to be written
  Plume s(out);
  ecrire_entites(s, fic_edge, [&] {
    int numero = 0;
    for (const EdgeTopo& edge : cas.topologie.edges) {
      std::vector<int> bc;
      if (mode != Mode::min && edge.familles.size() >= assez) bc = codes(cas, edge.familles);
      ecrire(s, EdgeEcrite{.numero = ++numero,
                           .nb_faces = edge.nb_faces,
                           .codes = bc,
                           .rmin = edge.debut,
                           .rmax = edge.fin});
    }
  });
}

void ecrire_vertices(std::ostream& out, const CasImporte& cas, Mode mode) {
  Plume s(out);
  ecrire_entites(s, fic_vrtx, [&] {
    int numero = 0;
    for (const SommetTopo& v : cas.topologie.sommets) {
      std::vector<ProjectionEcrite> projections;
      if (mode != Mode::min)
        for (const auto& [famille, normale] : v.normales)
          projections.push_back(
              {.famille = rang(famille), .position = v.position, .normale = normale});
      ecrire(s,
             SommetEcrit{.numero = ++numero, .position = v.position, .projections = projections});
    }
  });
}

}  // namespace topomine
