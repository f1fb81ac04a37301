#include "dataset/collection.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "base/fichiers.h"
#include "dataset/basebuffer.h"
#include "dataset/schema.h"

namespace topomine {

namespace fs = std::filesystem;

namespace {

bool est_chiffre(char c) {
  return c >= '0' && c <= '9';
}

/// The digits at the start of a text, without leading zeros; they are taken off it.
std::string_view prendre_nombre(std::string_view& texte) {
  const auto fin = std::ranges::find_if_not(texte, est_chiffre) - texte.begin();
  std::string_view nombre = texte.substr(0, static_cast<std::size_t>(fin));
  texte.remove_prefix(nombre.size());
  nombre.remove_prefix(std::min(nombre.find_first_not_of('0'), nombre.size()));
  return nombre;
}

/// All bases are of one collection and built in: schema.h's numbers can be used.
bool numeros_integres(const std::vector<Provenance>& bases) {
  return std::ranges::all_of(bases, [&](const Provenance& p) {
    return p.chemin == bases[0].chemin &&
           std::ranges::find(bases_integrees, p.base) != bases_integrees.end();
  });
}

}  // namespace

bool ordre_naturel(std::string_view a, std::string_view b) {
  const std::string_view tout_a = a, tout_b = b;
  while (!a.empty() && !b.empty()) {
    if (est_chiffre(a[0]) && est_chiffre(b[0])) {
      const std::string_view na = prendre_nombre(a), nb = prendre_nombre(b);
      if (na.size() != nb.size()) return na.size() < nb.size();
      if (na != nb) return na < nb;
    } else {
      if (a[0] != b[0]) return static_cast<unsigned char>(a[0]) < static_cast<unsigned char>(b[0]);
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  if (a.empty() != b.empty()) return a.empty();
  return tout_a < tout_b;  // the same but for leading zeros
}

std::vector<std::string> bases_presentes(const std::string& chemin) {
  std::vector<std::string> noms;
  std::error_code erreur;
  for (fs::directory_iterator i(chemin, erreur), fin; !erreur && i != fin; i.increment(erreur)) {
    const std::string nom = i->path().filename().string();
    std::error_code absent;
    if (fs::is_regular_file(i->path() / (nom + fin_de_nom(fic_def)), absent)) noms.push_back(nom);
  }
  std::ranges::sort(noms, ordre_naturel);
  return noms;
}

std::vector<std::string> noms_des_collections(const std::vector<std::string>& chemins) {
  std::vector<std::string> noms, entiers;
  for (std::string chemin : chemins) {
    while (chemin.size() > 1 && chemin.ends_with('/')) chemin.pop_back();
    fs::path nom = fs::path(chemin).filename();
    std::error_code erreur;
    // "." and ".." name no folder: its real name is taken.
    if (nom == "." || nom == ".." || nom.empty()) nom = fs::canonical(chemin, erreur).filename();
    noms.push_back(nom.string());
    entiers.push_back(chemin);
  }
  const std::set<std::string> differents(noms.begin(), noms.end());
  return differents.size() == noms.size() ? noms : entiers;
}

void numeroter(std::vector<Provenance>& bases) {
  const bool integres = numeros_integres(bases);
  for (std::size_t i = 0; i < bases.size(); ++i)
    bases[i].numero = integres ? numero_base(bases[i].base) : static_cast<int>(i);
}

std::string type_num_base(const std::vector<Provenance>& bases) {
  if (numeros_integres(bases)) return std::string(schema[col_Num_Base].type);
  std::string type = "{";
  for (std::size_t i = 0; i < bases.size(); ++i) type += (i > 0 ? "," : "") + std::to_string(i);
  return type + "}";
}

void ajouter_collection(BaseBuffer& table, const std::vector<Provenance>& bases,
                        std::string (*ecrire)(const std::string&)) {
  std::map<std::pair<std::string, std::string>, std::string> noms;  // by number and base
  for (const Provenance& p : bases)
    noms.try_emplace({std::to_string(p.numero), p.base}, ecrire(p.collection));
  for (BaseBuffer::Exemple& exemple : table._expl) {
    const std::string& base = exemple.at(col_base);
    const auto trouve = noms.find({exemple.at(col_Num_Base), base});
    std::string nom = trouve == noms.end() ? base : trouve->second;
    exemple.insert(exemple.begin(), std::move(nom));
  }
  table._attr.emplace(table._attr.begin(), nom_collection, "string");
  table._aff[nom_collection] = true;
  if (table._num_classe >= 0) ++table._num_classe;
}

}  // namespace topomine
