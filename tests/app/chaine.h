#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "dataset/basebuffer.h"
#include "tests/app/execution.h"

// A collection of eight chains of 1 to 3 blocks, its files, and what a run makes of it, reckoned
// from the chain alone. Block i stands between faces i and i + 1, face f holds edge f, edge f joins
// vertices f and f + 1.

/// printf into a string.
template <class... V>
std::string texte(const char* format, V... valeurs) {
  char tampon[600];
  std::snprintf(tampon, sizeof tampon, format, valeurs...);
  return tampon;
}

inline std::string nom_base(int k) {
  return "mesh_case_" + std::string(1, char('1' + k));
}
inline int nb_blocs(int k) {
  return 1 + k % 3;
}
/// Erikson, then the exact, Moyen, Mor and NSMB volumes of block i of base k.
inline std::array<double, 5> mesures(int k, int i) {
  return {0.125 * i, k + 1.0 * i, k * i + 0.5, std::ldexp(1.0, i) + k, 3.0 - i * i};
}

/// What stands after a base's name in its files' names, in the order of reading.
inline std::vector<std::string> fichiers_lus(const std::string& mode) {
  std::vector<std::string> fins{".def", ".def"};
  for (const char* f : {".blck", ".face", ".edge", ".vrtx"}) fins.push_back("_" + mode + f);
  return fins;
}
inline std::string fichier(const std::string& chemin, int k, const std::string& suite) {
  return chemin + nom_base(k) + "/" + nom_base(k) + suite;
}

inline void ecrire_chaines(const std::string& chemin, const std::string& mode) {
  ecrire(chemin + "climite.cfg",
         "Damas code;BCCODE;Family;\n11;1;paroi;\n12;9999;loin;\n13;13;autre;\n");
  for (int k = 0; k < 8; ++k) {
    const int n = nb_blocs(k);
    std::string blocs, faces, edges, vrtxs;
    for (int i = 1; i <= n; ++i) {
      const auto m = mesures(k, i);
      blocs += texte(
          "<B><Ident>%d</Ident><Type>%d</Type><Erikson><Cell>%.9g</Cell></Erikson><Volumes>"
          "<NSMB><Cell>%.9g</Cell></NSMB><Mor><Cell>%.9g</Cell></Mor>"
          "<Moyen><Cell>%.9g</Cell></Moyen><Exact><Cell>%.9g</Cell></Exact></Volumes><Faces>"
          "<Face><Numero>3</Numero><NbSubFace>1</NbSubFace><SubFace>%d</SubFace></Face>"
          "<Face><Numero>6</Numero><NbSubFace>1</NbSubFace><SubFace>%d</SubFace></Face>"
          "<Face><Numero>1</Numero><NbSubFace>0</NbSubFace></Face></Faces></B>\n",
          i, 30 + i, m[0], m[4], m[3], m[2], m[1], i, i + 1);
    }
    for (int f = 1; f <= n + 2; ++f) {
      const char* codes = f == 1 ? "<BC>11</BC>" : f == n + 1 ? "<BC>12</BC><BC>99</BC>" : "";
      vrtxs += texte("<V><Ident>%d</Ident><Coord><X>%d</X><Y>0</Y><Z>0</Z></Coord></V>\n", f, f);
      if (f == n + 2) break;  // one vertex more
      faces += texte(
          "<F><Ident>%d</Ident><NumCaract>1</NumCaract><Type>1</Type>"
          "<Boundary_Conditions>%s</Boundary_Conditions><Edge><Numero>2</Numero>"
          "<NbSubEdge>1</NbSubEdge><SubEdge>%d</SubEdge></Edge></F>\n",
          f, codes, f);
      edges += texte(
          "<E><Ident>%d</Ident><NumCaract>1</NumCaract>"
          "<Boundary_Conditions>%s</Boundary_Conditions><NbVertex>2</NbVertex>"
          "<Vertices><rmin>%d</rmin><rmax>%d</rmax></Vertices></E>\n",
          f, f == 1 ? "<BC>13</BC>" : "", f, f + 1);
    }
    const std::string textes[]{
        "<definition_scene><reference_avion><name>A</name><family>A</family>"
        "<fuse_length>1</fuse_length><fuse_width>1</fuse_width><height>1</height>"
        "<wing_span>1</wing_span><corde>1</corde><wing_area>1</wing_area><sweep>1</sweep>"
        "<nb_engine>1</nb_engine></reference_avion><liste_pieces/><liste_raccords/>"
        "</definition_scene>",
        "<Blocks>" + blocs + "</Blocks>", "<Faces>" + faces + "</Faces>",
        "<Edges>" + edges + "</Edges>", "<Vertices>" + vrtxs + "</Vertices>"};
    for (std::size_t t = 0; t < 5; ++t)
      ecrire(fichier(chemin, k, fichiers_lus(mode)[t + 1]), textes[t]);
  }
}

/// The numbers of a row: columns 3 to 46, as the table holds them before normalisation.
inline std::vector<double> ligne_chaine(int k, int i) {
  std::vector<int> voisins;
  if (i > 1) voisins.push_back(i - 1);
  if (i < nb_blocs(k)) voisins.push_back(i + 1);
  std::vector<double> ligne{1.0 * static_cast<double>(voisins.size())};
  for (double m : mesures(k, i)) ligne.push_back(m);
  for (std::size_t m = 0; m < 5; ++m) {
    double somme = 0, carres = 0, n = voisins.empty() ? 1.0 : static_cast<double>(voisins.size());
    for (int v : voisins) {
      somme += mesures(k, v)[m];
      carres += mesures(k, v)[m] * mesures(k, v)[m];
    }
    ligne.push_back(somme / n);
    ligne.push_back(carres / n - somme / n * (somme / n));
  }
  std::vector<double> comptes(28, 0.0);
  if (i == 1) comptes[0] = comptes[14 + 12] = 1;  // code 11 on its face, 13 on its edge
  if (i == nb_blocs(k)) comptes[13] = 2;          // 12, and 99 that repeats it
  ligne.insert(ligne.end(), comptes.begin(), comptes.end());
  return ligne;
}

/// The matrix of the chains, as the file holds it and as the progress lines say it.
struct Matrice {
  std::string fichier, progres = "Creation matrice de covariance...\n";
  Matrice() {
    std::vector<std::vector<double>> x(44);
    for (int k = 0; k < 8; ++k)
      for (int i = 1; i <= nb_blocs(k); ++i)
        for (std::size_t c = 0; c < 44; ++c)
          x[c].push_back(std::stod(texte("%g", ligne_chaine(k, i)[c])));
    for (auto& col : x) {
      const double min = *std::min_element(col.begin(), col.end());
      const double max = *std::max_element(col.begin(), col.end());
      const double d = max == min ? 1.0 : max - min;
      for (double& v : col) v = std::stod(texte("%g", v / d - min / d));
    }
    const auto attributs = BaseBuffer()._attr;
    for (std::size_t a = 0; a < 50; ++a, fichier += "\n")
      for (std::size_t b = 0; b < 50; ++b) {
        progres += attributs[a].first + " / " + attributs[b].first + "\t";
        if (a < 3 || b < 3 || a > 46 || b > 46) {
          fichier += "NaN\t";
          progres += "NaN\n";
          continue;
        }
        double somme = 0;
        for (std::size_t i = 0; i < x[0].size(); ++i) somme += x[a - 3][i] * x[b - 3][i];
        const double moyenne = somme / static_cast<double>(x[0].size());
        fichier += texte("%.5g\t", moyenne);
        progres += texte("%g\n", moyenne);
      }
    progres += "fin...\n";
  }
};
