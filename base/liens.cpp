#include <exception>

#include "base/base.h"

int Base::make_link() {
  try {
    for (const auto& [numero, bloc] : blocs) {
      for (int i = 0; i < bloc.nb_face(); ++i) {
        if (const int f = bloc._face(i); f > 0) faces[f].add_bloc(numero);
      }
    }
    for (const auto& [numero, face] : faces) {
      for (int i = 0; i < face.nb_edge(); ++i) {
        if (const int e = face._edge(i); e > 0) edges[e].add_face(numero);
      }
    }
    for (const auto& [numero, edge] : edges) {
      for (int i = 0; i < edge.nb_vrtx(); ++i) {
        if (const int v = edge._vrtx(i); v > 0) vrtxs[v].add_edge(numero);
      }
    }
  } catch (const std::exception&) {
    return 0;
  }
  return 1;
}
