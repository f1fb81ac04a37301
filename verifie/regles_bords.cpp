#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "base/modes.h"
#include "dataset/schema.h"
#include "mesh/numbering.h"
#include "verifie/catalogue.h"
#include "verifie/examen.h"

namespace topomine {

namespace {

constexpr char codes_de[] = "Boundary_Conditions";
constexpr int type_max = 39;
static_assert(schema[col_type].type == "{30,31,32,33,34,35,36,37,38,39}");

using Codes = std::vector<int>;

template <class Entite>
void ajouter_codes(Codes& codes, const Entite& entite) {
  for (int i = 0; i < entite.nb_BC(); ++i) codes.push_back(entite._BC(i));
}

/// Sorted, each once.
void ranger(Codes& codes) {
  std::ranges::sort(codes);
  codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
}

template <class Entite>
bool a_code_inconnu(const Examen& x, const Entite& entite) {
  if (!x.config.lue) return false;
  for (int i = 0; i < entite.nb_BC(); ++i)
    if (!x.config.codes.contains(entite._BC(i))) return true;
  return false;
}

bool codes_illisibles(const Examen& x, Fichier f, int rang) {
  return x.cas.illisible(f, x.numero(f, rang), partie_codes);
}

}  // namespace

/// One finding per unknown code, at the first entity that bears it.
void regle_codes_connus(Examen& x) {
  // A code may be that of a row that could not be read.
  const auto erreur = [](const Constat& c) { return fiche(c.code).gravite == Gravite::erreur; };
  if (!x.config.lue || std::ranges::any_of(x.config.constats, erreur)) return;
  struct Usage {
    Fichier f;
    int premier;
    int nb[nb_fichiers] = {};
  };
  std::map<int, Usage> inconnus;
  const auto voir = [&](Fichier f, const auto& entites) {
    for (std::size_t rang = 0; rang < entites.size(); ++rang)
      for (int i = 0; i < entites[rang]->nb_BC(); ++i)
        if (const int code = entites[rang]->_BC(i); !x.config.codes.contains(code))
          ++inconnus.try_emplace(code, Usage{f, static_cast<int>(rang)}).first->second.nb[f];
  };
  voir(fic_face, x.faces);
  voir(fic_edge, x.edges);
  for (const auto& [code, usage] : inconnus) {
    std::string dit = "code " + std::to_string(code) + " inconnu de climite.cfg";
    if (usage.nb[fic_face] + usage.nb[fic_edge] > 1)
      dit += ", sur " + std::to_string(usage.nb[fic_face]) + " face(s) et " +
             std::to_string(usage.nb[fic_edge]) + " edge(s)";
    x.signaler(Code::code_inconnu, usage.f, usage.premier, dit, codes_de);
  }
}

/// Boundary faces bear one code, inner ones none.
void regle_codes_de_face(Examen& x) {
  if (x.liens_perdus || !x.lus({fic_blck, fic_face}) || x.cas.perdus[fic_blck] > 0) return;
  std::size_t trous = 0;
  for (const auto& faces : x.maille.blocs)
    trous += static_cast<std::size_t>(std::ranges::count(faces, inconnu));
  std::vector<int> nues;
  for (int f = 0; f < x.maille.num_faces.nb(); ++f) {
    const auto blocs = x.maille.blocs_de_face[f];
    const Face& face = *au(x.faces, f);
    if (blocs.size() > 2) {
      std::vector<int> numeros;
      for (const int b : blocs) numeros.push_back(x.numero(fic_blck, b));
      x.signaler(Code::face_de_trop, fic_face, f,
                 "sur " + std::to_string(blocs.size()) + " blocs : " + enumerer(numeros));
      x.douter(fic_face, f);
    } else if (codes_illisibles(x, fic_face, f) || x.est_douteux(fic_face, f) ||
               x.cas.disputes[fic_face].contains(x.numero(fic_face, f))) {
      x.douter(fic_face, f);
    } else if (blocs.size() == 1 && face.nb_BC() == 0) {
      nues.push_back(f);
    } else if (blocs.size() == 2 && face.nb_BC() > 0) {
      x.signaler(Code::interieur_code, fic_face, f,
                 "entre les blocs " + std::to_string(x.numero(fic_blck, blocs[0])) + " et " +
                     std::to_string(x.numero(fic_blck, blocs[1])) + ", avec le code " +
                     std::to_string(face._BC(0)),
                 codes_de);
      x.douter(fic_face, f);
    } else if (face.nb_BC() > 1) {
      Codes codes;
      ajouter_codes(codes, face);
      x.signaler(Code::code_repete, fic_face, f, "plusieurs codes : " + enumerer(codes), codes_de);
      x.douter(fic_face, f);
    }
  }
  for (const int f : nues) {
    // A slot that could not be read may be where its second block is.
    if (nues.size() > trous)
      x.signaler(Code::bord_sans_code, fic_face, f,
                 "au bord du bloc " +
                     std::to_string(x.numero(fic_blck, x.maille.blocs_de_face[f][0])) +
                     ", sans code");
    x.douter(fic_face, f);
  }
}

namespace {

/// What the codes of an edge are beside those of the faces that it bounds.
struct Accord {
  Codes portes, des_faces, attendus;
  bool juste() const { return portes == attendus; }
  /// Borne, and by none of the faces.
  int etranger() const {
    for (const int c : portes)
      if (!std::ranges::binary_search(des_faces, c)) return c;
    return 0;
  }
};

class CodesDEdge {
 public:
  CodesDEdge(Examen& x, Mode mode) : x_(x), mode_(mode), faux_(x.edges.size(), 0) {}

  void examiner() {
    // Blocks with an unknown slot: the missing face may carry the code, so their edges are not
    // judged.
    for (const auto& faces : x_.maille.blocs)
      if (contient(faces, inconnu))
        for (const int f : faces)
          if (f >= 0)
            for (const int e : au(x_.maille.faces, f))
              if (e >= 0) x_.douter(fic_edge, e);
    std::size_t nb_faux = 0, nb = 0;
    for (int e = 0; e < x_.maille.num_edges.nb(); ++e) {
      if (!jugeable(e)) continue;
      ++nb;
      au(faux_, e) = accord(e).juste() ? 0 : 1;
      nb_faux += static_cast<std::size_t>(au(faux_, e));
    }
    if (nb_faux > 8 && nb_faux * 4 > nb)
      return x_.signaler(Code::edge_code_du_mode, fic_edge,
                         "les codes de " + std::to_string(nb_faux) + " edges sur " +
                             std::to_string(nb) + " ne sont pas ceux du mode " + x_.cas.base.type);
    if (nb_faux == 0) return;
    for (int f = 0; f < x_.maille.num_faces.nb(); ++f) juger_face(f);
    for (int e = 0; e < x_.maille.num_edges.nb(); ++e)
      if (au(faux_, e)) dire(e);
  }

 private:
  bool jugeable(int e) const {
    if (x_.est_douteux(fic_edge, e) || codes_illisibles(x_, fic_edge, e) ||
        a_code_inconnu(x_, *au(x_.edges, e)))
      return false;
    return std::ranges::none_of(x_.maille.faces_d_edge[e], [&](int f) {
      return x_.est_douteux(fic_face, f) || a_code_inconnu(x_, *au(x_.faces, f));
    });
  }

  /// As if face `sauf` had `code`.
  const Accord& accord(int e, int sauf = inconnu, int code = {}) {
    for (Codes* codes : {&accord_.portes, &accord_.des_faces, &accord_.attendus}) codes->clear();
    ajouter_codes(accord_.portes, *au(x_.edges, e));
    ranger(accord_.portes);
    for (const int f : x_.maille.faces_d_edge[e]) {
      if (f == sauf)
        accord_.des_faces.push_back(code);
      else
        ajouter_codes(accord_.des_faces, *au(x_.faces, f));
    }
    ranger(accord_.des_faces);
    if (mode_ == Mode::ext || (mode_ == Mode::nrm && accord_.des_faces.size() > 1))
      accord_.attendus = accord_.des_faces;
    return accord_;
  }

  /// Reports the face when one other code on it would make all its edges right.
  void juger_face(int f) {
    const Face& face = *au(x_.faces, f);
    if (face.nb_BC() != 1) return;
    int nb_faux = 0;
    Codes candidats;
    for (const int e : au(x_.maille.faces, f)) {
      if (e < 0) continue;
      if (x_.maille.faces_d_edge[e].size() > beaucoup) return;
      nb_faux += au(faux_, e);
      for (const Codes& codes : {accord(e).portes, accord(e).des_faces})
        candidats.insert(candidats.end(), codes.begin(), codes.end());
    }
    if (nb_faux < 2) return;
    ranger(candidats);
    if (candidats.size() > beaucoup) return;
    const auto redresse = [&](int code) {
      return code != face._BC(0) && std::ranges::all_of(au(x_.maille.faces, f), [&](int e) {
               return e < 0 || accord(e, f, code).juste();
             });
    };
    const auto code = std::ranges::find_if(candidats, redresse);
    if (code == candidats.end()) return;
    x_.signaler(Code::face_code_contredit, fic_face, f,
                "code " + std::to_string(face._BC(0)) + " que ses edges contredisent, avec " +
                    std::to_string(*code) + " elles seraient justes",
                codes_de);
    for (const int e : au(x_.maille.faces, f))
      if (e >= 0) au(faux_, e) = false;
  }

  static std::string en_texte(const Codes& codes) {
    return codes.empty() ? "aucun code" : enumerer(codes);
  }

  void dire(int e) {
    const Accord& d = accord(e);
    if (const int code = d.etranger(); code != 0)
      return x_.signaler(Code::edge_code_etranger, fic_edge, e,
                         "code " + std::to_string(code) +
                             " qu'aucune de ses faces n'a, elles ont " + en_texte(d.des_faces));
    x_.signaler(Code::edge_code_du_mode, fic_edge, e,
                "porte " + en_texte(d.portes) + ", en " + x_.cas.base.type + " ses faces veulent " +
                    en_texte(d.attendus));
  }

  Examen& x_;
  Mode mode_;
  std::vector<char> faux_;
  Accord accord_;
};

void codes_repetes(Examen& x) {
  Codes codes;
  for (int e = 0; e < x.maille.num_edges.nb(); ++e) {
    codes.clear();
    ajouter_codes(codes, *au(x.edges, e));
    const std::size_t avant = codes.size();
    ranger(codes);
    if (codes.size() < avant) x.signaler(Code::code_repete, fic_edge, e, "un code donne deux fois");
  }
}

}  // namespace

void regle_codes_d_edge(Examen& x) {
  if (!x.lus({fic_edge})) return;
  codes_repetes(x);
  if (x.liens_perdus || !x.lus({fic_blck, fic_face}) || x.cas.perdus[fic_face] > 0) return;
  for (const Mode mode : tous_les_modes)
    if (x.cas.base.type == nom(mode)) CodesDEdge(x, mode).examiner();
}

void regle_types(Examen& x) {
  std::vector<int> faux;
  std::size_t juges = 0;
  const bool liens = !x.liens_perdus && x.lus({fic_blck, fic_face}) && x.cas.perdus[fic_blck] == 0;
  const auto au_bord = [&](int b) {
    int nb = 0;
    for (const int f : au(x.maille.blocs, b)) nb += f >= 0 && x.maille.blocs_de_face[f].size() == 1;
    return nb;
  };
  for (int b = 0; b < x.maille.num_blocs.nb(); ++b) {
    const int type = au(x.blocs, b)->_type();
    if (x.cas.illisible(fic_blck, x.numero(fic_blck, b), partie_valeurs)) continue;
    if (type < type_sans_bord || type > type_max) {
      x.signaler(Code::type_hors, fic_blck, b, "type " + std::to_string(type) + " hors de 30 a 39",
                 "Type");
      continue;
    }
    if (!liens || x.est_douteux(fic_blck, b)) continue;
    if (std::ranges::any_of(au(x.maille.blocs, b),
                            [&](int f) { return f >= 0 && x.est_douteux(fic_face, f); }))
      continue;
    ++juges;
    if (type != type_sans_bord + au_bord(b)) faux.push_back(b);
  }
  if (faux.size() * 2 > juges && juges > 1) return;  // this case numbers its types in another way
  for (const int b : faux)
    x.signaler(Code::type_faux, fic_blck, b,
               "type " + std::to_string(au(x.blocs, b)->_type()) + ", mais " +
                   std::to_string(au_bord(b)) + " face(s) au bord",
               "Type");
}

}  // namespace topomine
