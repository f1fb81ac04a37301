#include "tools/gen/ecriture.h"

#include <algorithm>
#include <span>

#include "sortie.h"
#include "tools/gen/hexaedre.h"

namespace gen {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view entete = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";

enum class Mode { ext, nrm, min };
constexpr std::array<std::pair<Mode, std::string_view>, 3> modes{
    {{Mode::ext, "_ext"}, {Mode::nrm, "_nrm"}, {Mode::min, "_min"}}};

void creer(const fs::path& dossier) {
  std::error_code erreur;
  fs::create_directories(dossier, erreur);
  if (erreur) echouer(dossier, erreur.value());
}

struct Boite {
  Vec bas{1e300, 1e300, 1e300}, haut{-1e300, -1e300, -1e300};
  void couvrir(const Vec& p) {
    bas = {std::min(bas.x, p.x), std::min(bas.y, p.y), std::min(bas.z, p.z)};
    haut = {std::max(haut.x, p.x), std::max(haut.y, p.y), std::max(haut.z, p.z)};
  }
};

/// Contacts of `num`, from `debut` on; `debut` moves past them.
std::span<const Contact> suivants(const std::vector<Contact>& contacts, std::size_t& debut,
                                  Num num) {
  const std::size_t premier = debut;
  while (debut < contacts.size() && contacts[debut].num == num) ++debut;
  return {contacts.data() + premier, debut - premier};
}

void ecrire_xyz(Sortie& s, std::string_view element, const Vec& p) {
  s("<", element, "><X>", p.x, "</X><Y>", p.y, "</Y><Z>", p.z, "</Z></", element, ">");
}

/// The aircraft's numbers are the extents of the domain (fuse_*, height) and of its walls (others).
void ecrire_scene(const fs::path& chemin, const Forme& f, const Maillage& m) {
  Boite domaine, parois;
  for (const Vec& p : m.sommets) domaine.couvrir(p);
  for (const Contact& c : m.sommets_bord)
    if (condition(m.patchs[c.patch]).bccode == 1) parois.couvrir(m.sommets[c.num]);
  const Vec d = domaine.haut - domaine.bas, p = parois.haut - parois.bas;

  Sortie s(chemin);
  s(entete, "<definition_scene>\n<reference_avion>\n<name>", f.nom, "</name>\n<family>banc_",
    static_cast<unsigned>(m.blocs.size()), "_blocs</family>\n<fuse_length>", d.x,
    "</fuse_length>\n<fuse_width>", d.z, "</fuse_width>\n<height>", d.y, "</height>\n<wing_span>",
    p.z, "</wing_span>\n<corde>", p.x, "</corde>\n<wing_area>", p.x * p.z, "</wing_area>\n<sweep>",
    f.fleche, "</sweep>\n<nb_engine>", f.nb_moteur,
    "</nb_engine>\n</reference_avion>\n<liste_pieces>\n");
  for (const Piece& piece : f.pieces) {
    const std::string famille = "paroi_" + piece.nom;
    const auto nb = std::count_if(m.faces.begin(), m.faces.end(), [&](const Face& face) {
      return face.nb_bloc == 1 && famille == condition(m.patchs[face.patch]).famille;
    });
    s("<piece><nom>", piece.nom, "</nom><family>", famille, "</family><topologie>",
      std::string_view(&piece.topologie, 1), "</topologie><special>mesure</special><special>",
      static_cast<unsigned>(nb), " faces</special><special>type paroi</special></piece>\n");
  }
  s("</liste_pieces>\n<liste_raccords>\n");
  for (const Raccord& r : f.raccords)
    s("<raccord><piece>", r.piece1, "</piece><piece>", r.piece2, "</piece><type>", r.type,
      "</type></raccord>\n");
  s("</liste_raccords>\n</definition_scene>\n");
  s.fermer();
}

void ecrire_blocs(const fs::path& chemin, const Maillage& m) {
  Sortie s(chemin);
  s(entete, "<Blocks>\n");
  for (Num b = 0; b < m.blocs.size(); ++b) {
    const Bloc& bloc = m.blocs[b];
    Hexaedre h;
    for (unsigned c = 0; c < 8; ++c) h[c] = m.sommets[bloc.sommets[c]];
    const auto libres = std::count_if(bloc.faces.begin(), bloc.faces.end(),
                                      [&m](Num face) { return m.faces[face].nb_bloc == 1; });
    s("<Block><Ident>", b + 1, "</Ident><Type>", 30 + static_cast<unsigned>(libres),
      "</Type><Erikson><Cell>", jacobien_min(h), "</Cell></Erikson>\n<Volumes><Exact><Cell>",
      volume_exact(h), "</Cell></Exact><Mor><Cell>", volume_mor(h), "</Cell></Mor><Moyen><Cell>",
      volume_moyen(h), "</Cell></Moyen><NSMB><Cell>", volume_nsmb(h),
      "</Cell></NSMB></Volumes>\n<Faces>\n");
    for (unsigned i = 0; i < 6; ++i)
      s("<Face><Numero>", i + 1, "</Numero><NbSubFace>1</NbSubFace><SubFace>", bloc.faces[i] + 1,
        "</SubFace></Face>\n");
    s("</Faces></Block>\n");
  }
  s("</Blocks>\n");
  s.fermer();
}

/// NumCaract: number of blocks on the face. Type: number of its edges.
void ecrire_faces(const fs::path& chemin, const Maillage& m, Mode mode) {
  Sortie s(chemin);
  s(entete, "<Faces>\n");
  for (Num f = 0; f < m.faces.size(); ++f) {
    const Face& face = m.faces[f];
    s("<Face><Ident>", f + 1, "</Ident><NumCaract>", unsigned{face.nb_bloc},
      "</NumCaract><Type>4</Type>");
    if (face.nb_bloc == 1) {
      s("<Boundary_Conditions><BC>", m.patchs[face.patch], "</BC></Boundary_Conditions>");
      if (mode != Mode::min) s("\n<Surfaces><Surf>", face.patch + 1, "</Surf></Surfaces>");
    }
    s("\n");
    for (unsigned i = 0; i < 4; ++i)
      s("<Edge><Numero>", i + 1, "</Numero><NbSubEdge>1</NbSubEdge><SubEdge>", face.edges[i] + 1,
        "</SubEdge></Edge>\n");
    s("</Face>\n");
  }
  s("</Faces>\n");
  s.fermer();
}

/// NumCaract: number of faces on the edge.
void ecrire_edges(const fs::path& chemin, const Maillage& m, Mode mode) {
  const std::size_t assez = mode == Mode::ext ? 1 : 2;  // patches that must meet to be written
  std::size_t lus = 0;
  Sortie s(chemin);
  s(entete, "<Edges>\n");
  for (Num e = 0; e < m.edges.size(); ++e) {
    const Edge& edge = m.edges[e];
    const auto contacts = suivants(m.edges_bord, lus, e);
    s("<Edge><Ident>", e + 1, "</Ident><NumCaract>", edge.nb_face, "</NumCaract>");
    if (mode != Mode::min && contacts.size() >= assez) {
      s("<Boundary_Conditions>");
      for (const Contact& c : contacts) s("<BC>", m.patchs[c.patch], "</BC>");
      s("</Boundary_Conditions>");
    }
    s("<NbVertex>2</NbVertex><Vertices><rmin>", edge.a + 1, "</rmin><rmax>", edge.b + 1,
      "</rmax></Vertices></Edge>\n");
  }
  s("</Edges>\n");
  s.fermer();
}

void ecrire_sommets(const fs::path& chemin, const Maillage& m, Mode mode) {
  Sortie s(chemin);
  s(entete, "<Vertices>\n");
  std::size_t lus = 0;
  for (Num v = 0; v < m.sommets.size(); ++v) {
    s("<Vertex><Ident>", v + 1, "</Ident>");
    ecrire_xyz(s, "Coord", m.sommets[v]);
    s("\n");
    for (const Contact& c : suivants(m.sommets_bord, lus, v)) {
      if (mode == Mode::min) break;
      s("<Proj><Famille>", c.patch + 1, "</Famille>");
      ecrire_xyz(s, "Coord", m.sommets[v]);
      ecrire_xyz(s, "Normale", c.normale);
      s("</Proj>\n");
    }
    s("</Vertex>\n");
  }
  s("</Vertices>\n");
  s.fermer();
}

}  // namespace

void ecrire_conditions(const fs::path& dossier) {
  creer(dossier);
  Sortie s(dossier / "climite.cfg");
  s("Damas code;BCCODE;Family;\n");
  for (const Condition& c : conditions) s(c.code, ";", c.bccode, ";", c.famille, ";\n");
  s.fermer();
}

void ecrire_base(const fs::path& dossier, const std::string& nom, const Forme& f,
                 const Maillage& m) {
  creer(dossier / nom);
  const std::string prefixe = (dossier / nom / nom).string();
  ecrire_scene(prefixe + ".def", f, m);
  for (const auto& [mode, suffixe] : modes) {
    const std::string debut = prefixe + std::string(suffixe);
    ecrire_blocs(debut + ".blck", m);
    ecrire_faces(debut + ".face", m, mode);
    ecrire_edges(debut + ".edge", m, mode);
    ecrire_sommets(debut + ".vrtx", m, mode);
  }
}

}  // namespace gen
