#include "fuzz/proprietes.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "base/lecture/limites_xml.h"
#include "fuzz/outils.h"

using namespace topomine;

namespace {

/// Appends the bytes of numbers and the texts with their length.
class Image {
 public:
  std::string octets;
  template <class T>
  Image& operator<<(const T& v) {
    octets.append(reinterpret_cast<const char*>(&v), sizeof v);
    return *this;
  }
  Image& operator<<(const std::string& texte) {
    *this << texte.size();
    octets += texte;
    return *this;
  }
  /// The n numbers that `lire` reads by index.
  template <class Lire>
  Image& liste(int n, Lire lire) {
    *this << n;
    for (int i = 0; i < n; ++i) *this << lire(i);
    return *this;
  }
};

void ajouter(Image& im, const Block& b) {
  im << b._id() << b._type() << b._erik() << b._volexa() << b._volmor() << b._volmoy();
  im << b._volnsm() << b._typeC() << b._forme();
  im.liste(b.nb_face(), [&](int i) { return b._face(i); });
}

void ajouter(Image& im, const Face& f) {
  im << f._id() << f._type() << f._carac();
  im.liste(f.nb_BC(), [&](int i) { return f._BC(i); });
  im.liste(f.nb_edge(), [&](int i) { return f._edge(i); });
  im.liste(f.nb_bloc(), [&](int i) { return f._bloc(i); });
  im.liste(f.nb_surf(), [&](int i) { return f._surf(i); });
}

void ajouter(Image& im, const Edge& e) {
  im << e._id() << e._carac();
  im.liste(e.nb_BC(), [&](int i) { return e._BC(i); });
  im.liste(e.nb_vrtx(), [&](int i) { return e._vrtx(i); });
  im.liste(e.nb_face(), [&](int i) { return e._face(i); });
}

void ajouter(Image& im, const Vertex& v) {
  im << v._id() << v._posX() << v._posY() << v._posZ();
  im.liste(v.nb_edge(), [&](int i) { return v._edge(i); });
  for (int k = 0; k < v.nb_proj(); ++k) {
    int surf = 0;
    double px = 0, py = 0, pz = 0, nx = 0, ny = 0, nz = 0;
    PROMET(v.get_proj_pt(k, surf, px, py, pz, nx, ny, nz));
    im << surf << px << py << pz << nx << ny << nz;
  }
}

void ajouter(Image& im, const Piece& p) {
  im << p._nom() << p._fam_BC() << p._topology();
  for (int i = 0; i < p.nb_spe(); ++i) im << p._spe(i);
}

template <class Cle, class Entite>
void ajouter(Image& im, const std::map<Cle, Entite>& table) {
  im << table.size();
  for (const auto& [cle, entite] : table) {
    im << cle;
    ajouter(im, entite);
  }
}

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

using Paires = std::vector<std::pair<int, int>>;

/// The pairs (low, high) that the upper entities' slots and the lower ones' lists give.
template <class Haut, class Bas, class NbBas, class LireBas, class NbHaut, class LireHaut>
void verifier_etage(const std::map<int, Haut>& hauts, const std::map<int, Bas>& bas, NbBas nb_bas,
                    LireBas lire_bas, NbHaut nb_haut, LireHaut lire_haut) {
  Paires descend, monte;
  for (const auto& [h, haut] : hauts)
    for (int i = 0; i < nb_bas(haut); ++i)
      if (const int b = lire_bas(haut, i); b > 0) descend.emplace_back(b, h);
  for (const auto& [b, entite] : bas)
    for (int i = 0; i < nb_haut(entite); ++i) monte.emplace_back(b, lire_haut(entite, i));
  std::ranges::sort(descend);
  std::ranges::sort(monte);
  PROMET(descend == monte);
}

}  // namespace

std::string image(const Base& base) {
  Image im;
  const Avion& a = base.avion;
  im << a._name() << a._family() << a._fuse_length() << a._fuse_width() << a._height();
  im << a._wing_span() << a._corde() << a._wing_area() << a._sweep() << a._nb_engine();
  ajouter(im, base.blocs);
  ajouter(im, base.faces);
  ajouter(im, base.edges);
  ajouter(im, base.vrtxs);
  ajouter(im, base.pieces);
  for (const Raccord& r : base.raccords) im << r._pc1() << r._pc2() << r._type();
  return im.octets;
}

void verifier_releve(const Releve& releve, Fichier f, const Base& base) {
  const auto memes = [](const auto& strictes, const auto& lues) {
    Image a, b;
    ajouter(a, strictes);
    ajouter(b, lues);
    PROMET(a.octets == b.octets);
  };
  const auto cle = [](const auto& entree) -> const auto& {
    return entree.first;
  };
  switch (f) {
    case fic_blck:
      return memes(releve.base.blocs, base.blocs);
    case fic_face:
      return memes(releve.base.faces, base.faces);
    case fic_edge:
      return memes(releve.base.edges, base.edges);
    case fic_vrtx:  // without their coordinates, which nothing checks
      PROMET(std::ranges::equal(releve.base.vrtxs, base.vrtxs, {}, cle, cle));
      return;
    default:
      PROMET(std::ranges::equal(releve.base.pieces, base.pieces, [](const auto& a, const auto& b) {
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

void verifier_liens(const Base& base) {
  verifier_etage(
      base.blocs, base.faces, [](const Block& b) { return b.nb_face(); },
      [](const Block& b, int i) { return b._face(i); }, [](const Face& f) { return f.nb_bloc(); },
      [](const Face& f, int i) { return f._bloc(i); });
  verifier_etage(
      base.faces, base.edges, [](const Face& f) { return f.nb_edge(); },
      [](const Face& f, int i) { return f._edge(i); }, [](const Edge& e) { return e.nb_face(); },
      [](const Edge& e, int i) { return e._face(i); });
  verifier_etage(
      base.edges, base.vrtxs, [](const Edge& e) { return e.nb_vrtx(); },
      [](const Edge& e, int i) { return e._vrtx(i); }, [](const Vertex& v) { return v.nb_edge(); },
      [](const Vertex& v, int i) { return v._edge(i); });
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
