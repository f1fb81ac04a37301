#include "cgns/fichier_cgns.h"

#include <cgns_io.h>
#include <cgnslib.h>

#include <algorithm>

#include "cgns/appels_cgns.h"
#include "cgns/lecture_zone.h"

namespace topomine {

namespace {

struct NumeroZone {
  int numero;  // of the library
  Zone zone;
};

}  // namespace

FichierCgns::FichierCgns(const std::string& fichier, const std::string& base) {
  if (cg_open(fichier.c_str(), CG_MODE_READ, &fichier_) != CG_OK) refuser_fichier();
  choisir_base(base);
}

FichierCgns::~FichierCgns() {
  cg_close(fichier_);
}

void FichierCgns::choisir_base(const std::string& nom) {
  int nb{}, cellules{}, espace{};
  exiger_reussite(cg_nbases(fichier_, &nb));
  std::string noms;
  for (int b = 1; b <= nb; ++b) {
    NomCgns lu;
    exiger_reussite(cg_base_read(fichier_, b, lu.place(), &cellules, &espace));
    noms += (b > 1 ? ", '" : "'") + lu.texte() + "'";
    if ((nb > 1 || !nom.empty()) && lu.texte() != nom) continue;
    base_ = b;
    nom_base_ = lu.texte();
    if (cellules != 3 || espace != 3)
      throw MaillageRefuse("base '" + nom_base_ + "' : cellules de dimension " +
                           std::to_string(cellules) + " dans un espace de dimension " +
                           std::to_string(espace) + ", il faut 3 et 3");
  }
  if (base_ > 0) return;
  if (nb == 0) throw MaillageRefuse("aucune base dans ce fichier");
  if (nom.empty())
    throw MaillageRefuse(std::to_string(nb) + " bases, choisir avec --base-cgns : " + noms);
  throw MaillageRefuse("base '" + nom + "' absente, il y a " + noms);
}

Zone FichierCgns::zone(int z) const {
  NomCgns nom;
  CGNS_ENUMT(ZoneType_t) type{};
  exiger_reussite(cg_zone_type(fichier_, base_, z, &type));
  // As large as the library makes it for whatever type it takes the zone for.
  std::array<cgsize_t, 9> tailles{};
  exiger_reussite(cg_zone_read(fichier_, base_, z, nom.place(), tailles.data()));
  if (type != CGNS_ENUMV(Structured))
    throw MaillageRefuse("zone '" + nom.texte() +
                         "' : non structuree, seules les zones structurees s'importent");
  return {nom.texte(), {tailles[0], tailles[1], tailles[2]}};
}

// The library sorts zones by name; their order in the file is read from its nodes.
std::map<std::string, std::size_t> FichierCgns::ordre_des_noeuds() const {
  constexpr int longueur = CGIO_MAX_NAME_LENGTH + 1;
  std::map<std::string, std::size_t> ordre;
  int acces{}, nb{};
  double racine{}, noeud{};
  if (cg_get_cgio(fichier_, &acces) != CG_OK || cg_root_id(fichier_, &racine) != CG_OK ||
      cgio_get_node_id(acces, racine, nom_base_.c_str(), &noeud) != CGIO_ERR_NONE ||
      cgio_number_children(acces, noeud, &nb) != CGIO_ERR_NONE)
    return ordre;
  for (int n = 1; n <= nb; ++n) {
    std::array<char, longueur> nom{};
    int lus{};
    if (cgio_children_names(acces, noeud, n, 1, longueur, &lus, nom.data()) != CGIO_ERR_NONE) break;
    ordre.emplace(nom.data(), ordre.size());
  }
  return ordre;
}

Structure FichierCgns::structure() {
  Structure s;
  s.base = nom_base_;
  int nb{};
  exiger_reussite(cg_nzones(fichier_, base_, &nb));
  const std::map<std::string, std::size_t> ordre = ordre_des_noeuds();
  const auto place = [&](const NumeroZone& z) {
    const auto trouvee = ordre.find(z.zone.nom);
    return trouvee != ordre.end() ? trouvee->second : ordre.size();
  };
  std::vector<NumeroZone> zones;
  for (int z = 1; z <= nb; ++z) zones.push_back({z, zone(z)});
  std::ranges::stable_sort(zones, {}, place);
  Repertoire repertoire;
  numeros_.clear();
  noms_.clear();
  for (const NumeroZone& z : zones) {
    repertoire.zones.emplace(z.zone.nom, s.zones.size());
    s.zones.push_back(z.zone);
    numeros_.push_back(z.numero);
  }
  valider(s);
  repertoire.familles = types_des_familles(fichier_, base_);
  std::vector<std::string> unites;
  for (std::size_t z = 0; z < numeros_.size(); ++z) {
    noms_.push_back(s.zones[z].nom);
    if (int grilles = 0; cg_ngrids(fichier_, base_, numeros_[z], &grilles) == CG_OK && grilles > 1)
      s.dits.push_back("zone '" + noms_.back() + "' : " + std::to_string(grilles) +
                       " jeux de coordonnees, seul GridCoordinates est lu");
    unites.push_back(unite_de_longueur(numeros_[z]));
    lire_raccords(s, repertoire, {fichier_, base_, numeros_[z], z});
    lire_conditions(s, repertoire, {fichier_, base_, numeros_[z], z});
  }
  std::erase(unites, "");
  std::ranges::sort(unites);
  unites.erase(std::unique(unites.begin(), unites.end()), unites.end());
  if (unites.size() > 1)
    s.dits.push_back("zones en " + unites.front() + " et en " + unites.back() +
                     ", les coordonnees sont prises telles quelles");
  return s;
}

std::string FichierCgns::unite_de_longueur(int z) const {
  const auto lue = [](int la) -> std::string {
    CGNS_ENUMT(MassUnits_t) masse{};
    CGNS_ENUMT(LengthUnits_t) longueur{};
    CGNS_ENUMT(TimeUnits_t) temps{};
    CGNS_ENUMT(TemperatureUnits_t) temperature{};
    CGNS_ENUMT(AngleUnits_t) angle{};
    if (la != CG_OK || cg_units_read(&masse, &longueur, &temps, &temperature, &angle) != CG_OK ||
        longueur <= CGNS_ENUMV(LengthUnitsUserDefined))
      return "";
    return cg_LengthUnitsName(longueur);
  };
  // The innermost one counts.
  for (const std::string& unite :
       {lue(cg_goto(fichier_, base_, "Zone_t", z, "GridCoordinates_t", 1, "DataArray_t", 1, "end")),
        lue(cg_goto(fichier_, base_, "Zone_t", z, "GridCoordinates_t", 1, "end")),
        lue(cg_goto(fichier_, base_, "Zone_t", z, "end")), lue(cg_goto(fichier_, base_, "end"))})
    if (!unite.empty()) return unite;
  return "";
}

bool FichierCgns::a_coordonnee(int z, const char* nom) const {
  int nb{};
  exiger_reussite(cg_ncoords(fichier_, base_, z, &nb));
  for (int c = 1; c <= nb; ++c) {
    NomCgns lu;
    CGNS_ENUMT(DataType_t) type{};
    exiger_reussite(cg_coord_info(fichier_, base_, z, c, &type, lu.place()));
    if (lu.texte() == nom) return true;
  }
  return false;
}

void FichierCgns::coordonnees(std::size_t zone, const Ijk& taille,
                              const std::array<std::span<double>, 3>& xyz) const {
  constexpr auto noms = std::to_array<const char*>({"CoordinateX", "CoordinateY", "CoordinateZ"});
  const int z = numeros_[zone];
  std::array<cgsize_t, 3> debut{1, 1, 1}, fin{};
  for (const std::size_t a : axes_ijk) fin[a] = static_cast<cgsize_t>(taille[a]);
  for (const std::size_t a : axes_ijk) {
    if (!a_coordonnee(z, noms[a]))
      throw MaillageRefuse("zone '" + noms_[zone] + "' : pas de coordonnees cartesiennes (" +
                           noms[a] + ")");
    exiger_reussite(cg_coord_read(fichier_, base_, z, noms[a], CGNS_ENUMV(RealDouble), debut.data(),
                                  fin.data(), xyz[a].data()));
  }
}

}  // namespace topomine
