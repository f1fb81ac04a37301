#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "base/scene.h"
#include "mesh/block.h"
#include "mesh/edge.h"
#include "mesh/face.h"
#include "mesh/vertex.h"
#include "tests/support/capture.h"

using namespace topomine;

namespace {

template <class Entite>
std::string listing(const Entite& e) {
  return sortie([&] { e.Print(); });
}

TEST(Entities, AreEmptyAtFirst) {
  EXPECT_EQ(listing(Block()),
            "Bloc 0\nType : 0\nErikson : 0\nVolumes\n  Exact : 0\n  Mor   : 0\n  Moyen : 0\n  NSMB "
            " : 0\nNb faces: 6\nFaces\nFace 0 : 0\nFace 1 : 0\nFace 2 : 0\nFace 3 : 0\nFace 4 : "
            "0\nFace 5 : 0\n");
  EXPECT_EQ(listing(Face()),
            "Face 0\nType  : 0\nCarac : 0\nNb Edges: 4\nEdges\n  Edge 0 : 0\n  Edge 1 : 0\n  Edge "
            "2 : 0\n  Edge 3 : 0\nNb BCs: 0\nNb blocs: 0\nNb surfs: 0\n\n");
  EXPECT_EQ(listing(Edge()),
            "Edge 0\nCarac : 0\nNb vertices: 2\nVertices\n  Vertex 0 : 0\n  Vertex 1 : 0\nNb BCs: "
            "0\nNb faces: 0\n\n");
  EXPECT_EQ(listing(Vertex()),
            "Vertex 0\nCoordonn\351es (0,0,0)\nNb projections : 0\nNb edges: 0\n\n");
  EXPECT_EQ(
      listing(Avion()),
      "R\351f\351rences Avion\n Nom     : \n Famille : \n Longueur : 0\n Envirgure: 0\n Hauteur  : "
      "0\n Span voilure : 0\n Surf Voilure : 0\n Corde : 0\n Sweep : 0\n Nb moteur : 0\n\n");
  EXPECT_EQ(listing(Raccord()), "Raccord  //  : \n");
  Raccord vide;
  EXPECT_EQ(vide._pc1("a") + vide._pc2("b") + vide._type("C45"), "abC45");
  vide.clear();
  EXPECT_EQ(listing(vide), "Raccord  //  : \n");
  EXPECT_TRUE(Block()._forme() == 'H' && !Block()._typeC() && Piece()._topology() == '\0');
  EXPECT_TRUE(Face()._type() == 0 && Face()._carac() == 0 && Edge()._carac() == 0);
  EXPECT_EQ(Avion()._height() + Avion()._corde() + Avion()._sweep(), 0);
}

TEST(Block, StoringFormsAnswerWhatTheyStored) {
  Block b;
  EXPECT_TRUE(b._id(7) == 7 && b._type(31) == 31 && b._erik(0.5) == 0.5);
  EXPECT_TRUE(b._volexa(1e10) == 1e10 && b._volmor(0.00001234567) == 0.00001234567);
  EXPECT_TRUE(b._volmoy(123456.7) == 123456.7 && b._volnsm(-2) == -2);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(b._face(i, 10 * i), 10 * i);
  const std::string attendu =
      "Bloc 7\nType : 31\nErikson : 0.5\nVolumes\n  Exact : 1e+10\n  Mor   : 1.23457e-05\n"
      "  Moyen : 123457\n  NSMB  : -2\nNb faces: 6\nFaces\nFace 0 : 0\nFace 1 : 10\nFace 2 : 20\n"
      "Face 3 : 30\nFace 4 : 40\nFace 5 : 50\n";
  EXPECT_EQ(listing(b), attendu);

  for (int i : {-1, 6, 1 << 30}) EXPECT_TRUE(b._face(i, 99) == 0 && b._face(i) == 0) << i;
  EXPECT_EQ(listing(b), attendu);

  const Block copie = b;
  b._typeC(true);
  b.clear();
  EXPECT_TRUE(b._typeC()) << "clear leaves the class flag";
  EXPECT_EQ(b._forme(), 'H');
  EXPECT_EQ(listing(b), listing(Block()));
  EXPECT_EQ(listing(copie), attendu);
}

TEST(Block, SetFacesLeavesTheCountAtZero) {
  Block b;
  b.set_faces(11, 12, 13, 14, 15, 16);
  EXPECT_TRUE(b.nb_face() == 0 && b._face(0) == 11 && b._face(5) == 16);
  const std::string vu = listing(b);
  EXPECT_EQ(vu.substr(vu.find("Nb")),
            "Nb faces: 0\nFaces\nFace 0 absente\nFace 1 absente\nFace 2 absente\n"
            "Face 3 absente\nFace 4 absente\nFace 5 absente\n");
}

TEST(Face, ListsGrowByWritingOutOfRange) {
  Face f;
  EXPECT_EQ(listing(f),
            "Face 0\nType  : 0\nCarac : 0\nNb Edges: 4\nEdges\n  Edge 0 : 0\n  Edge 1 : 0\n"
            "  Edge 2 : 0\n  Edge 3 : 0\nNb BCs: 0\nNb blocs: 0\nNb surfs: 0\n\n");
  EXPECT_TRUE(f._id(3) == 3 && f._type(-1) == -1 && f._carac(8) == 8);
  EXPECT_EQ(f._edge(2, 22), 2);
  EXPECT_EQ(f._edge(7, 77), 4);
  EXPECT_EQ(f._edge(-1, 88), 5);
  EXPECT_TRUE(f._edge(4) == 77 && f._edge(6) == -1 && f._edge(-1) == -1);
  f.add_BC(12);
  EXPECT_EQ(f._BC(5, 12), 1);
  EXPECT_TRUE(f.add_bloc(9) == 1 && f.add_bloc(9) == 2 && f._bloc(0, 5) == 0);
  EXPECT_TRUE(f.add_surf(4) == 1 && f._surf(1, 6) == 1);
  const std::string attendu =
      "Face 3\nType  : -1\nCarac : 8\nNb Edges: 6\nEdges\n  Edge 0 : 0\n  Edge 1 : 0\n"
      "  Edge 2 : 22\n  Edge 3 : 0\nNb BCs: 2\nBCs : 12 12 \nNb blocs: 2\nBlocs : 5 9 \n"
      "Nb surfs: 2\nSurfaces : 4 6 \n\n";
  EXPECT_EQ(listing(f), attendu);
  EXPECT_TRUE(f._BC(2) == -1 && f._bloc(2) == -1 && f._surf(2) == -1);

  f.clear();
  EXPECT_TRUE(f.nb_edge() == 6 && f._edge(4) == 77) << "the edges beyond the four slots stay";
  EXPECT_EQ(f._edge(2), 0);
  EXPECT_EQ(f.nb_BC() + f.nb_bloc() + f.nb_surf() + f._id() + f._type() + f._carac(), 0);
}

TEST(Face, SetEdgesLeavesAnEmptyListThatClearKeepsEmpty) {
  Face f;
  f.set_edges(1, 2, 3, 4);
  EXPECT_TRUE(f.nb_edge() == 0 && f._edge(0) == -1);
  f._edge(0, 5);
  f.clear();  // slot 1 is missing: the list is emptied
  EXPECT_NE(listing(f).find("Nb Edges: 0\nEdges\n  Edge 0 absent\n"), std::string::npos);
}

TEST(Edge, ListsAndListing) {
  Edge e;
  EXPECT_TRUE(e._id(5) == 5 && e._carac(2) == 2 && e.add_face(60) == 1);
  EXPECT_TRUE(e._vrtx(1, 31) == 1 && e._vrtx(9, 32) == 2 && e._vrtx(9) == -1);
  e.add_BC(7);
  EXPECT_EQ(listing(e),
            "Edge 5\nCarac : 2\nNb vertices: 3\nVertices\n  Vertex 0 : 0\n  Vertex 1 : 31\n"
            "Nb BCs: 1\nBCs : 7 \nNb faces: 1\nfaces : 60 \n\n");
  e.clear();
  EXPECT_TRUE(e.nb_vrtx() == 3 && e._vrtx(2) == 32);
  e.set_vrtxs(1, 2);
  EXPECT_EQ(listing(e),
            "Edge 0\nCarac : 0\nNb vertices: 0\nVertices\n  Vertex 0 absent\n  Vertex 1 absent\n"
            "Nb BCs: 0\nNb faces: 0\n\n");
}

TEST(Edge, FaceOutOfRangeSpeaksAndWaitsForACharacter) {
  Edge e;
  e._id(12);
  Entree entree("abc");
  const Capture c;
  EXPECT_EQ(std::as_const(e)._face(0), -1);
  EXPECT_EQ(c.err(), "erreur de renvoi de la face 0 de l'edge 12\n");
  EXPECT_EQ(e._face(3, 40), 0);
  EXPECT_EQ(c.err(),
            "erreur de renvoi de la face 0 de l'edge 12\n"
            "erreur d'ajout de la face 3 = 40 sur l'edge 12\n");
  EXPECT_TRUE(e._face(0) == 40 && e._face(0, 41) == 0);
  EXPECT_EQ(entree.reste(), "c") << "one character for each message, none when in range";
  EXPECT_EQ(e._face(-1), -1) << "an ended input is no wait";
  EXPECT_EQ(c.out(), "");
}

TEST(Vertex, PositionProjectionsAndListing) {
  Vertex v;
  EXPECT_EQ(listing(v), "Vertex 0\nCoordonn\351es (0,0,0)\nNb projections : 0\nNb edges: 0\n\n");
  v._id(4);
  v.set_pos(1, 2, 3);
  EXPECT_TRUE(v.add_proj(8, 0, 0, 1));
  v.set_pos(-1, 2.5, 0);
  EXPECT_EQ(v._posZ(1e-9), 1e-9);
  EXPECT_TRUE(v.add_proj_pt(9, 0.1, 0.2, 1000000, 1, 0, -1));
  EXPECT_TRUE(v.add_edge(70) == 1 && v._edge(5, 71) == 1 && v._edge(2) == -1);
  EXPECT_EQ(listing(v),
            "Vertex 4\nCoordonn\351es (-1,2.5,1e-09)\nNb projections : 2\nProjections : \n"
            "  projection 0\n     Fam_surf : 8\n     Coordonn\351es  (1,2,3)\n"
            "     Normale      (0,0,1)\n  projection 1\n     Fam_surf : 9\n"
            "     Coordonn\351es  (0.1,0.2,1e+06)\n     Normale      (1,0,-1)\n"
            "Nb edges: 2\nEdges : 70 71 \n\n");

  int surf = -5;
  double x = -5, y = -5, z = -5, nx = -5, ny = -5, nz = -5;
  for (int k : {-1, 2})
    EXPECT_FALSE(v.get_proj(k, surf, nx, ny, nz) || v.get_proj_pt(k, surf, x, y, z, nx, ny, nz));
  EXPECT_EQ(surf + x + y + z + nx + ny + nz, -35) << "outputs are left as they were";
  EXPECT_TRUE(v.get_proj_pt(1, surf, x, y, z, nx, ny, nz));
  EXPECT_EQ(std::tie(surf, x, y, z, nx, ny, nz), std::make_tuple(9, 0.1, 0.2, 1e6, 1, 0, -1));
  EXPECT_TRUE(v.get_proj(0, surf, nx, ny, nz));
  EXPECT_EQ(std::tie(surf, nx, ny, nz), std::make_tuple(8, 0, 0, 1));
  v.get_pos(x, y, z);
  EXPECT_EQ(std::tie(x, y, z), std::make_tuple(-1, 2.5, 1e-9));

  v.clear();
  EXPECT_EQ(listing(v), listing(Vertex()));
  EXPECT_EQ(Point(2.5)._x() + Point(2.5)._y() + Point(2.5)._z(), 7.5);
  EXPECT_EQ(Vecteur(1.5)._z(), 1.5);
}

}  // namespace
