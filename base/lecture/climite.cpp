#include "base/lecture/climite.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "base/base.h"
#include "base/lecture/fichier.h"
#include "texte/nombres.h"

using namespace topomine;

bool Base::init_cl_cfg = false;
std::map<int, std::map<std::string, std::string>> Base::list_CLim;
std::vector<std::string> Base::list_attr;

void clear_blk(std::string& s) {
  s.erase(0, s.find_first_not_of(" \t"));
}

namespace {

const std::string colonne_code = "Damas code";
const std::string colonne_bccode = "BCCODE";

/// Takes the next line, without its newline, off the front of `texte`. False when what is left has
/// no newline: an unfinished line does not count.
bool prendre_ligne(std::string_view& texte, std::string_view& ligne) {
  const std::size_t fin = texte.find('\n');
  if (fin == std::string_view::npos) return false;
  ligne = texte.substr(0, fin);
  texte.remove_prefix(fin + 1);
  return true;
}

/// The fields of a line, each ended by ";", leading blanks removed. Throws when the last field
/// lacks its ";": only blanks and a carriage return may follow the last one.
std::vector<std::string_view> couper(std::string_view ligne) {
  std::vector<std::string_view> champs;
  for (std::size_t fin; (fin = ligne.find(';')) != std::string_view::npos;) {
    std::string_view& champ = champs.emplace_back(ligne.substr(0, fin));
    champ.remove_prefix(std::min(champ.find_first_not_of(" \t"), champ.size()));
    ligne.remove_prefix(fin + 1);
  }
  if (ligne.find_first_not_of(" \t\r") != std::string_view::npos)
    throw std::runtime_error("champ sans point-virgule");
  return champs;
}

}  // namespace

const std::string* topomine::chercher_CL(int code, const std::string& colonne) {
  const auto ligne = Base::list_CLim.find(code);
  if (ligne == Base::list_CLim.end()) return nullptr;
  const auto valeur = ligne->second.find(colonne);
  return valeur == ligne->second.end() ? nullptr : &valeur->second;
}

bool topomine::parcourir_climite(std::string_view texte) {
  std::string_view ligne;
  if (!prendre_ligne(texte, ligne)) {
    std::cerr << "Fichier non_valide..." << std::endl;
    return false;
  }
  // The rows go by this header; list_attr keeps the names of a reading that failed before it.
  const std::vector<std::string_view> entete = couper(ligne);
  const std::vector<std::string> colonnes(entete.begin(), entete.end());
  Base::list_attr.insert(Base::list_attr.end(), colonnes.begin(), colonnes.end());

  // One row map and one conversion for all the rows: a short row keeps the values of the row above,
  // and what a code leaves unread spoils the codes below.
  std::map<std::string, std::string> rangee{{colonne_code, {}}};
  std::string_view texte_code;
  FluxNombres nombres;
  while (prendre_ligne(texte, ligne)) {
    const std::vector<std::string_view> champs = couper(ligne);
    if (champs.size() > colonnes.size()) throw std::runtime_error("champ sans colonne");
    for (std::size_t n = 0; n < champs.size(); ++n) {
      rangee[colonnes[n]] = champs[n];
      if (colonnes[n] == colonne_code) texte_code = champs[n];
    }
    const int code = nombres.entier(texte_code);
    Base::list_CLim[code] = rangee;
  }
  return true;
}

bool Base::load_clcfg(const std::string& repertoire) {
  if (init_cl_cfg) return true;
  try {
    std::string texte;
    switch (lire_fichier(repertoire + "climite.cfg", texte)) {
      case Lecture::absente:
        break;  // accepted in silence: no boundary condition is known
      case Lecture::impossible:
        throw std::runtime_error("fichier illisible");
      case Lecture::faite:
        if (!parcourir_climite(texte)) return false;
    }
    return init_cl_cfg = true;
  } catch (const std::exception&) {
    std::cerr << "Erreur acquisition climite.cfg.... " << std::endl;
    return false;
  }
}

std::string Base::_CL(int code, const std::string& colonne) const {
  try {
    if (const std::string* valeur = chercher_CL(code, colonne)) return *valeur;
  } catch (const std::exception&) {
    // No memory for the copy: as if there were no value.
  }
  return {};
}

std::vector<int> Base::DAM2BCCODE(const std::vector<int>& codes) const {
  std::vector<int> bccodes;
  bccodes.reserve(codes.size());
  FluxNombres nombres;
  for (const int code : codes) {
    const std::string* texte = chercher_CL(code, colonne_bccode);
    bccodes.push_back(nombres.entier(texte ? std::string_view(*texte) : std::string_view()));
  }
  return bccodes;
}
