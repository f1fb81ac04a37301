#include "verifie/catalogue.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <stdexcept>

#include "verifie/fiches.h"

namespace topomine {

namespace {

static_assert(std::ranges::is_sorted(fiches, {}, &Fiche::code));

struct Chapitre {
  Code premier;
  std::string_view titre;
};

constexpr Chapitre chapitres[]{
    {Code::fichier_absent, "Fichiers et XML"},
    {Code::element_absent, "Elements, textes, numeros"},
    {Code::bloc_manquant, "Liens"},
    {Code::bord_sans_code, "Bords et codes"},
    {Code::sommet_deplace, "Geometrie"},
    {Code::famille_c_inconnue, "Scene"},
    {Code::face_partagee, "Faces partagees"},
    {Code::numero_hors_suite, "Numeros"},
    {Code::config_vide, "climite.cfg"},
    {Code::modes_entites, "Modes"},
};

}  // namespace

std::span<const Fiche> catalogue() {
  return fiches;
}

const Fiche& fiche(Code code) {
  const auto* const trouvee = std::ranges::lower_bound(fiches, code, {}, &Fiche::code);
  if (trouvee == std::end(fiches) || trouvee->code != code)
    throw std::logic_error("code sans fiche");
  return *trouvee;
}

std::string nom(Code code) {
  std::string chiffres = std::to_string(static_cast<int>(code));
  chiffres.insert(0, 3 - std::min<std::size_t>(chiffres.size(), 3), '0');
  return "V" + chiffres;
}

std::optional<Code> code_nomme(std::string_view cherche) {
  const auto* const trouvee =
      std::ranges::find_if(fiches, [&](const Fiche& f) { return nom(f.code) == cherche; });
  if (trouvee == std::end(fiches)) return {};
  return trouvee->code;
}

std::string_view nom(Gravite gravite) {
  constexpr std::string_view noms[]{"avis", "avertissement", "erreur"};
  return noms[static_cast<std::size_t>(gravite)];
}

void expliquer(std::ostream& out, const Fiche& f) {
  out << nom(f.code) << " [" << nom(f.gravite) << "] " << f.titre << "\n  Sens   : " << f.sens
      << "\n  Table  : " << f.table << "\n  Remede : " << f.remede << '\n';
}

void ecrire_catalogue(std::ostream& out) {
  const Chapitre* suivant = chapitres;
  for (const Fiche& f : fiches) {
    if (suivant != std::end(chapitres) && f.code == suivant->premier) {
      out << "\n### " << suivant->titre
          << "\n\n| code | gravite | quoi | sens | pour la table | remede |\n"
             "|---|---|---|---|---|---|\n";
      ++suivant;
    }
    out << "| " << nom(f.code) << " | " << nom(f.gravite) << " | " << f.titre << " | " << f.sens
        << " | " << f.table << " | " << f.remede << " |\n";
  }
}

}  // namespace topomine
