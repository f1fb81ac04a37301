#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/fichiers.h"
#include "mesh/vecteur.h"

namespace topomine {

// The XML files of a case, as docs/formats.md has them, entity by entity. `Flux` is called with
// texts and numbers to append, and decides how many digits a number has.

inline constexpr std::string_view entete_xml = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";

/// Text for an XML element, in the bytes that it has: "&", "<" and ">" as entities.
inline std::string xml(std::string_view texte) {
  std::string r;
  for (const char c : texte) {
    if (c == '&')
      r += "&amp;";
    else if (c == '<')
      r += "&lt;";
    else if (c == '>')
      r += "&gt;";
    else
      r += c;
  }
  return r;
}

struct PieceEcrite {
  std::string nom, famille;
  char topologie = 'H';
  std::vector<std::string> speciaux{};  ///< readers leave the first one out
};

struct RaccordEcrit {
  std::string piece1, piece2, type;
};

struct SceneEcrite {
  std::string nom, famille;
  double fuse_length = 0, fuse_width = 0, height = 0, wing_span = 0, corde = 0, wing_area = 0,
         sweep = 0;
  int nb_engine = 0;
  std::vector<PieceEcrite> pieces{};
  std::vector<RaccordEcrit> raccords{};
};

/// Numbers of entities in a slot: none, one, or those that share it.
using CaseEcrite = std::span<const int>;

struct BlocEcrit {
  int numero = 0, type = 0;
  double erikson = 0, exact = 0, mor = 0, moyen = 0, nsmb = 0;
  std::array<CaseEcrite, 6> faces{};
};

struct FaceEcrite {
  int numero = 0, nb_blocs = 0;
  std::span<const int> codes{}, surfaces{};
  std::array<CaseEcrite, 4> edges{};
};

struct EdgeEcrite {
  int numero = 0, nb_faces = 0;
  std::span<const int> codes{};
  int rmin = 0, rmax = 0;
};

struct ProjectionEcrite {
  int famille = 0;
  Vec position{}, normale{};
};

struct SommetEcrit {
  int numero = 0;
  Vec position{};
  std::span<const ProjectionEcrite> projections{};
};

template <class Flux>
void ecrire(Flux& s, const SceneEcrite& scene) {
  s(entete_xml, "<definition_scene>\n<reference_avion>\n<name>", xml(scene.nom),
    "</name>\n<family>", xml(scene.famille), "</family>\n<fuse_length>", scene.fuse_length,
    "</fuse_length>\n<fuse_width>", scene.fuse_width, "</fuse_width>\n<height>", scene.height,
    "</height>\n<wing_span>", scene.wing_span, "</wing_span>\n<corde>", scene.corde,
    "</corde>\n<wing_area>", scene.wing_area, "</wing_area>\n<sweep>", scene.sweep,
    "</sweep>\n<nb_engine>", scene.nb_engine, "</nb_engine>\n</reference_avion>\n<liste_pieces>\n");
  for (const PieceEcrite& p : scene.pieces) {
    s("<piece><nom>", xml(p.nom), "</nom><family>", xml(p.famille), "</family><topologie>",
      std::string_view(&p.topologie, 1), "</topologie>");
    for (const std::string& special : p.speciaux) s("<special>", xml(special), "</special>");
    s("</piece>\n");
  }
  s("</liste_pieces>\n<liste_raccords>\n");
  for (const RaccordEcrit& r : scene.raccords)
    s("<raccord><piece>", xml(r.piece1), "</piece><piece>", xml(r.piece2), "</piece><type>", r.type,
      "</type></raccord>\n");
  s("</liste_raccords>\n</definition_scene>\n");
}

/// One line per slot; quoi: "Face" or "Edge".
template <class Flux>
void ecrire_cases(Flux& s, std::string_view quoi, std::span<const CaseEcrite> cases) {
  int numero = 0;
  for (const CaseEcrite& contenu : cases) {
    s("<", quoi, "><Numero>", ++numero, "</Numero><NbSub", quoi, ">",
      static_cast<int>(contenu.size()), "</NbSub", quoi, ">");
    for (const int n : contenu) s("<Sub", quoi, ">", n, "</Sub", quoi, ">");
    s("</", quoi, ">\n");
  }
}

template <class Flux>
void ecrire_codes(Flux& s, std::span<const int> codes) {
  if (codes.empty()) return;
  s("<Boundary_Conditions>");
  for (const int code : codes) s("<BC>", code, "</BC>");
  s("</Boundary_Conditions>");
}

template <class Flux>
void ecrire_xyz(Flux& s, std::string_view element, const Vec& p) {
  s("<", element, "><X>", p.x, "</X><Y>", p.y, "</Y><Z>", p.z, "</Z></", element, ">");
}

template <class Flux>
void ecrire(Flux& s, const BlocEcrit& b) {
  s("<Block><Ident>", b.numero, "</Ident><Type>", b.type, "</Type><Erikson><Cell>", b.erikson,
    "</Cell></Erikson>\n<Volumes><Exact><Cell>", b.exact, "</Cell></Exact><Mor><Cell>", b.mor,
    "</Cell></Mor><Moyen><Cell>", b.moyen, "</Cell></Moyen><NSMB><Cell>", b.nsmb,
    "</Cell></NSMB></Volumes>\n<Faces>\n");
  ecrire_cases(s, "Face", b.faces);
  s("</Faces></Block>\n");
}

template <class Flux>
void ecrire(Flux& s, const FaceEcrite& f) {
  s("<Face><Ident>", f.numero, "</Ident><NumCaract>", f.nb_blocs, "</NumCaract><Type>4</Type>");
  ecrire_codes(s, f.codes);
  s("\n");
  if (!f.surfaces.empty()) {
    s("<Surfaces>");
    for (const int n : f.surfaces) s("<Surf>", n, "</Surf>");
    s("</Surfaces>\n");
  }
  ecrire_cases(s, "Edge", f.edges);
  s("</Face>\n");
}

template <class Flux>
void ecrire(Flux& s, const EdgeEcrite& e) {
  s("<Edge><Ident>", e.numero, "</Ident><NumCaract>", e.nb_faces, "</NumCaract>");
  ecrire_codes(s, e.codes);
  s("<NbVertex>2</NbVertex><Vertices><rmin>", e.rmin, "</rmin><rmax>", e.rmax,
    "</rmax></Vertices></Edge>\n");
}

template <class Flux>
void ecrire(Flux& s, const SommetEcrit& v) {
  s("<Vertex><Ident>", v.numero, "</Ident>");
  ecrire_xyz(s, "Coord", v.position);
  s("\n");
  for (const ProjectionEcrite& p : v.projections) {
    s("<Proj><Famille>", p.famille, "</Famille>");
    ecrire_xyz(s, "Coord", p.position);
    ecrire_xyz(s, "Normale", p.normale);
    s("</Proj>\n");
  }
  s("</Vertex>\n");
}

/// The entities of a mesh file between the tags of its top element.
template <class Flux, class Corps>
void ecrire_entites(Flux& s, Fichier f, Corps corps) {
  const std::string_view liste = sortes_de_fichier[f].racine;
  s(entete_xml, "<", liste, ">\n");
  corps();
  s("</", liste, ">\n");
}

}  // namespace topomine
