#include <ostream>
#include <string>

#include "vtk/ecriture.h"
#include "vtk/flux_vtk.h"

namespace topomine {

namespace {

/// A text as an attribute's value.
std::string proteger(std::string_view texte) {
  std::string s;
  for (const char c : texte) {
    if (c == '&')
      s += "&amp;";
    else if (c == '<')
      s += "&lt;";
    else if (c == '"')
      s += "&quot;";
    else
      s += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  return s;
}

template <class Ecrire>
void tableau(std::ostream& out, const std::string& attributs, Ecrire ecrire) {
  out << "<DataArray " << attributs << " format=\"ascii\">\n";
  FluxVtk flux(out);
  ecrire(flux);
  flux.fin_de_ligne();
  out << "</DataArray>\n";
}

void donnee(std::ostream& out, const Donnee& d) {
  const char* type = std::holds_alternative<std::vector<int>>(d.valeurs) ? "Int32" : "Float64";
  tableau(out, std::string("type=\"") + type + "\" Name=\"" + proteger(d.nom) + '"',
          [&](FluxVtk& flux) {
            std::visit(
                [&](const auto& valeurs) {
                  for (const auto v : valeurs) flux.nombre(v);
                },
                d.valeurs);
          });
}

void cellules(std::ostream& out, const std::vector<Cellule>& cellules) {
  out << "<Cells>\n";
  tableau(out, "type=\"Int64\" Name=\"connectivity\"", [&](FluxVtk& flux) {
    for (const Cellule& c : cellules)
      for (std::size_t i = 0; i < c.nb; ++i) flux.nombre(c.points[i]);
  });
  tableau(out, "type=\"Int64\" Name=\"offsets\"", [&](FluxVtk& flux) {
    std::size_t fin = 0;
    for (const Cellule& c : cellules) flux.nombre(fin += c.nb);
  });
  tableau(out, "type=\"UInt8\" Name=\"types\"", [&](FluxVtk& flux) {
    for (const Cellule& c : cellules) flux.nombre(static_cast<int>(c.type));
  });
  out << "</Cells>\n";
}

}  // namespace

void ecrire_vtu(std::ostream& out, const Grille& grille) {
  out << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
         "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
         "header_type=\"UInt64\">\n<UnstructuredGrid>\n<Piece NumberOfPoints=\""
      << grille.points.size() << "\" NumberOfCells=\"" << grille.cellules.size()
      << "\">\n<PointData>\n";
  donnee(out, {"vertex", grille.vertices});
  out << "</PointData>\n<CellData Scalars=\"ident\">\n";
  for (const Donnee& d : grille.donnees) donnee(out, d);
  out << "</CellData>\n<Points>\n";
  tableau(out, "type=\"Float64\" Name=\"Points\" NumberOfComponents=\"3\"", [&](FluxVtk& flux) {
    for (const Vec& p : grille.points)
      for (const double x : {p.x, p.y, p.z}) flux.nombre(x);
  });
  out << "</Points>\n";
  cellules(out, grille.cellules);
  out << "</Piece>\n</UnstructuredGrid>\n</VTKFile>\n";
}

}  // namespace topomine
