#include "base/configuration.h"

#include <exception>
#include <string_view>

#include "base/base.h"
#include "texte/nombres.h"

using namespace topomine;

bool Base::init_cl_cfg = false;
std::map<int, std::map<std::string, std::string>> Base::list_CLim;
std::vector<std::string> Base::list_attr;

void clear_blk(std::string& s) {
  s.erase(0, s.find_first_not_of(" \t"));
}

const std::string* topomine::chercher_CL(int code, const std::string& colonne) {
  const auto ligne = Base::list_CLim.find(code);
  if (ligne == Base::list_CLim.end()) return nullptr;
  const auto valeur = ligne->second.find(colonne);
  return valeur == ligne->second.end() ? nullptr : &valeur->second;
}

void topomine::oublier_configuration() {
  Base::init_cl_cfg = false;
  Base::list_CLim.clear();
  std::vector<std::string>().swap(Base::list_attr);
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
  static const std::string colonne(colonne_bccode);
  std::vector<int> bccodes;
  bccodes.reserve(codes.size());
  FluxNombres nombres;
  for (const int code : codes) {
    const std::string* texte = chercher_CL(code, colonne);
    bccodes.push_back(nombres.entier(texte ? std::string_view(*texte) : std::string_view()));
  }
  return bccodes;
}
