#include "tests/support/cas.h"

using namespace topomine;

namespace {

void faire_vrtx(Cas& cas, const Cle& c) {
  Vertex& v = cas.base.vrtxs[cas.numero(c)];
  if (v._id()) return;
  v._id(cas.numero(c));
  v.set_pos(c[0] / 2, c[1] / 4.0, -c[2]);
  for (int k = 0; k < v._id() % 3; ++k) v.add_proj_pt(k + 1, c[0] + k, 0.5, -2, 0, k, -0.25);
}

void faire_edge(Cas& cas, const Cle& c, int axe) {
  Edge& e = cas.base.edges[cas.numero(c)];
  if (e._id()) return;
  e._id(cas.numero(c));
  e._carac(e._id() % 4);
  if (e._id() % 2) e.add_BC(10 + e._id() % 5);
  for (int bout : {0, 1}) {
    e._vrtx(bout, cas.numero(vers(c, axe + 3 * bout)));
    faire_vrtx(cas, vers(c, axe + 3 * bout));
  }
}

void faire_face(Cas& cas, const Cle& c, int axe) {
  Face& f = cas.base.faces[cas.numero(c)];
  if (f._id()) return;
  f._id(cas.numero(c));
  cas.faces[f._id()] = c;
  f._carac(f._id() % 3);
  f._type(f._id() % 5);
  for (int k = 0; k < f._id() % 3; ++k) f.add_BC(10 + (f._id() + k) % 5);
  if (f._id() % 2) f.add_surf(f._id());
  const int l = axe == 0 ? 1 : 0, m = axe == 2 ? 1 : 2;
  int s = 0;
  for (int cote : {l, m, l + 3, m + 3}) {  // l-min, m-min, l-max, m-max
    f._edge(s++, cas.numero(vers(c, cote)));
    faire_edge(cas, vers(c, cote), 3 - axe - cote % 3);
  }
}

std::string xyz(const char* nom, double x, double y, double z) {
  return el(nom, el("X", x), el("Y", y), el("Z", z));
}

// An optional list of numbers.
template <class Lire>
std::string liste(const char* nom, int n, Lire lire) {
  std::string s;
  for (int i = 0; i < n; ++i) s += el("Item", lire(i));
  return n ? el(nom, s) : s;
}

std::string place(const std::string& nom, int i, int v) {
  return el(nom, el("Numero", i + 1), el("NbSub" + nom, v ? 1 : 0), v ? el("Sub" + nom, v) : "");
}

}  // namespace

Cas grille(const std::string& nom, const Cle& n, bool boucle,
           const std::function<bool(int, int, int)>& plein) {
  Cas cas{Base(nom, "", "nrm"), boucle ? 2 * n[0] : 0, {}, {}};
  Base& b = cas.base;
  for (int x = 0; x < n[0]; ++x)
    for (int y = 0; y < n[1]; ++y)
      for (int z = 0; z < n[2]; ++z) {
        const Cle milieu{2 * x + 1, 2 * y + 1, 2 * z + 1};
        if (!plein || plein(x, y, z)) cas.blocs[1000 - cas.numero(milieu)] = milieu;
      }
  for (const auto& [num, milieu] : cas.blocs) {
    const int rang = static_cast<int>(b.blocs.size());
    Block& e = b.blocs[num];
    e._id(num);
    e._type(30 + rang % 10);
    e._erik(0.5 + rang);
    e._volexa(1.25 * rang);
    e._volmor(1e-7 + rang);
    e._volmoy(-2);
    e._volnsm(1e20);
    for (int s = 0; s < 6; ++s) {
      e._face(s, cas.numero(vers(milieu, s)));
      faire_face(cas, vers(milieu, s), s % 3);
    }
  }

  Avion& a = b.avion;
  a._name("A " + nom);
  a._family("avion");
  a._nb_engine(2);
  a._fuse_length(1.5);
  a._fuse_width(2.5);
  a._height(3.5);
  a._wing_span(4.5);
  a._corde(5.5);
  a._wing_area(6.5);
  a._sweep(7.5);
  for (char topo : {'C', 'H'}) {
    Piece p;
    p._nom(std::string("piece ") + topo);
    p._topology(topo);
    if (topo == 'H') p.add_spe("special un");
    b.pieces[p._fam_BC(std::string("fam_") + topo)] = p;
  }
  Raccord& r = b.raccords.emplace_back();
  r._pc1("piece C");
  r._pc2("piece H");
  r._type("C90");
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
  cas.back().base.faces.erase(cas.back().numero({2, 1, 1}));  // between the two blocks
  return cas;
}

std::string xml_blocs(const Base& b) {
  const auto volume = [](const char* nom, double v) { return el(nom, el("Cell", v)); };
  std::string s;
  for (const auto& [n, e] : b.blocs) {
    std::string faces;
    for (int i = 0; i < 6; ++i) faces += place("Face", i, e._face(i));
    s += el("Block", el("Ident", n), el("Type", e._type()), volume("Erikson", e._erik()),
            el("Volumes", volume("Exact", e._volexa()), volume("Mor", e._volmor()),
               volume("Moyen", e._volmoy()), volume("NSMB", e._volnsm())),
            el("Faces", faces));
  }
  return el("Blocks", s);
}

std::string xml_faces(const Base& b) {
  std::string s;
  for (const auto& [n, e] : b.faces) {
    const Face& f = e;
    std::string edges;
    for (int i = 0; i < f.nb_edge(); ++i) edges += place("Edge", i, f._edge(i));
    s += el("Face", el("Ident", n), el("NumCaract", f._carac()), el("Type", f._type()),
            liste("Boundary_Conditions", f.nb_BC(), [&](int i) { return f._BC(i); }),
            liste("Surfaces", f.nb_surf(), [&](int i) { return f._surf(i); }), edges);
  }
  return el("Faces", s);
}

std::string xml_edges(const Base& b) {
  std::string s;
  for (const auto& [n, a] : b.edges) {
    const Edge& e = a;
    s += el("Edge", el("Ident", n), el("NumCaract", e._carac()),
            liste("Boundary_Conditions", e.nb_BC(), [&](int i) { return e._BC(i); }),
            el("NbVertex", 2), el("Vertices", el("rmin", e._vrtx(0)), el("rmax", e._vrtx(1))));
  }
  return el("Edges", s);
}

std::string xml_vrtxs(const Base& b) {
  std::string s;
  for (const auto& [n, e] : b.vrtxs) {
    std::string projs;
    int surf = 0;
    double p[6];
    for (int k = 0; e.get_proj_pt(k, surf, p[0], p[1], p[2], p[3], p[4], p[5]); ++k)
      projs += el("Proj", el("Famille", surf), xyz("Coord", p[0], p[1], p[2]),
                  xyz("Normale", p[3], p[4], p[5]));
    s += el("Vertex", el("Ident", n), xyz("Coord", e._posX(), e._posY(), e._posZ()), projs);
  }
  return el("Vertices", s);
}

std::string xml_scene(const Base& b) {
  const Avion& a = b.avion;
  std::string pieces, raccords;
  for (const auto& [fam, p] : b.pieces) {
    std::string spe = el("special", "sans suite");
    for (int i = 0; i < p.nb_spe(); ++i) spe += el("special", p._spe(i));
    pieces +=
        el("piece", el("nom", p._nom()), el("family", fam), el("topologie", p._topology()), spe);
  }
  for (const Raccord& r : b.raccords)
    raccords += el("raccord", el("piece", r._pc1()), el("autre", r._pc2()), el("type", r._type()));
  return el(
      "definition_scene",
      el("reference_avion", el("name", a._name()), el("family", a._family()),
         el("fuse_length", a._fuse_length()), el("fuse_width", a._fuse_width()),
         el("height", a._height()), el("wing_span", a._wing_span()), el("corde", a._corde()),
         el("wing_area", a._wing_area()), el("sweep", a._sweep()), el("nb_engine", a._nb_engine())),
      el("liste_pieces", pieces), el("liste_raccords", raccords));
}

void ecrire_cas(const Base& b, const Dossier& d) {
  const std::string prefixe = b.chemin + b.nom + "/" + b.nom, mesh = prefixe + "_" + b.type;
  d.ecrire(prefixe + ".def", xml_scene(b));
  d.ecrire(mesh + ".blck", xml_blocs(b));
  d.ecrire(mesh + ".face", xml_faces(b));
  d.ecrire(mesh + ".edge", xml_edges(b));
  d.ecrire(mesh + ".vrtx", xml_vrtxs(b));
}
