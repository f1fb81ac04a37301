#include "tests/support/cas.h"

#include <sstream>

namespace {

using Cle = std::array<int, 3>;  // twice the coordinates of an entity's middle

// Gives each middle a number, from `premier` on, in the order of asking.
class Numeros {
 public:
  explicit Numeros(int premier) : suivant_(premier) {}
  /// The number, and whether it is new.
  std::pair<int, bool> operator()(const Cle& c) {
    const auto [it, neuf] = connus_.try_emplace(c, suivant_);
    if (neuf) ++suivant_;
    return {it->second, neuf};
  }

 private:
  int suivant_;
  std::map<Cle, int> connus_;
};

template <class T>
std::string texte(T v) {
  std::ostringstream s;
  s << v;
  return s.str();
}

std::string xyz(const std::string& nom, double x, double y, double z) {
  return el(nom, el("X", texte(x)) + el("Y", texte(y)) + el("Z", texte(z)));
}

// An optional list of numbers.
template <class Lire>
std::string liste(const std::string& nom, int n, Lire lire) {
  std::string s;
  for (int i = 0; i < n; ++i) s += el("Item", lire(i));
  return n ? el(nom, s) : s;
}

std::string une_case(const std::string& nom, const std::string& sous, int i, int v) {
  return el(nom, el("Numero", i + 1) + el("NbSub" + sous, v ? 1 : 0) +
                     (v ? el("Sub" + sous, v) : std::string()));
}

}  // namespace

std::string el(const std::string& nom, const std::string& contenu) {
  return "<" + nom + ">" + contenu + "</" + nom + ">\n";
}

std::string el(const std::string& nom, int v) {
  return el(nom, std::to_string(v));
}

Cas grille(const std::string& nom, std::array<int, 3> n, bool boucle,
           const std::function<bool(int, int, int)>& plein) {
  Cas cas{nom, Base(nom, "", "nrm"), {}, {}, {}};
  Base& b = cas.base;
  Numeros num_face(101), num_edge(301), num_vrtx(701);
  int rang = 0;

  // Entities are known by their middle; each function makes the entity when it is new.
  const auto cle = [&](Cle c) {
    if (boucle) c[0] %= 2 * n[0];
    return c;
  };
  const auto vrtx = [&](const Cle& c) {
    const auto [v, neuf] = num_vrtx(cle(c));
    if (neuf) {
      Vertex& e = b.vrtxs[v];
      e._id(v);
      e.set_pos(c[0] / 2, c[1] / 4.0, -c[2]);
      for (int k = 0; k < v % 3; ++k) e.add_proj_pt(k + 1, c[0] + k, 0.5, -2, 0, k, -0.25);
    }
    return v;
  };
  const auto edge = [&](const Cle& c, std::size_t axe) {
    const auto [a, neuf] = num_edge(cle(c));
    if (neuf) {
      Edge& e = b.edges[a];
      e._id(a);
      e._carac(a % 4);
      if (a % 2) e.add_BC(10 + a % 5);
      for (int bout : {0, 1}) {
        Cle fin = c;
        fin[axe] += 2 * bout - 1;
        e._vrtx(bout, vrtx(fin));
      }
    }
    return a;
  };
  const auto face = [&](const Cle& c, std::size_t axe) {
    const auto [f, neuf] = num_face(cle(c));
    if (neuf) {
      const std::size_t lm[2] = {axe == 0 ? 1U : 0U, axe == 2 ? 1U : 2U};
      Face& e = b.faces[f];
      e._id(f);
      e._carac(f % 3);
      e._type(f % 5);
      for (int k = 0; k < f % 3; ++k) e.add_BC(10 + (f + k) % 5);
      if (f % 2) e.add_surf(f);
      for (int s = 0; s < 4; ++s) {  // l-min, m-min, l-max, m-max
        Cle cote = c;
        cote[lm[s % 2]] += s / 2 ? 1 : -1;
        e._edge(s, edge(cote, lm[1 - s % 2]));
      }
      for (int s = 0; s < 4; ++s) {
        Cle coin = c;
        coin[lm[0]] += s / 2 ? 1 : -1;
        coin[lm[1]] += s % 2 ? 1 : -1;
        cas.coins_face[f][static_cast<std::size_t>(s)] = vrtx(coin);
      }
    }
    return f;
  };

  for (int x = 0; x < n[0]; ++x)
    for (int y = 0; y < n[1]; ++y)
      for (int z = 0; z < n[2]; ++z) {
        if (plein && !plein(x, y, z)) continue;
        const int num = 90 - rang;
        const Cle milieu{2 * x + 1, 2 * y + 1, 2 * z + 1};
        Block& e = b.blocs[num];
        e._id(num);
        e._type(30 + rang % 10);
        e._erik(0.5 + rang);
        e._volexa(1.25 * rang);
        e._volmor(1e-7 + rang);
        e._volmoy(-2);
        e._volnsm(1e20);
        for (int s = 0; s < 6; ++s) {
          Cle c = milieu;
          c[static_cast<std::size_t>(s % 3)] += s / 3 ? 1 : -1;
          e._face(s, face(c, static_cast<std::size_t>(s % 3)));
          for (int t = 0; t < 6; ++t) {
            if (s % 3 == t % 3) continue;
            Cle a = c;
            a[static_cast<std::size_t>(t % 3)] += t / 3 ? 1 : -1;
            cas.aretes[{num, s, t}] = edge(a, static_cast<std::size_t>(3 - s % 3 - t % 3));
          }
        }
        for (int s = 0; s < 8; ++s)
          cas.coins[num][static_cast<std::size_t>(s)] =
              vrtx({2 * (x + s / 4), 2 * (y + s / 2 % 2), 2 * (z + s % 2)});
        ++rang;
      }

  b.avion._name("A " + nom);
  b.avion._family("avion");
  b.avion._sweep(27.5);
  b.avion._nb_engine(2);
  for (char topo : {'C', 'H'}) {
    Piece p;
    p._nom(std::string("piece ") + topo);
    p._fam_BC(std::string("fam_") + topo);
    p._topology(topo);
    if (topo == 'H') p.add_spe("special un");
    b.pieces[p._fam_BC()] = p;
  }
  Raccord r;
  r._pc1("piece C");
  r._pc2("piece H");
  r._type("C90");
  b.raccords.push_back(r);
  return cas;
}

std::vector<Cas> tous_les_cas() {
  std::vector<Cas> cas{
      grille("un_bloc", {1, 1, 1}),
      grille("boite_211", {2, 1, 1}),
      grille("boite_322", {3, 2, 2}),
      grille("anneau_O", {4, 1, 1}, true),
      grille("deux_faces_communes", {2, 1, 1}, true),
      grille("sur_lui_meme", {1, 1, 1}, true),
      grille("ouvert_C", {5, 1, 2}, true, [](int x, int, int) { return x != 4; }),
      grille("forme_H", {3, 3, 1}, false, [](int x, int y, int) { return x != 1 || y == 1; }),
      grille("face_absente", {2, 1, 1})};
  Base& b = cas.back().base;
  b.faces.erase(b.blocs.begin()->second._face(0));  // between the two blocks
  return cas;
}

std::string xml_blocs(const Base& b) {
  std::string s;
  for (const auto& [n, e] : b.blocs) {
    std::string faces;
    for (int i = 0; i < 6; ++i) faces += une_case("Face", "Face", i, e._face(i));
    const auto volume = [](const char* nom, double v) { return el(nom, el("Cell", texte(v))); };
    s += el("Block",
            el("Ident", n) + el("Type", e._type()) + volume("Erikson", e._erik()) +
                el("Volumes", volume("Exact", e._volexa()) + volume("Mor", e._volmor()) +
                                  volume("Moyen", e._volmoy()) + volume("NSMB", e._volnsm())) +
                el("Faces", faces));
  }
  return el("Blocks", s);
}

std::string xml_faces(const Base& b) {
  std::string s;
  for (const auto& [n, e] : b.faces) {
    const Face& f = e;
    std::string edges;
    for (int i = 0; i < f.nb_edge(); ++i) edges += une_case("Edge", "Edge", i, f._edge(i));
    s += el("Face", el("Ident", n) + el("NumCaract", f._carac()) + el("Type", f._type()) +
                        liste("Boundary_Conditions", f.nb_BC(), [&](int i) { return f._BC(i); }) +
                        liste("Surfaces", f.nb_surf(), [&](int i) { return f._surf(i); }) + edges);
  }
  return el("Faces", s);
}

std::string xml_edges(const Base& b) {
  std::string s;
  for (const auto& [n, a] : b.edges) {
    const Edge& e = a;
    s += el("Edge", el("Ident", n) + el("NumCaract", e._carac()) +
                        liste("Boundary_Conditions", e.nb_BC(), [&](int i) { return e._BC(i); }) +
                        el("NbVertex", 2) +
                        el("Vertices", el("rmin", e._vrtx(0)) + el("rmax", e._vrtx(1))));
  }
  return el("Edges", s);
}

std::string xml_vrtxs(const Base& b) {
  std::string s;
  for (const auto& [n, e] : b.vrtxs) {
    std::string projs;
    for (int k = 0; k < e.nb_proj(); ++k) {
      int surf = 0;
      double p[6];
      e.get_proj_pt(k, surf, p[0], p[1], p[2], p[3], p[4], p[5]);
      projs += el("Proj", el("Famille", surf) + xyz("Coord", p[0], p[1], p[2]) +
                              xyz("Normale", p[3], p[4], p[5]));
    }
    s += el("Vertex", el("Ident", n) + xyz("Coord", e._posX(), e._posY(), e._posZ()) + projs);
  }
  return el("Vertices", s);
}

std::string xml_scene(const Base& b) {
  const Avion& a = b.avion;
  std::string pieces, raccords;
  for (const auto& [fam, p] : b.pieces) {
    std::string spe = el("special", "sans suite");
    for (int i = 0; i < p.nb_spe(); ++i) spe += el("special", p._spe(i));
    pieces += el("piece", el("nom", p._nom()) + el("family", fam) +
                              el("topologie", std::string(1, p._topology())) + spe);
  }
  for (const Raccord& r : b.raccords)
    raccords +=
        el("raccord", el("piece", r._pc1()) + el("autre", r._pc2()) + el("type", r._type()));
  return el(
      "definition_scene",
      el("reference_avion",
         el("name", a._name()) + el("family", a._family()) +
             el("fuse_length", texte(a._fuse_length())) + el("fuse_width", texte(a._fuse_width())) +
             el("height", texte(a._height())) + el("wing_span", texte(a._wing_span())) +
             el("corde", texte(a._corde())) + el("wing_area", texte(a._wing_area())) +
             el("sweep", texte(a._sweep())) + el("nb_engine", a._nb_engine())) +
          el("liste_pieces", pieces) + el("liste_raccords", raccords));
}

void ecrire_cas(const Base& b, const Dossier& d) {
  const std::string prefixe = b.nom + "/" + b.nom;
  d.ecrire(prefixe + ".def", xml_scene(b));
  d.ecrire(prefixe + "_" + b.type + ".blck", xml_blocs(b));
  d.ecrire(prefixe + "_" + b.type + ".face", xml_faces(b));
  d.ecrire(prefixe + "_" + b.type + ".edge", xml_edges(b));
  d.ecrire(prefixe + "_" + b.type + ".vrtx", xml_vrtxs(b));
}
