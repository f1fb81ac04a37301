#include "dataset/csv.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <utility>

#include "dataset/basebuffer.h"

namespace topomine {

namespace {

constexpr std::string_view texte_de(FinDeLigne fin) {
  return fin == FinDeLigne::crlf ? "\r\n" : "\n";
}

/// Columns to write, the class last.
std::vector<std::size_t> colonnes_montrees(const BaseBuffer& table) {
  std::vector<std::size_t> colonnes;
  for (std::size_t n = 0; n < table._attr.size(); ++n) {
    const auto montre = table._aff.find(table._attr[n].first);
    if (montre != table._aff.end() && montre->second) colonnes.push_back(n);
  }
  std::stable_partition(colonnes.begin(), colonnes.end(),
                        [&](std::size_t n) { return static_cast<int>(n) != table._num_classe; });
  return colonnes;
}

/// One field from the front of the text, with its quotes off; false when it does not end well.
bool prendre_champ(std::string_view& texte, std::string& champ) {
  if (!texte.starts_with('"')) {
    const std::size_t fin = std::min(texte.find_first_of(",\r\n"), texte.size());
    champ = texte.substr(0, fin);
    texte.remove_prefix(fin);
    return true;
  }
  for (std::size_t i = 1; i < texte.size(); ++i) {
    if (texte[i] != '"') {
      champ += texte[i];
    } else if (texte.substr(i + 1).starts_with('"')) {
      champ += '"';
      ++i;
    } else {
      texte.remove_prefix(i + 1);
      // The end of the text will do, too: nothing is found at once.
      return std::string_view(",\r\n").find(texte.substr(0, 1)) != std::string_view::npos;
    }
  }
  return false;
}

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

void ecrire_ligne_csv(std::ostream& out, const std::vector<std::string>& champs, FinDeLigne fin) {
  std::string ligne;
  for (std::size_t i = 0; i < champs.size(); ++i) {
    if (i > 0) ligne += ',';
    ajouter_champ_csv(ligne, champs[i]);
  }
  out << (ligne += texte_de(fin));
}

void ecrire_entete_csv(std::ostream& out, const BaseBuffer& table, FinDeLigne fin) {
  std::vector<std::string> noms;
  for (const std::size_t n : colonnes_montrees(table)) noms.push_back(table._attr[n].first);
  ecrire_ligne_csv(out, noms, fin);
}

void ecrire_lignes_csv(std::ostream& out, const BaseBuffer& table, FinDeLigne fin) {
  const std::vector<std::size_t> colonnes = colonnes_montrees(table);
  std::string ligne;
  for (const BaseBuffer::Exemple& exemple : table._expl) {
    ligne.clear();
    for (std::size_t i = 0; i < colonnes.size(); ++i) {
      if (i > 0) ligne += ',';
      if (colonnes[i] < exemple.size()) ajouter_champ_csv(ligne, exemple[colonnes[i]]);
    }
    out << (ligne += texte_de(fin));
  }
}

std::optional<std::vector<std::vector<std::string>>> lire_csv(std::string_view texte) {
  std::vector<std::vector<std::string>> lignes;
  while (!texte.empty()) {
    std::vector<std::string> ligne;
    for (bool suite = texte[0] != '\n' && texte[0] != '\r'; suite;) {
      if (!prendre_champ(texte, ligne.emplace_back())) return std::nullopt;
      suite = texte.starts_with(',');
      if (suite) texte.remove_prefix(1);
    }
    lignes.push_back(std::move(ligne));
    if (texte.starts_with('\r')) texte.remove_prefix(1);
    if (texte.starts_with('\n')) texte.remove_prefix(1);
  }
  return lignes;
}

}  // namespace topomine
