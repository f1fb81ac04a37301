#include "dataset/basebuffer.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <exception>
#include <iterator>

#include "dataset/schema.h"
#include "texte/nombres.h"

using namespace topomine;

BaseBuffer::BaseBuffer() {
  init();
}

BaseBuffer::BaseBuffer(std::string nom) : _nom(std::move(nom)) {
  init();
}

BaseBuffer& BaseBuffer::operator=(const BaseBuffer& autre) {
  _nom = autre._nom;
  _attr = autre._attr;
  _expl = autre._expl;
  return *this;
}

void BaseBuffer::clear() {
  _expl.clear();
  _attr.clear();
  _nom.clear();
  _num_classe = -1;
}

std::string BaseBuffer::_nom_base(const std::string& nom) {
  return _nom = nom;
}

void BaseBuffer::init() {
  for (const Attribut& a : schema) add_attr(std::string(a.nom), std::string(a.type));
}

void BaseBuffer::add_attr(std::string nom, std::string type) {
  _aff[nom] = true;
  _attr.emplace_back(std::move(nom), std::move(type));
}

int BaseBuffer::num_attr(const std::string& nom) const {
  const auto trouve = std::ranges::find(_attr, nom, &std::pair<std::string, std::string>::first);
  return trouve == _attr.end() ? -1 : static_cast<int>(trouve - _attr.begin());
}

std::string BaseBuffer::nom_attr(int i) const {
  try {
    return _attr.at(static_cast<std::size_t>(i)).first;
  } catch (const std::exception&) {
    return "%";
  }
}

int BaseBuffer::change_type(const std::string& nom, const std::string& type) {
  const int col = num_attr(nom);
  if (col < 0) return 0;
  _attr[static_cast<std::size_t>(col)].second = type;
  return 1;
}

int BaseBuffer::del_attr(const std::string& nom) {
  const int col = num_attr(nom);
  if (col < 0) return 0;
  _attr.erase(_attr.begin() + col);
  for (Exemple& ligne : _expl) {
    if (static_cast<std::size_t>(col) < ligne.size()) ligne.erase(ligne.begin() + col);
  }
  return 1;
}

int BaseBuffer::hide_attr(const std::string& nom) {
  const auto trouve = _aff.find(nom);
  if (trouve == _aff.end()) return 0;
  trouve->second = false;
  return 1;
}

int BaseBuffer::unhide_attr(const std::string& nom) {
  const auto trouve = _aff.find(nom);
  if (trouve == _aff.end()) return 0;
  trouve->second = true;
  return 1;
}

void BaseBuffer::hide_all() {
  for (auto& [nom, montre] : _aff) montre = false;
}

void BaseBuffer::unhide_all() {
  for (auto& [nom, montre] : _aff) montre = true;
}

int BaseBuffer::nb_attr_aff() const {
  return static_cast<int>(
      std::ranges::count(_aff, true, &std::pair<const std::string, bool>::second));
}

void BaseBuffer::add_val(Exemple& ligne, int v) {
  ajouter_nombre(ligne.emplace_back(), v);
}

void BaseBuffer::add_val(Exemple& ligne, double v) {
  ajouter_nombre(ligne.emplace_back(), v);
}

void BaseBuffer::add_val(Exemple& ligne, char v) {
  const bool blanc = std::isspace(static_cast<unsigned char>(v)) != 0;
  ligne.emplace_back(blanc ? 0 : 1, v);
}

void BaseBuffer::add_val(Exemple& ligne, std::string v) {
  ligne.push_back(std::move(v));
}

int BaseBuffer::add_buffer(const BaseBuffer& autre) {
  if (autre._attr != _attr) return 0;
  std::vector<Exemple> copies = autre._expl;  // the other table may be this one
  _expl.insert(_expl.end(), std::make_move_iterator(copies.begin()),
               std::make_move_iterator(copies.end()));
  return 1;
}
