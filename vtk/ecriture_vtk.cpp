#include <algorithm>
#include <ostream>
#include <string>

#include "vtk/ecriture.h"
#include "vtk/flux_vtk.h"

namespace topomine {

namespace {

/// A name without blanks: bytes that would end it are written as "%20" is.
std::string nom_sans_blanc(const std::string& nom) {
  constexpr std::string_view chiffres = "0123456789ABCDEF";
  std::string s;
  for (const char c : nom) {
    const auto octet = static_cast<unsigned char>(c);
    if (octet > ' ' && octet < 127 && c != '"' && c != '%')
      s += c;
    else
      s += {'%', chiffres[octet / 16U], chiffres[octet % 16U]};
  }
  return s;
}

/// The second line: at most 255 characters, no line end.
std::string titre(std::string texte) {
  std::ranges::replace_if(
      texte, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return texte.substr(0, 255);
}

void champs(std::ostream& out, const std::vector<Donnee>& donnees, std::size_t nb) {
  out << "FIELD donnees " << donnees.size() << '\n';
  for (const Donnee& d : donnees) {
    const char* type = std::holds_alternative<std::vector<int>>(d.valeurs) ? "int" : "double";
    out << nom_sans_blanc(d.nom) << " 1 " << nb << ' ' << type << '\n';
    FluxVtk flux(out);
    std::visit(
        [&](const auto& valeurs) {
          for (const auto v : valeurs) flux.nombre(v);
        },
        d.valeurs);
    flux.fin_de_ligne();
  }
}

}  // namespace

void ecrire_vtk(std::ostream& out, const Grille& grille) {
  FluxVtk flux(out);
  const std::size_t nb = grille.cellules.size();
  out << "# vtk DataFile Version 3.0\n"
      << titre(grille.titre) << "\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS "
      << grille.points.size() << " double\n";
  for (const Vec& p : grille.points)
    for (const double x : {p.x, p.y, p.z}) flux.nombre(x);
  flux.fin_de_ligne();

  std::size_t entrees = nb;
  for (const Cellule& c : grille.cellules) entrees += c.nb;
  out << "CELLS " << nb << ' ' << entrees << '\n';
  for (const Cellule& c : grille.cellules) {
    flux.nombre(c.nb);
    for (std::size_t i = 0; i < c.nb; ++i) flux.nombre(c.points[i]);
    flux.fin_de_ligne();
  }
  out << "CELL_TYPES " << nb << '\n';
  for (const Cellule& c : grille.cellules) flux.nombre(static_cast<int>(c.type));
  flux.fin_de_ligne();
  out << "POINT_DATA " << grille.points.size() << '\n';
  champs(out, {{"vertex", grille.vertices}}, grille.points.size());
  out << "CELL_DATA " << nb << '\n';
  champs(out, grille.donnees, nb);
}

const FormatVtk* format_vtk(std::string_view fichier) {
  const auto* trouve = std::ranges::find_if(
      formats_vtk, [&](const FormatVtk& f) { return fichier.ends_with(f.extension); });
  return trouve == formats_vtk.end() ? nullptr : trouve;
}

}  // namespace topomine
