#include "dataset/csv.h"

#include <cstddef>
#include <ostream>

#include "dataset/basebuffer.h"

namespace topomine {

namespace {

constexpr std::size_t taille_tampon = 1 << 16;
constexpr std::string_view fin_de_ligne = "\r\n";

}  // namespace

void ajouter_champ_csv(std::string& ligne, std::string_view champ) {
  if (champ.find_first_of(",\"\r\n") == std::string_view::npos) {
    ligne += champ;
    return;
  }
  ligne += '"';
  for (const char c : champ) ligne.append(c == '"' ? 2 : 1, c);
  ligne += '"';
}

void ecrire_ligne_csv(std::ostream& out, const std::vector<std::string>& champs) {
  std::string ligne;
  for (std::size_t i = 0; i < champs.size(); ++i) {
    if (i > 0) ligne += ',';
    ajouter_champ_csv(ligne, champs[i]);
  }
  out << (ligne += fin_de_ligne);
}

std::ostream& ecrire_csv(std::ostream& out, const BaseBuffer& table) {
  std::vector<std::size_t> colonnes;
  std::vector<std::string> noms;
  for (std::size_t n = 0; n < table._attr.size(); ++n) {
    const auto montre = table._aff.find(table._attr[n].first);
    if (montre == table._aff.end() || !montre->second) continue;
    colonnes.push_back(n);
    noms.push_back(table._attr[n].first);
  }
  ecrire_ligne_csv(out, noms);

  std::string tampon;
  for (const BaseBuffer::Exemple& exemple : table._expl) {
    for (std::size_t i = 0; i < colonnes.size(); ++i) {
      if (i > 0) tampon += ',';
      if (colonnes[i] < exemple.size()) ajouter_champ_csv(tampon, exemple[colonnes[i]]);
    }
    tampon += fin_de_ligne;
    if (tampon.size() < taille_tampon) continue;
    out.write(tampon.data(), static_cast<std::streamsize>(tampon.size()));
    tampon.clear();
  }
  return out.write(tampon.data(), static_cast<std::streamsize>(tampon.size()));
}

}  // namespace topomine
