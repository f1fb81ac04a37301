#include "verifie/inventaire.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "base/lecture/xml.h"

namespace topomine {

namespace {

enum class Fois {
  une,
  debut,     ///< every element whose name begins so
  multiple,  ///< as often as the slot says
};

struct Contenu;

/// An element that the reading asks for.
struct Mot {
  std::string_view nom;
  const Contenu* dedans = nullptr;  // what is in it is looked at, too
  Fois fois = Fois::une;
};

struct Contenu {
  std::span<const Mot> mots;
  bool libre = false;  // elements of other names are read as well
};

constexpr Mot m_cellule[]{{"Cell"}};
constexpr Contenu cellule{m_cellule};
constexpr Mot m_volumes[]{
    {"Exact", &cellule}, {"Mor", &cellule}, {"Moyen", &cellule}, {"NSMB", &cellule}};
constexpr Contenu volumes{m_volumes};
constexpr Mot m_case_face[]{{"Numero"}, {"NbSubFace"}, {"SubFace", nullptr, Fois::multiple}};
constexpr Contenu case_face{m_case_face};
constexpr Mot m_cases_face[]{{"Face", &case_face, Fois::debut}};
constexpr Contenu cases_face{m_cases_face, true};
constexpr Mot m_bloc[]{
    {"Ident"}, {"Type"}, {"Erikson", &cellule}, {"Volumes", &volumes}, {"Faces", &cases_face}};
constexpr Contenu bloc{m_bloc};
constexpr Mot m_case_edge[]{{"Numero"}, {"NbSubEdge"}, {"SubEdge", nullptr, Fois::multiple}};
constexpr Contenu case_edge{m_case_edge};
constexpr Mot m_face[]{{"Ident"},    {"NumCaract"},
                       {"Type"},     {"Boundary_Conditions"},
                       {"Surfaces"}, {"Edge", &case_edge, Fois::debut}};
constexpr Contenu face{m_face};
constexpr Mot m_bouts[]{{"rmin"}, {"rmax"}};
constexpr Contenu bouts{m_bouts};
constexpr Mot m_edge[]{
    {"Ident"}, {"NumCaract"}, {"Boundary_Conditions"}, {"NbVertex"}, {"Vertices", &bouts}};
constexpr Contenu edge{m_edge};
constexpr Mot m_xyz[]{{"X"}, {"Y"}, {"Z"}};
constexpr Contenu xyz{m_xyz};
constexpr Mot m_projection[]{{"Famille"}, {"Coord", &xyz}, {"Normale", &xyz}};
constexpr Contenu projection{m_projection};
constexpr Mot m_vertex[]{{"Ident"}, {"Coord", &xyz}, {"Proj", &projection, Fois::debut}};
constexpr Contenu vertex{m_vertex};
constexpr Mot m_avion[]{{"name"},      {"family"}, {"fuse_length"}, {"fuse_width"}, {"height"},
                        {"wing_span"}, {"corde"},  {"wing_area"},   {"sweep"},      {"nb_engine"}};
constexpr Contenu reference{m_avion};
constexpr Mot m_piece[]{{"nom"}, {"family"}, {"topologie"}, {"special", nullptr, Fois::debut}};
constexpr Contenu piece{m_piece, true};
constexpr Mot m_raccord[]{{"piece", nullptr, Fois::debut}, {"type"}};
constexpr Contenu raccord{m_raccord, true};
constexpr Mot m_scene[]{{"reference_avion", &reference}, {"liste_pieces"}, {"liste_raccords"}};
constexpr Contenu scene{m_scene};

class Inventaire {
 public:
  Inventaire(CasLu& cas, Fichier f) : r_(cas), f_(f) {}

  /// The entities of a list, whatever their names.
  void liste(Noeud n, const char* sorte, const Contenu& contenu, const char* nom) {
    int rang = 0;
    for (Noeud e = n.premier(); e; e = e.suivant()) {
      ++rang;
      if (e.est_element()) entite(e, sorte, contenu, nom, rang);
    }
  }
  void entite(Noeud n, const char* sorte, const Contenu& contenu, const char* nom = nullptr,
              int rang = 0) {
    const Noeud e = nom ? n.premier(nom) : Noeud();
    nom_ = e && e.premier() && e.premier().est_texte() ? e.premier().valeur() : nullptr;
    sorte_ = sorte;
    rang_ = rang;
    visiter(n, contenu);
  }

 private:
  void signaler(Code code, Noeud ou, const std::string& quoi) {
    r_.signaler(code, f_, ou.ligne(), sorte_,
                nom_        ? nom_
                : rang_ > 0 ? "de rang " + std::to_string(rang_)
                            : std::string(),
                quoi);
  }

  static bool est(const Mot& mot, std::string_view nom) {
    return mot.fois == Fois::debut ? nom.starts_with(mot.nom) : nom == mot.nom;
  }

  void visiter(Noeud n, const Contenu& contenu) {
    unsigned vus = 0;
    std::size_t attendu = 0;  // the word whose turn it is
    // Next element that continues the open list, searched once; n stands for "not searched yet".
    Noeud suite = n;
    const std::size_t nb = contenu.mots.size();
    for (Noeud e = n.premier(); e; e = e.suivant()) {
      if (!e.est_element()) {
        autre_noeud(e, contenu);
        continue;
      }
      std::size_t i = 0;
      while (i < nb && !est(contenu.mots[i], e.valeur())) ++i;
      if (i == nb) {
        if (suite == n)
          suite = contenu.mots[attendu].fois == Fois::debut && vus & 1U << attendu
                      ? e.suivant(std::string(contenu.mots[attendu].nom).c_str())
                      : Noeud();
        if (suite) continue;  // said of the list that it ends
        if (!contenu.libre || (vus == 0 && contenu.mots[0].fois == Fois::debut))
          signaler(Code::element_inconnu, e, "rien ne lit l'element " + citer(e.valeur()));
        continue;
      }
      const Mot& mot = contenu.mots[i];
      if (vus & 1U << i && !repete(mot, n)) {
        signaler(Code::element_en_double, e,
                 citer(e.valeur()) + " donne deux fois, le premier est lu");
        continue;
      }
      vus |= 1U << i;
      attendu = mot.fois == Fois::debut ? i : (i + 1) % nb;
      suite = n;
      if (mot.dedans) visiter(e, *mot.dedans);
    }
  }

  /// A slot of several sub-entities names them all; that it has several has been said.
  static bool repete(const Mot& mot, Noeud n) {
    if (mot.fois != Fois::multiple) return mot.fois == Fois::debut;
    const Noeud nb = n.premier(("Nb" + std::string(mot.nom)).c_str());
    return !nb || !nb.premier() || std::string_view(nb.premier().valeur()) != "1";
  }

  void autre_noeud(Noeud n, const Contenu& contenu) {
    if (n.est_texte() && !contenu.libre)
      signaler(Code::element_inconnu, n, "rien ne lit le texte " + entre_apostrophes(n.valeur()));
    if (n.est_commentaire())
      for (const Mot& mot : contenu.mots)
        if (std::strstr(n.valeur(), ("<" + std::string(mot.nom)).c_str()))
          return signaler(Code::element_commente, n, std::string(mot.nom) + " en commentaire");
  }

  CasLu& r_;
  Fichier f_;
  const char* sorte_{};
  const char* nom_{};
  int rang_{};
};

/// By Fichier.
constexpr std::array<const Contenu*, nb_fichiers> contenus{&scene, &bloc, &face, &edge, &vertex};

}  // namespace

void inventorier(CasLu& cas, Fichier f, const DocumentXml& doc) {
  const SorteDeFichier& c = sortes_de_fichier[f];
  const Noeud racine = doc.noeud().premier(c.racine);
  if (!racine) return;
  if (const Noeud seconde = racine.suivant(c.racine))
    cas.signaler(Code::element_en_double, f, seconde.ligne(), "fichier", "",
                 std::string(c.racine) + " donne deux fois, le premier est lu");
  Inventaire i(cas, f);
  if (f != fic_def) return i.liste(racine, c.sorte, *contenus[f], "Ident");
  i.entite(racine, c.sorte, *contenus[f]);
  if (const Noeud avion = racine.premier("reference_avion"))
    for (Noeud e = avion.premier(); e; e = e.suivant())
      cas.lignes_avion.try_emplace(e.valeur(), e.ligne());
  if (const Noeud pieces = racine.premier("liste_pieces")) {
    cas.lignes_avion["liste_pieces"] = pieces.ligne();
    i.liste(pieces, "piece", piece, "nom");
  }
  if (const Noeud raccords = racine.premier("liste_raccords"))
    i.liste(raccords, "raccord", raccord, nullptr);
}

}  // namespace topomine
