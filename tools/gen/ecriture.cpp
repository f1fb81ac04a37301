#include "tools/gen/ecriture.h"

#include <algorithm>
#include <span>

#include "base/configuration.h"
#include "base/ecriture.h"
#include "base/modes.h"
#include "mesh/hexaedre.h"
#include "mesh/numbering.h"
#include "tools/gen/sortie.h"

namespace topomine::gen {

namespace {

namespace fs = std::filesystem;

void creer(const fs::path& dossier) {
  std::error_code erreur;
  fs::create_directories(dossier, erreur);
  if (erreur) echouer(dossier, erreur.value());
}

/// Contacts of `num`, from `debut` on; `debut` moves past them.
std::span<const Contact> suivants(const std::vector<Contact>& contacts, std::size_t& debut,
                                  Num num) {
  const std::size_t premier = debut;
  while (debut < contacts.size() && contacts[debut].num == num) ++debut;
  return {contacts.data() + premier, debut - premier};
}

/// As the files count.
int numero(Num n) {
  return static_cast<int>(n) + 1;
}

template <std::size_t n>
std::array<int, n> numeros(const std::array<Num, n>& liste) {
  std::array<int, n> r;
  std::ranges::transform(liste, r.begin(), numero);
  return r;
}

/// Slots with one entity each.
template <std::size_t n>
std::array<CaseEcrite, n> cases(const std::array<int, n>& contenus) {
  std::array<CaseEcrite, n> r;
  for (std::size_t i = 0; i < n; ++i) r[i] = CaseEcrite(&contenus[i], 1);
  return r;
}

/// The aircraft's numbers are the extents of the domain (fuse_*, height) and of its walls (others).
void ecrire_scene(const fs::path& chemin, const Forme& f, const Maillage& m) {
  Boite domaine, parois;
  for (const Vec& p : m.sommets) domaine.couvrir(p);
  for (const Contact& c : m.sommets_bord)
    if (condition(m.patchs[c.patch]).bccode == bccode_paroi) parois.couvrir(m.sommets[c.num]);
  const Vec d = domaine.haut - domaine.bas, p = parois.haut - parois.bas;
  const std::string banc = "banc_" + std::to_string(m.blocs.size()) + "_blocs";
  SceneEcrite scene{.nom = f.nom,
                    .famille = banc,
                    .fuse_length = d.x,
                    .fuse_width = d.z,
                    .height = d.y,
                    .wing_span = p.z,
                    .corde = p.x,
                    .wing_area = p.x * p.z,
                    .sweep = f.fleche,
                    .nb_engine = f.nb_moteur};
  for (const Piece& piece : f.pieces) {
    const std::string famille = "paroi_" + piece.nom;
    const auto nb = std::count_if(m.faces.begin(), m.faces.end(), [&](const Face& face) {
      return face.nb_bloc == 1 && famille == condition(m.patchs[face.patch]).famille;
    });
    scene.pieces.push_back({.nom = piece.nom,
                            .famille = famille,
                            .topologie = piece.topologie,
                            .speciaux = {"mesure", std::to_string(nb) + " faces", "type paroi"}});
  }
  for (const Raccord& r : f.raccords)
    scene.raccords.push_back({.piece1 = r.piece1, .piece2 = r.piece2, .type = r.type});
  Sortie s(chemin);
  ecrire(s, scene);
  s.fermer();
}

void ecrire_blocs(const fs::path& chemin, const Maillage& m) {
  Sortie s(chemin);
  ecrire_entites(s, fic_blck, [&] {
    for (Num b = 0; b < m.blocs.size(); ++b) {
      const Bloc& bloc = m.blocs[b];
      Hexaedre h;
      for (unsigned c = 0; c < 8; ++c) h[c] = m.sommets[bloc.sommets[c]];
      const auto libres = std::count_if(bloc.faces.begin(), bloc.faces.end(),
                                        [&m](Num face) { return m.faces[face].nb_bloc == 1; });
      const auto faces = numeros(bloc.faces);
      const MesuresHexaedre mesures = mesurer(h);
      ecrire(s, BlocEcrit{.numero = numero(b),
                          .type = type_sans_bord + static_cast<int>(libres),
                          .erikson = mesures.erikson,
                          .exact = mesures.exact,
                          .mor = mesures.mor,
                          .moyen = mesures.moyen,
                          .nsmb = mesures.nsmb,
                          .faces = cases(faces)});
    }
  });
  s.fermer();
}

/// nb_blocs: number of blocks on the face.
void ecrire_faces(const fs::path& chemin, const Maillage& m, Mode mode) {
  Sortie s(chemin);
  ecrire_entites(s, fic_face, [&] {
    for (Num f = 0; f < m.faces.size(); ++f) {
      const Face& face = m.faces[f];
      const bool bord = face.nb_bloc == 1;
      const int code = bord ? m.patchs[face.patch] : 0, surface = bord ? face.patch + 1 : 0;
      const auto edges = numeros(face.edges);
      ecrire(s, FaceEcrite{.numero = numero(f),
                           .nb_blocs = face.nb_bloc,
                           .codes = {&code, bord ? 1U : 0U},
                           .surfaces = {&surface, bord && mode != Mode::min ? 1U : 0U},
                           .edges = cases(edges)});
    }
  });
  s.fermer();
}

void ecrire_edges(const fs::path& chemin, const Maillage& m, Mode mode) {
  const std::size_t assez = mode == Mode::ext ? 1 : 2;  // patches that must meet to be written
  std::size_t lus = 0;
  Sortie s(chemin);
  ecrire_entites(s, fic_edge, [&] {
    std::vector<int> codes;
    for (Num e = 0; e < m.edges.size(); ++e) {
      const Edge& edge = m.edges[e];
      const auto contacts = suivants(m.edges_bord, lus, e);
      codes.clear();
      if (mode != Mode::min && contacts.size() >= assez)
        for (const Contact& c : contacts) codes.push_back(m.patchs[c.patch]);
      ecrire(s, EdgeEcrite{.numero = numero(e),
                           .nb_faces = static_cast<int>(edge.nb_face),
                           .codes = codes,
                           .rmin = numero(edge.a),
                           .rmax = numero(edge.b)});
    }
  });
  s.fermer();
}

void ecrire_sommets(const fs::path& chemin, const Maillage& m, Mode mode) {
  Sortie s(chemin);
  ecrire_entites(s, fic_vrtx, [&] {
    std::size_t lus = 0;
    std::vector<ProjectionEcrite> projections;
    for (Num v = 0; v < m.sommets.size(); ++v) {
      projections.clear();
      const auto contacts = suivants(m.sommets_bord, lus, v);
      if (mode != Mode::min)
        for (const Contact& c : contacts)
          projections.push_back(
              {.famille = numero(c.patch), .position = m.sommets[v], .normale = c.normale});
      ecrire(s, SommetEcrit{
                    .numero = numero(v), .position = m.sommets[v], .projections = projections});
    }
  });
  s.fermer();
}

}  // namespace

void ecrire_conditions(const fs::path& dossier) {
  creer(dossier);
  Sortie s(dossier / "climite.cfg");
  s(entete_climite);
  for (const Condition& c : conditions) s(c.code, ";", c.bccode, ";", c.famille, ";\n");
  s.fermer();
}

void ecrire_base(const fs::path& dossier, const std::string& nom, const Forme& f,
                 const Maillage& m) {
  creer(dossier / nom);
  const std::string prefixe = (dossier / nom / nom).string();
  ecrire_scene(prefixe + fin_de_nom(fic_def), f, m);
  for (const Mode mode : tous_les_modes) {
    const auto fichier = [&](Fichier x) { return prefixe + fin_de_nom(x, topomine::nom(mode)); };
    ecrire_blocs(fichier(fic_blck), m);
    ecrire_faces(fichier(fic_face), m, mode);
    ecrire_edges(fichier(fic_edge), m, mode);
    ecrire_sommets(fichier(fic_vrtx), m, mode);
  }
}

}  // namespace topomine::gen
