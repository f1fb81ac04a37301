#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <string>

#include "base/configuration.h"
#include "base/lecture/climite.h"
#include "base/lecture/lectures.h"
#include "base/lecture/xml.h"
#include "dataset/basebuffer.h"
#include "fuzz/cibles.h"
#include "fuzz/outils.h"
#include "fuzz/proprietes.h"
#include "tests/support/exemple_litteral.h"
#include "tests/support/verifier_liens.h"

using namespace topomine;

namespace {

/// load_all, but for the files.
bool charger(Base& base, const std::array<std::string_view, 6>& textes, Journal& journal) {
  const auto lire_xml = [&](std::string_view texte, Marche marche) {
    DocumentXml doc;
    return analyser_xml(std::string(texte), doc) && marche(base, doc, "entree", journal);
  };
  oublier_configuration();
  try {
    if (!parcourir_climite(textes[0], journal)) return false;
  } catch (const std::exception&) {
    return false;
  }
  return lire_xml(textes[1], parcourir_plane) && lire_xml(textes[1], parcourir_scene) &&
         lire_xml(textes[2], parcourir_blocs) && lire_xml(textes[3], parcourir_faces) &&
         lire_xml(textes[4], parcourir_edges) && lire_xml(textes[5], parcourir_vrtxs) &&
         base.make_link() && base.maj_typeC();
}

}  // namespace

void cible_collection(std::string_view entree) {
  std::array<std::string_view, 6> textes;
  for (std::string_view& texte : textes) {
    texte = entree.substr(0, entree.find(separateur));
    entree.remove_prefix(std::min(texte.size() + 1, entree.size()));
  }
  JournalEssai journal;
  Base base("mesh_case_2", "", "nrm");
  base.disp = false;
  bool charge = false;
  if (!sans_faute([&] { charge = charger(base, textes, journal); }) || !charge) return;
  const Ecoute muette;
  PROMET(liens_reciproques(base));
  verifier_questions(base);

  BaseBuffer table("topology");
  table.add_base(base);
  table.add_base(base);
  PROMET(static_cast<std::size_t>(table.nb_expl()) == 2 * base.blocs.size());
  std::size_t rang = 0;
  for (const auto& [numero, bloc] : base.blocs)
    PROMET(table._expl[rang++] == exemple_litteral(base, bloc));
  std::ostringstream weka, matrice;
  table.Print_weka(weka);
  srand48(1);
  PROMET(table.normalize() == 1);
  table.rdm_list();
  table.mat_cov(matrice);
  const std::string texte = matrice.str();
  PROMET(std::ranges::count(texte, '\t') == 50 * 50 && std::ranges::count(texte, '\n') == 50);
}
