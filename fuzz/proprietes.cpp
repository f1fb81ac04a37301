#include "fuzz/proprietes.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <sstream>

#include "base/lecture/limites_xml.h"
#include "fuzz/outils.h"

using namespace topomine;

namespace {

struct Mesure {
  int niveaux = 0;
  int attributs = 0;
};

/// Of the tree below `racine`, without recursion.
Mesure mesurer(const TiXmlNode& racine) {
  Mesure m;
  int niveau = 0;
  const TiXmlNode* n = racine.FirstChild();
  while (n && n != &racine) {
    if (const TiXmlElement* e = n->ToElement()) {
      m.niveaux = std::max(m.niveaux, niveau + 1);
      int attributs = 0;
      for (const TiXmlAttribute* a = e->FirstAttribute(); a; a = a->Next()) ++attributs;
      m.attributs = std::max(m.attributs, attributs);
    }
    if (n->FirstChild()) {
      n = n->FirstChild();
      ++niveau;
      continue;
    }
    while (n != &racine && !n->NextSibling()) {
      n = n->Parent();
      --niveau;
    }
    if (n != &racine) n = n->NextSibling();
  }
  return m;
}

}  // namespace

std::string image(const Base& base) {
  std::ostringstream im;
  std::streambuf* const avant = std::cout.rdbuf(im.rdbuf());
  const auto chiffres = std::cout.precision(17);
  base.Print(false);
  // What the listings leave out.
  for (const auto& [n, bloc] : base.blocs) std::cout << n << bloc._typeC() << bloc._forme();
  for (const auto& [n, face] : base.faces)
    for (int i = -1; i < face.nb_edge(); ++i) std::cout << (i < 0 ? n : face._edge(i)) << ' ';
  for (const auto& [n, edge] : base.edges) std::cout << n << ' ';
  for (const auto& [n, vertex] : base.vrtxs) std::cout << n << ' ';
  for (const auto& [famille, piece] : base.pieces) std::cout << famille << piece.nb_spe();
  std::cout.precision(chiffres);
  std::cout.rdbuf(avant);
  return im.str();
}

void verifier_strict(const CasLu& cas, Fichier f, const Base& base) {
  const auto memes = [&](auto Base::*table) {
    Base stricte, lue;
    stricte.*table = cas.base.*table;
    lue.*table = base.*table;
    PROMET(image(stricte) == image(lue));
  };
  const auto cle = [](const auto& entree) -> const auto& {
    return entree.first;
  };
  switch (f) {
    case fic_blck:
      return memes(&Base::blocs);
    case fic_face:
      return memes(&Base::faces);
    case fic_edge:
      return memes(&Base::edges);
    case fic_vrtx:  // without their coordinates, which nothing checks
      PROMET(std::ranges::equal(cas.base.vrtxs, base.vrtxs, {}, cle, cle));
      return;
    default:
      PROMET(std::ranges::equal(cas.base.pieces, base.pieces, [](const auto& a, const auto& b) {
        return a.first == b.first && a.second._nom() == b.second._nom() &&
               a.second._topology() == b.second._topology();
      }));
  }
}

void verifier_garde(std::string texte) {
  texte.resize(std::strlen(texte.c_str()));
  texte.append(4, '\0');
  if (!xml_lisible(texte)) return;
  TiXmlDocument doc;
  doc.SetTabSize(0);
  doc.Parse(texte.c_str());
  const auto [niveaux, attributs] = mesurer(doc);
  if (niveaux > 0) PROMET(!xml_lisible(texte, {niveaux - 1, attributs_max}));
  if (attributs > 0) PROMET(!xml_lisible(texte, {niveaux_max, attributs - 1}));
  if (!doc.Error()) PROMET(xml_lisible(texte, {niveaux, attributs}));
}

void verifier_questions(const Base& base) {
  const auto face_a = [&](int f, int e) {
    const Face& face = base.faces.at(f);
    for (int i = 0; i < face.nb_edge(); ++i)
      if (face._edge(i) == e) return true;
    return false;
  };
  int restent = 40;  // enough to meet every kind of neighbourhood; the rest would only take time
  for (const auto& [b, bloc] : base.blocs) {
    if (--restent < 0) break;
    for (int i = 0; i < nb_faces_bloc; ++i)
      for (int j = 0; j < nb_faces_bloc; ++j) {
        const int e = base.blk_edge(b, i, j);
        if (e > 0) PROMET(face_a(base.blk_face(b, i), e) && face_a(base.blk_face(b, j), e));
        PROMET((e == -2) == (base.blk_face(b, i) == 0 || base.blk_face(b, j) == 0) || e < -2);
      }
    for (int coin = 0; coin < 8; ++coin) {
      const int v = base.blk_vrtx_ijk(b, coin & 1, coin >> 1 & 1, coin >> 2);
      if (v > 0) PROMET(base.vrtxs.contains(v));
    }
    for (const int voisin : base.vois_bloc(b)) PROMET(voisin != b);
  }
  restent = 40;
  for (const auto& [f, face] : base.faces) {
    if (--restent < 0) break;
    for (int coin = 0; coin < 4; ++coin) {
      const int v = base.fac_vrtx_lm(f, coin & 1, coin >> 1);
      if (v > 0) PROMET(base.vrtxs.contains(v));
    }
  }
}
