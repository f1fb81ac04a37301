#include "cgns/ecriture_cas.h"

#include <charconv>
#include <ostream>

#include "mesh/numbering.h"

namespace topomine {

namespace {

constexpr std::string_view entete = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";

/// A number as it reads back to the same one, the shortest way.
std::string nombre(double v) {
  char chiffres[32];
  return {chiffres, std::to_chars(chiffres, chiffres + sizeof chiffres, v == 0 ? 0.0 : v).ptr};
}
std::string nombre(int v) {
  return std::to_string(v);
}

/// <nom>valeur</nom>
template <class T>
std::string el(const char* nom, const T& valeur) {
  std::string r = std::string("<") + nom + ">";
  if constexpr (std::is_arithmetic_v<T>)
    r += nombre(valeur);
  else
    r += valeur;
  return r + "</" + nom + ">";
}

std::string xyz(const char* nom, const Vec& p) {
  return el(nom, el("X", p.x) + el("Y", p.y) + el("Z", p.z));
}

/// A slot with what is in it.
std::string une_case(const char* quoi, const char* nb, const char* sous, int numero,
                     const std::vector<int>& contenu) {
  std::string r = el("Numero", numero) + el(nb, static_cast<int>(contenu.size()));
  for (const int n : contenu) r += el(sous, n);
  return el(quoi, r) + "\n";
}

std::string codes(const CasImporte& cas, const std::vector<std::size_t>& familles) {
  std::string r;
  for (const std::size_t f : familles) r += el("BC", cas.familles.liste[f].code);
  return familles.empty() ? r : el("Boundary_Conditions", r);
}

int rang(std::size_t famille) {
  return static_cast<int>(famille) + 1;
}

}  // namespace

std::string xml(std::string_view texte) {
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

void ecrire_scene(std::ostream& out, const CasImporte& cas, const std::string& nom) {
  const Boite& b = cas.scene.parois;
  const Vec d = b.vide() ? Vec{} : b.haut - b.bas;
  out << entete << "<definition_scene>\n<reference_avion>\n"
      << el("name", xml(nom)) << '\n'
      << el("family", xml(nom_de_famille(cas.structure.base))) << '\n'
      << el("fuse_length", d.x) << '\n'
      << el("fuse_width", d.z) << '\n'
      << el("height", d.y) << '\n'
      << el("wing_span", d.z) << '\n'
      << el("corde", d.x) << '\n'
      << el("wing_area", d.x * d.z) << '\n'
      << el("sweep", 0) << '\n'
      << el("nb_engine", 0) << "\n</reference_avion>\n<liste_pieces>\n";
  for (const PieceSuggeree& p : cas.scene.pieces)
    out << el("piece", el("nom", xml(p.nom)) + el("family", xml(p.famille)) +
                           el("topologie", std::string(1, p.topologie)) + el("special", "mesure") +
                           el("special", nombre(p.nb_faces) + " faces"))
        << '\n';
  out << "</liste_pieces>\n<liste_raccords>\n";
  for (const RaccordSuggere& r : cas.scene.raccords)
    out << el("raccord",
              el("piece", xml(r.piece1)) + el("piece", xml(r.piece2)) + el("type", r.type))
        << '\n';
  out << "</liste_raccords>\n</definition_scene>\n";
}

void ecrire_blocs(std::ostream& out, const CasImporte& cas) {
  out << entete << "<Blocks>\n";
  for (std::size_t b = 0; b < cas.topologie.blocs.size(); ++b) {
    const BlocTopo& bloc = cas.topologie.blocs[b];
    const MesuresZone& m = cas.mesures[b];
    out << "<Block>" << el("Ident", static_cast<int>(b) + 1) << el("Type", 30 + bloc.nb_bord)
        << el("Erikson", el("Cell", m.erikson)) << '\n'
        << el("Volumes", el("Exact", el("Cell", m.exact)) + el("Mor", el("Cell", m.mor)) +
                             el("Moyen", el("Cell", m.moyen)) + el("NSMB", el("Cell", m.nsmb)))
        << "\n<Faces>\n";
    for (std::size_t slot = 0; slot < bloc.faces.size(); ++slot)
      out << une_case("Face", "NbSubFace", "SubFace", static_cast<int>(slot) + 1, bloc.faces[slot]);
    out << "</Faces></Block>\n";
  }
  out << "</Blocks>\n";
}

void ecrire_faces(std::ostream& out, const CasImporte& cas, Mode mode) {
  out << entete << "<Faces>\n";
  for (const FaceTopo& f : cas.topologie.faces) {
    out << "<Face>" << el("Ident", f.numero) << el("NumCaract", f.nb_blocs)
        << el("Type", nb_edges_face) << codes(cas, f.familles) << '\n';
    if (mode != Mode::min && !f.familles.empty()) {
      std::string surfaces;
      for (const std::size_t famille : f.familles) surfaces += el("Surf", rang(famille));
      out << el("Surfaces", surfaces) << '\n';
    }
    for (std::size_t c = 0; c < f.edges.size(); ++c)
      out << une_case("Edge", "NbSubEdge", "SubEdge", static_cast<int>(c) + 1,
                      f.edges[c] > 0 ? std::vector{f.edges[c]} : std::vector<int>{});
    out << "</Face>\n";
  }
  out << "</Faces>\n";
}

void ecrire_edges(std::ostream& out, const CasImporte& cas, Mode mode) {
  const std::size_t assez = mode == Mode::ext ? 1 : 2;  // families that must meet to be written
  out << entete << "<Edges>\n";
  for (std::size_t e = 0; e < cas.topologie.edges.size(); ++e) {
    const EdgeTopo& edge = cas.topologie.edges[e];
    out << "<Edge>" << el("Ident", static_cast<int>(e) + 1) << el("NumCaract", edge.nb_faces);
    if (mode != Mode::min && edge.familles.size() >= assez) out << codes(cas, edge.familles);
    out << el("NbVertex", nb_vrtxs_edge)
        << el("Vertices", el("rmin", edge.debut) + el("rmax", edge.fin)) << "</Edge>\n";
  }
  out << "</Edges>\n";
}

void ecrire_vertices(std::ostream& out, const CasImporte& cas, Mode mode) {
  out << entete << "<Vertices>\n";
  for (std::size_t v = 0; v < cas.topologie.sommets.size(); ++v) {
    const SommetTopo& s = cas.topologie.sommets[v];
    out << "<Vertex>" << el("Ident", static_cast<int>(v) + 1) << xyz("Coord", s.position) << '\n';
    for (const auto& [famille, normale] : s.normales) {
      if (mode == Mode::min) break;
      out << el("Proj",
                el("Famille", rang(famille)) + xyz("Coord", s.position) + xyz("Normale", normale))
          << '\n';
    }
    out << "</Vertex>\n";
  }
  out << "</Vertices>\n";
}

}  // namespace topomine
