#include "base/lecture/fichier.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace topomine {

namespace {

/// Whether there is a file to open: faite, or why not.
Lecture examiner(const std::string& nom) {
  std::error_code erreur;
  const std::filesystem::file_status etat = std::filesystem::status(nom, erreur);
  if (erreur == std::errc::too_many_symbolic_link_levels) return Lecture::boucle;
  if (erreur == std::errc::permission_denied) return Lecture::interdite;
  if (!std::filesystem::exists(etat)) return Lecture::absente;
  if (std::filesystem::is_directory(etat)) return Lecture::dossier;
  return std::filesystem::is_regular_file(etat) ? Lecture::faite : Lecture::special;
}

}  // namespace

Lecture lire_fichier(const std::string& nom, std::string& contenu) {
  if (const Lecture examen = examiner(nom); examen != Lecture::faite) return examen;
  std::ifstream flux(nom, std::ios::in | std::ios::binary);
  if (!flux) return Lecture::interdite;
  std::error_code erreur;
  const std::uintmax_t taille = std::filesystem::file_size(nom, erreur);
  contenu.reserve(static_cast<std::size_t>(erreur ? 0 : taille) + 16);  // what readers append
  contenu.resize(erreur ? 0 : static_cast<std::size_t>(taille));
  flux.read(contenu.data(), static_cast<std::streamsize>(contenu.size()));
  contenu.resize(static_cast<std::size_t>(flux.gcount()));  // it may have shrunk meanwhile
  return flux.bad() ? Lecture::interrompue : Lecture::faite;
}

}  // namespace topomine
