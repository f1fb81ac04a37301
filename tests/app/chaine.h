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

inline std::string balise(const std::string& nom, const std::string& dedans) {
  return "<" + nom + ">" + dedans + "</" + nom + ">\n";
}
inline std::string balise(const std::string& nom, double v) {
  char texte[40];
  std::snprintf(texte, sizeof texte, "%.10g", v);
  return balise(nom, std::string(texte));
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
  return {".def",
          ".def",
          "_" + mode + ".blck",
          "_" + mode + ".face",
          "_" + mode + ".edge",
          "_" + mode + ".vrtx"};
}
inline std::string fichier(const std::string& chemin, int k, const std::string& suite) {
  return chemin + nom_base(k) + "/" + nom_base(k) + suite;
}

inline void ecrire_chaines(const std::string& chemin, const std::string& mode) {
  ecrire(chemin + "climite.cfg",
         "Damas code;BCCODE;Family;\n11;1;paroi;\n12;9999;loin;\n13;13;autre;\n");
  for (int k = 0; k < 8; ++k) {
    std::string avion, blocs, faces, edges, vrtxs;
    for (const char* texte : {"name", "family"}) avion += balise(texte, "A");
    for (const char* nombre : {"fuse_length", "fuse_width", "height", "wing_span", "corde",
                               "wing_area", "sweep", "nb_engine"})
      avion += balise(nombre, 1);
    const std::string piece = balise("nom", "p") + balise("family", "paroi") +
                              balise("topologie", k % 2 == 1 ? "c" : "H");
    const int n = nb_blocs(k);
    for (int i = 1; i <= n; ++i) {
      const auto m = mesures(k, i);
      std::string volumes, cases = balise("Face", balise("Numero", 1) + balise("NbSubFace", 0));
      const char* noms[]{"Exact", "Moyen", "Mor", "NSMB"};
      for (std::size_t v = 0; v < 4; ++v) volumes += balise(noms[v], balise("Cell", m[v + 1]));
      for (int cote = 0; cote < 2; ++cote)
        cases += balise("Face", balise("Numero", 3 + 3 * cote) + balise("NbSubFace", 1) +
                                    balise("SubFace", i + cote));
      blocs += balise("Block", balise("Ident", i) + balise("Type", 30 + i) +
                                   balise("Erikson", balise("Cell", m[0])) +
                                   balise("Volumes", volumes) + balise("Faces", cases));
    }
    const auto codes = [](const std::string& bc) { return balise("Boundary_Conditions", bc); };
    for (int f = 1; f <= n + 1; ++f) {
      const std::string tete = balise("Ident", f) + balise("NumCaract", 1);
      faces += balise("Face", tete + balise("Type", 1) +
                                  (f == 1       ? codes(balise("BC", 11))
                                   : f == n + 1 ? codes(balise("BC", 12) + balise("BC", 99))
                                                : "") +
                                  balise("Edge", balise("Numero", 2) + balise("NbSubEdge", 1) +
                                                     balise("SubEdge", f)));
      edges +=
          balise("Edge", tete + (f == 1 ? codes(balise("BC", 13)) : "") + balise("NbVertex", 2) +
                             balise("Vertices", balise("rmin", f) + balise("rmax", f + 1)));
    }
    for (int v = 1; v <= n + 2; ++v)
      vrtxs +=
          balise("Vertex", balise("Ident", v) +
                               balise("Coord", balise("X", v) + balise("Y", 0) + balise("Z", 0)));
    const std::string textes[]{
        balise("definition_scene", balise("reference_avion", avion) +
                                       balise("liste_pieces", balise("piece", piece)) +
                                       balise("liste_raccords", "")),
        balise("Blocks", blocs), balise("Faces", faces), balise("Edges", edges),
        balise("Vertices", vrtxs)};
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

inline std::string chiffres(double v, int combien) {
  char texte[40];
  std::snprintf(texte, sizeof texte, "%.*g", combien, v);
  return texte;
}

/// The matrix of the chains, as the file holds it and as the progress lines say it.
struct Matrice {
  std::string fichier, progres = "Creation matrice de covariance...\n";
  Matrice() {
    std::vector<std::vector<double>> x(44);
    for (int k = 0; k < 8; ++k)
      for (int i = 1; i <= nb_blocs(k); ++i)
        for (std::size_t c = 0; c < 44; ++c)
          x[c].push_back(std::stod(chiffres(ligne_chaine(k, i)[c], 6)));
    for (auto& col : x) {
      const double min = *std::min_element(col.begin(), col.end());
      const double max = *std::max_element(col.begin(), col.end());
      const double d = max == min ? 1.0 : max - min;
      for (double& v : col) v = std::stod(chiffres(v / d - min / d, 6));
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
        fichier += chiffres(moyenne, 5) + "\t";
        progres += chiffres(moyenne, 6) + "\n";
      }
    progres += "fin...\n";
  }
};
