#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "dataset/basebuffer.h"

std::ostream& BaseBuffer::Print_attr(std::ostream& out, char sep) {
  const std::size_t nb = _attr.size();
  const std::size_t classe = _num_classe != -1 ? static_cast<std::size_t>(_num_classe) : nb - 1;
  // The class comes last in every row, even when it is hidden: a row always has its label.
  std::vector<std::size_t> colonnes;
  if (!_expl.empty()) {
    for (std::size_t n = 0; n < nb; ++n)
      if (n != classe && _aff[_attr[n].first]) colonnes.push_back(n);
    if (classe < nb) colonnes.push_back(classe);
  }

  std::string texte;
  for (const Exemple& ligne : _expl) {
    texte.clear();
    for (const std::size_t n : colonnes)
      if (n < ligne.size()) (texte += ligne[n]) += sep;
    // The separator after the last value makes way for the end of the line.
    if (!texte.empty()) texte.pop_back();
    texte += '\n';
    out.write(texte.data(), static_cast<std::streamsize>(texte.size()));
  }
  return out;
}

std::ostream& BaseBuffer::Print_weka(std::ostream& out) {
  out << "%\n"
      << "% file generated automatically...\n"
      << "% base for topology analysis.\n"
      << "%\n\n\n\n"
      << "@relation " << _nom << "\n\n";
  const auto declarer = [&](const std::pair<std::string, std::string>& attribut) {
    out << "@attribute " << attribut.first << ' ' << attribut.second << '\n';
  };
  // With no class column of its own the table declares its last attribute like the others: hidden,
  // it is missing here and yet ends every row.
  for (std::size_t n = 0; n < _attr.size(); ++n)
    if (static_cast<int>(n) != _num_classe && _aff[_attr[n].first]) declarer(_attr[n]);
  if (_num_classe >= 0 && static_cast<std::size_t>(_num_classe) < _attr.size())
    declarer(_attr[static_cast<std::size_t>(_num_classe)]);
  out << "\n\n\n@data\n";
  Print_attr(out, ',');
  return out << "\n\n";
}

std::ostream& BaseBuffer::Print_torch(std::ostream& out) {
  // As texts, so that the stream's locale does not group their digits.
  out << std::to_string(_expl.size()) << ' ' << std::to_string(nb_attr_aff()) << '\n';
  Print_attr(out, ' ');
  return out << '\n';
}
