#include "app/topodata/importation.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <vector>

#include "app/topodata/depot.h"
#include "app/topodata/progres.h"
#include "app/topodata/sortie.h"
#include "base/configuration.h"
#include "base/fichiers.h"
#include "base/lecture/climite.h"
#include "base/lecture/fichier.h"
#include "base/modes.h"
#include "cgns/ecriture_cas.h"
#include "cgns/enfant.h"
#include "dataset/csv.h"
#include "mesh/numbering.h"
#include "texte/affichable.h"
#include "texte/nombres.h"
#include "verifie/catalogue.h"
#include "verifie/lecture_stricte.h"

namespace topomine {

namespace {

std::string rogner(std::string s) {
  s.erase(0, s.find_first_not_of(" \t\r"));
  s.erase(s.find_last_not_of(" \t\r") + 1);
  return s;
}

/// The rows of a csv file of two fields, by the first; a first line whose second field `lire` does
/// not take is a header. A name may hold commas: the last field is the value.
template <class T, class Lire>
std::map<std::string, T> lire_rangees(const std::string& fichier, Lire lire, const char* attendu) {
  std::map<std::string, T> valeurs;
  if (fichier.empty()) return valeurs;
  std::string texte;
  if (lire_fichier(fichier, texte) != Lecture::faite) throw Erreur(fichier + " : illisible");
  const auto lignes = lire_csv(texte);
  if (!lignes) throw Erreur(fichier + " : guillemets mal fermes ; attendu : " + attendu);
  for (std::size_t n = 0; n < lignes->size(); ++n) {
    const std::vector<std::string>& champs = (*lignes)[n];
    if (champs.empty() || (champs.size() == 1 && rogner(champs[0]).empty())) continue;
    const bool seul = champs.size() == 1;
    const std::optional<T> valeur = seul ? std::nullopt : lire(rogner(champs.back()));
    std::string nom = champs[0];
    for (std::size_t i = 1; i + 1 < champs.size(); ++i) nom += ',' + champs[i];
    if (valeur)
      valeurs[nom_de_famille(rogner(nom))] = *valeur;
    else if (n > 0 || seul)
      throw Erreur(fichier + ":" + std::to_string(n + 1) + " : attendu : " + attendu);
  }
  return valeurs;
}

/// climite.cfg as it is, and with new rows.
class Climite {
 public:
  explicit Climite(const std::string& chemin) : fichier_(chemin + "climite.cfg") {
    if (!std::filesystem::exists(std::filesystem::symlink_status(fichier_))) return;
    const ConfigLue lue = lire_config(chemin);
    for (const Constat& c : lue.constats)
      if (fiche(c.code).gravite == Gravite::erreur)
        throw Erreur(c.fichier + ":" + std::to_string(c.ligne) + " : " + c.quoi +
                     " ; rien n'est ecrit");
    if (lire_fichier(fichier_, texte_) != Lecture::faite) throw Erreur(fichier_ + " : illisible");
    for (const auto& [code, ligne] : lue.codes)
      table_[code] = {ligne.bccode.value_or(0), ligne.famille};
  }

  const TableClimite& table() const { return table_; }

  /// Null when there is no row to add. It is in place after conclure().
  std::unique_ptr<Sortie> completer(const Familles& familles) const {
    std::string ajout;
    for (const Famille& f : familles.liste)
      if (f.nouvelle) ajout += rangee(f);
    if (ajout.empty()) return nullptr;
    auto sortie = std::make_unique<Sortie>(fichier_);
    sortie->flux() << (texte_.empty() ? entete_climite : std::string_view(texte_)) << ajout;
    sortie->fermer();
    return sortie;
  }

 private:
  /// A field per column of the header there is; empty in those that are not ours.
  std::string rangee(const Famille& f) const {
    LignesClimite lignes(texte_.empty() ? entete_climite : std::string_view(texte_));
    lignes.suivante();
    std::string r;
    for (const std::string_view colonne : lignes.champs()) {
      if (colonne == colonne_code)
        r += std::to_string(f.code);
      else if (colonne == colonne_bccode)
        r += std::to_string(f.bccode);
      else if (colonne == colonne_famille)
        r += f.nom;
      r += ';';
    }
    return r + '\n';
  }

  std::string fichier_, texte_;
  TableClimite table_;
};

void controler_noms(OptionsImportation& o) {
  std::error_code erreur;
  if (!std::filesystem::is_directory(o.chemin, erreur))
    throw Erreur("dossier inconnu : '" + o.chemin + "'");
  if (!o.chemin.ends_with('/')) o.chemin += '/';
  const auto impropre = [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; };
  if (o.base.empty() || o.base.starts_with('.') || std::ranges::any_of(o.base, impropre))
    throw Erreur("nom de base impropre : '" + affichable(o.base) + "'");
}

std::optional<char> lire_lettre(const std::string& texte) {
  if (texte.size() != 1 || std::string("CHO").find(texte[0]) == std::string::npos) return {};
  return texte[0];
}

/// Puts the letters of --pieces in place of those that were found.
void imposer(SceneSuggeree& scene, const std::map<std::string, char>& lettres,
             std::vector<std::string>& dits) {
  for (const auto& [famille, lettre] : lettres) {
    const auto piece = std::ranges::find(scene.pieces, famille, &PieceSuggeree::famille);
    if (piece == scene.pieces.end())
      dits.push_back("famille '" + famille + "' de --pieces : aucune paroi de ce maillage");
    else
      piece->topologie = lettre;
  }
}

void ecrire_fichiers(Depot& depot, const CasImporte& cas, const std::string& base,
                     const std::string& voulus) {
  depot.ecrire(base + fin_de_nom(fic_def),
               [&](std::ostream& out) { ecrire_scene(out, cas, base); });
  for (const Mode mode : tous_les_modes) {
    if (voulus != "toutes" && voulus != nom(mode)) continue;
    const auto ecrire = [&](Fichier f, auto corps) {
      depot.ecrire(base + fin_de_nom(f, nom(mode)), corps);
    };
    ecrire(fic_blck, [&](std::ostream& out) { ecrire_blocs(out, cas); });
    ecrire(fic_face, [&](std::ostream& out) { ecrire_faces(out, cas, mode); });
    ecrire(fic_edge, [&](std::ostream& out) { ecrire_edges(out, cas, mode); });
    ecrire(fic_vrtx, [&](std::ostream& out) { ecrire_vertices(out, cas, mode); });
  }
}

void resumer(std::ostream& out, const CasImporte& cas, const std::vector<std::string>& dits) {
  for (std::size_t b = 0; b < cas.topologie.blocs.size(); ++b) {
    const Zone& z = cas.structure.zones[b];
    out << "bloc " << b + 1 << " : zone '" << z.nom << "', " << z.taille[0] - 1 << " x "
        << z.taille[1] - 1 << " x " << z.taille[2] - 1 << " cellules, type "
        << type_sans_bord + cas.topologie.blocs[b].nb_bord
        << (cas.mesures[b].gauche ? ", repere gauche : i retourne\n" : "\n");
  }
  std::vector<int> faces(cas.familles.liste.size());
  for (const FaceTopo& f : cas.topologie.faces)
    for (const std::size_t famille : f.familles) ++faces[famille];
  for (std::size_t f = 0; f < faces.size(); ++f) {
    const Famille& famille = cas.familles.liste[f];
    out << "famille '" << famille.nom << "' : code " << famille.code
        << (famille.nouvelle ? " (nouveau)" : "") << ", BCCODE " << famille.bccode << ", "
        << faces[f] << " face(s)";
    const auto piece = std::ranges::find(cas.scene.pieces, famille.nom, &PieceSuggeree::famille);
    if (piece != cas.scene.pieces.end())
      out << ", piece " << piece->nom << " en " << piece->topologie;
    out << '\n';
  }
  for (const RaccordSuggere& r : cas.scene.raccords)
    out << "raccord " << r.piece1 << " - " << r.piece2 << " : " << r.type << '\n';
  for (const std::string& dit : dits) out << "a savoir : " << dit << '\n';
  out << cas.topologie.blocs.size() << " blocs, " << cas.topologie.faces.size() << " faces, "
      << cas.topologie.edges.size() << " edges, " << cas.topologie.sommets.size() << " sommets\n";
}

void importer_maillage(OptionsImportation o) {
  controler_noms(o);
  const auto bccodes = lire_rangees<int>(o.codes, entier_strict, "famille,BCCODE");
  const auto lettres =
      lire_rangees<char>(o.pieces, lire_lettre, "famille,C ou famille,H ou famille,O");
  const Climite climite(o.chemin);
  Progres progres;
  progres.etape("lecture de " + o.maillage);
  const Extrait e = extraire(o.maillage, {o.base_cgns, o.tolerance});
  const Decoupage d = decouper(e.structure);
  accorder(e, d);
  const Familles familles =
      attribuer_codes(e.structure, d, pieces_ecrasees(d, e.mesures), climite.table(), bccodes);
  const Topologie t = identifier(e.structure, d, e.mesures, familles);
  SceneSuggeree scene = suggerer_scene(e.structure, d, e.mesures, familles, t);
  std::vector<std::string> dits;
  for (const auto* liste : {&e.structure.dits, &d.dits, &familles.dits, &t.dits})
    dits.insert(dits.end(), liste->begin(), liste->end());
  imposer(scene, lettres, dits);

  progres.etape("ecriture de " + o.base);
  const CasImporte cas{e.structure, e.mesures, familles, t, scene};
  Depot depot(o.chemin + o.base, o.force);
  ecrire_fichiers(depot, cas, o.base, o.mode);
  depot.preparer();
  if (const auto sortie = climite.completer(familles)) sortie->conclure();
  depot.publier();
  progres.effacer();
  lister([&](std::ostream& listing) { resumer(listing, cas, dits); });
}

}  // namespace

void importer(const OptionsImportation& o) {
  try {
    importer_maillage(o);
  } catch (const MaillageRefuse& r) {
    throw Erreur(affichable(r.what()));
  }
}

}  // namespace topomine
