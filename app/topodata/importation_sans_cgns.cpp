#include "app/topodata/importation.h"
#include "app/topodata/sortie.h"

namespace topomine {

void importer(const OptionsImportation&) {
  throw Erreur("importe : construit sans CGNS (paquet Debian libcgns-dev, puis reconstruire)");
}

}  // namespace topomine
