#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "mesh/numbering.h"
#include "verifie/examen.h"

namespace topomine {

namespace {

bool opposees(int s, int t) {
  return s % 3 == t % 3;
}

using Faces = std::array<int, nb_faces_bloc>;

/// How the six faces of a block hold together: side by side they share an edge, or the point to
/// which it shrank; opposite ones share none, unless the block is collapsed.
class Assemblage {
 public:
  explicit Assemblage(Examen& x) : x_(x), m_(x.maille) {}

  void examiner() {
    copies();
    m_.monter_faces();
    std::vector<int> rompus;
    for (int b = 0; b < m_.num_blocs.nb(); ++b)
      if (!tient(au(m_.blocs, b))) rompus.push_back(b);
    const auto nb = static_cast<std::size_t>(m_.num_blocs.nb());
    if (rompus.size() > 3 && rompus.size() * 3 > nb) {
      x_.liens_perdus = true;
      x_.signaler(Code::liens_d_un_autre_cas, fic_face,
                  "les faces de " + std::to_string(rompus.size()) + " blocs sur " +
                      std::to_string(nb) + " ne tiennent pas ensemble");
      return;
    }
    for (const int b : rompus) dire(b);
    for (int b = 0; b < m_.num_blocs.nb(); ++b) {
      completer(b);
      places_vides(b);
    }
    m_.monter_faces();
  }

 private:
  int numero(int face) const { return x_.numero(fic_face, face); }

  /// A block with the faces of another counts twice for all of them.
  void copies() {
    std::map<Faces, int> vus;
    for (int b = 0; b < m_.num_blocs.nb(); ++b) {
      Faces cle = au(m_.blocs, b);
      if (contient(cle, inconnu)) continue;
      std::ranges::sort(cle);
      const auto [place, nouveau] = vus.try_emplace(cle, b);
      if (nouveau) continue;
      x_.signaler(
          Code::face_de_trop, fic_blck, b,
          "ses faces sont celles du bloc " + std::to_string(x_.numero(fic_blck, place->second)));
      au(m_.blocs, b).fill(vide);
      x_.douter(fic_blck, b);
    }
  }

  static std::string place(int s) { return std::to_string(s + 1) + " (" + au(noms_faces, s) + ")"; }
  static std::string champ(int s) { return "Faces/Face/" + std::to_string(s + 1); }
  /// The face in a slot when it can be judged.
  bool sure(const Faces& faces, int s) const {
    const int f = au(faces, s);
    return f >= 0 && !x_.est_douteux(fic_face, f);
  }
  bool a_un_vide(int face) const { return contient(au(m_.faces, face), vide); }
  bool a_un_inconnu(int face) const { return contient(au(m_.faces, face), inconnu); }

  bool va_avec(const Faces& faces, int s, int t) const {
    if (!sure(faces, s) || !sure(faces, t)) return true;
    const int f = au(faces, s), g = au(faces, t);
    const bool communs = nb_communs(au(m_.faces, f), au(m_.faces, g)) > 0;
    // If a slot between them is unknown, the two may legitimately meet, as behind the tail of a C.
    if (opposees(s, t))
      return f == g || !communs || contient(faces, vide) || contient(faces, inconnu);
    return f != g &&
           (communs || (a_un_vide(f) && a_un_vide(g)) || a_un_inconnu(f) || a_un_inconnu(g));
  }
  bool tient(const Faces& faces) const {
    for (int s = 0; s < nb_faces_bloc; ++s)
      for (int t = 0; t < s; ++t)
        if (!va_avec(faces, s, t)) return false;
    return true;
  }

  /// The one face of no slot of the block that touches all the neighbours of slot s.
  int attendue(const Faces& faces, int s) const {
    std::map<int, unsigned> touches;
    unsigned toutes = 0;
    for (int t = 0; t < nb_faces_bloc; ++t) {
      if (opposees(s, t) || !sure(faces, t)) continue;
      toutes |= 1U << t;
      for (const int e : au(m_.faces, au(faces, t)))
        if (e >= 0 && m_.faces_d_edge[e].size() <= beaucoup)
          for (const int g : m_.faces_d_edge[e])
            if (!contient(faces, g) || g == au(faces, s)) touches[g] |= 1U << t;
    }
    int trouvee = inconnu;
    for (const auto& [g, vus] : touches) {
      if (vus != toutes) continue;
      if (trouvee != inconnu) return inconnu;
      trouvee = g;
    }
    return trouvee;
  }

  std::string on_attend(int face) const {
    return face == inconnu ? "" : ", on y attend la face " + std::to_string(numero(face));
  }

  void dire(int b) {
    Faces& faces = au(m_.blocs, b);
    for (int s = 0; s < nb_faces_bloc; ++s) {
      Faces sans = faces;
      au(sans, s) = vide;
      if (!sure(faces, s) || !tient(sans)) continue;
      const int fausse = std::exchange(au(faces, s), inconnu);
      const int juste = attendue(faces, s);
      const bool rien = juste == inconnu && reduite(sans, s);
      x_.signaler(Code::faces_disjointes, fic_blck, b,
                  "face " + place(s) + " : " + std::to_string(numero(fausse)) +
                      " ne va pas avec les autres" +
                      (rien ? ", la case devrait etre vide" : on_attend(juste)),
                  champ(s));
      au(faces, s) = rien ? vide : juste;
      return;
    }
    for (int s = 0; s < nb_faces_bloc; ++s)
      for (int t = 0; t < s; ++t) {
        Faces echangees = faces;
        std::swap(au(echangees, s), au(echangees, t));
        if (!tient(echangees)) continue;
        x_.signaler(Code::faces_disjointes, fic_blck, b,
                    "faces " + place(t) + " et " + place(s) + " sans doute echangees", champ(t));
        faces = echangees;
        x_.douter(fic_blck, b);  // another exchange may do as well: its corners are not sure
        return;
      }
    x_.signaler(Code::faces_disjointes, fic_blck, b, "ses faces ne tiennent pas ensemble", "Faces");
    x_.douter(fic_blck, b);
  }

  /// A slot that could not be read, as the others have it.
  void completer(int b) {
    Faces& faces = au(m_.blocs, b);
    for (int s = 0; s < nb_faces_bloc; ++s)
      if (au(faces, s) == inconnu) au(faces, s) = attendue(faces, s);
    if (contient(faces, inconnu)) x_.douter(fic_blck, b);
  }

  /// A face that shrank to a line leaves two of its neighbours, opposite, with that line in common;
  /// one that shrank to a point leaves all four with an empty edge.
  bool reduite(const Faces& faces, int s) const {
    bool point = true;
    for (int axe = 0; axe < 3; ++axe) {
      if (axe == s % 3) continue;
      const int t = place_face(0, axe), u = place_face(1, axe);
      for (const int v : {t, u}) {
        if (!sure(faces, v)) return true;
        point = point && a_un_vide(au(faces, v));
      }
      if (nb_communs(au(m_.faces, au(faces, t)), au(m_.faces, au(faces, u))) > 0) return true;
    }
    return point;
  }

  void places_vides(int b) {
    Faces& faces = au(m_.blocs, b);
    if (std::ranges::all_of(faces, [](int f) { return f == vide; })) return;  // a copy
    std::string reduites;
    for (int s = 0; s < nb_faces_bloc; ++s) {
      if (au(faces, s) != vide) continue;
      if (reduite(faces, s)) {
        reduites += (reduites.empty() ? "face " : ", face ") + place(s) + " vide";
        continue;
      }
      au(faces, s) = inconnu;
      const int juste = attendue(faces, s);
      au(faces, s) = juste;
      x_.signaler(Code::case_vide, fic_blck, b,
                  "face " + place(s) + " vide (NbSubFace 0) sans que rien n'y soit reduit" +
                      on_attend(juste),
                  champ(s));
      if (juste == inconnu) x_.douter(fic_blck, b);
    }
    std::vector<int> triangles;
    for (int s = 0; s < nb_faces_bloc; ++s)
      if (sure(faces, s) && a_un_vide(au(faces, s))) triangles.push_back(numero(au(faces, s)));
    if (!triangles.empty())
      reduites += (reduites.empty() ? "une edge vide aux faces " : ", une edge vide aux faces ") +
                  enumerer(triangles);
    if (!reduites.empty()) x_.signaler(Code::bloc_degenere, fic_blck, b, "degenere : " + reduites);
  }

  Examen& x_;
  Maille& m_;
};

}  // namespace

void regle_assemblage(Examen& x) {
  if (x.liens_perdus || !x.lus({fic_blck, fic_face, fic_edge}))
    x.maille.monter_faces();
  else
    Assemblage(x).examiner();
}

}  // namespace topomine
