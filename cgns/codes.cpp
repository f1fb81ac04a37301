#include "cgns/codes.h"

#include <algorithm>

namespace topomine {

namespace {

/// One character of UTF-8 as Latin-1; n is moved past it. What is no UTF-8 is taken for Latin-1.
char en_latin1(const std::string& texte, std::size_t& n) {
  const auto octet = [&](std::size_t i) {
    return i < texte.size() ? static_cast<unsigned char>(texte[i]) : 0U;
  };
  const unsigned premier = octet(n++);
  const auto suite = [&](std::size_t i) { return (octet(i) & 0xC0U) == 0x80U; };
  if (premier >= 0xC2 && premier < 0xE0 && suite(n)) {
    const unsigned code = (premier & 0x1FU) << 6 | (octet(n++) & 0x3FU);
    return code < 0x100 ? static_cast<char>(code) : '_';
  }
  const std::size_t longueur = premier >= 0xF0 && premier < 0xF5 ? 3 : premier >= 0xE0 ? 2 : 0;
  std::size_t lus = 0;
  while (lus < longueur && suite(n + lus)) ++lus;
  if (longueur == 0 || lus < longueur) return static_cast<char>(premier);
  n += longueur;
  return '_';
}

/// A free code of the BCCODE's hundred, as in 101 for a wall; past it, behind all others. 9999 is
/// kept for bare faces.
int code_libre(const std::string& nom, int bccode, const TableClimite& table) {
  constexpr int centaine = 100, sans_condition = 1400;
  if (nom == famille_sans_condition && bccode == bccode_sans_condition &&
      !table.contains(bccode_sans_condition))
    return bccode_sans_condition;
  const int debut = bccode == bccode_sans_condition ? sans_condition
                    : bccode > 0 && bccode < 14     ? bccode * centaine
                                                    : 0;
  for (int code = debut + 1; debut > 0 && code < debut + centaine; ++code)
    if (!table.contains(code)) return code;
  int code = 10'001;  // one is free: a table has fewer rows than there are codes
  while (table.contains(code)) ++code;
  return code;
}

class Attribution {
 public:
  Attribution(const Structure& s, const TableClimite& table,
              const std::map<std::string, int>& imposes)
      : s_(s), table_(table), imposes_(imposes) {
    for (const auto& [code, ligne] : table) lignes_.emplace(ligne.famille, code);
    f_.de_condition.assign(s.conditions.size(), aucun);
  }

  void condition(std::size_t n) {
    const Condition& c = s_.conditions[n];
    const std::string nom = nom_de_famille(c.famille);
    const auto [origine, premiere] = origines_.try_emplace(nom, c.famille);
    if (!premiere && origine->second != c.famille)
      dire("familles '" + origine->second + "' et '" + c.famille + "' : toutes deux ecrites '" +
           nom + "'");
    f_.de_condition[n] = rang(nom, c.bccode, "condition '" + c.nom + "'");
  }
  void sans_condition(const Morceau& m) {
    if (f_.sans_condition == aucun)
      f_.sans_condition = rang(famille_sans_condition, bccode_sans_condition, "faces nues");
    f_.dits.push_back(lieu(s_, m.zone, m.plage) + " : ni raccord ni condition, code " +
                      std::to_string(f_.liste[f_.sans_condition].code));
  }
  Familles conclure() { return std::move(f_); }

 private:
  void dire(const std::string& texte) {
    if (std::ranges::find(f_.dits, texte) == f_.dits.end()) f_.dits.push_back(texte);
  }

  std::size_t rang(const std::string& nom, int bccode, const std::string& qui) {
    const auto impose = imposes_.find(nom);
    if (impose != imposes_.end()) bccode = impose->second;
    const auto [place, nouvelle] = rangs_.try_emplace(nom, f_.liste.size());
    if (nouvelle) f_.liste.push_back(creer(nom, bccode));
    const Famille& famille = f_.liste[place->second];
    if (famille.bccode != bccode)
      dire("famille '" + nom + "' : BCCODE " + std::to_string(famille.bccode) +
           (famille.nouvelle ? "" : " de climite.cfg") + " garde, " + qui + " donne " +
           std::to_string(bccode));
    return place->second;
  }

  Famille creer(const std::string& nom, int bccode) {
    if (const auto ligne = lignes_.find(nom); ligne != lignes_.end())
      return {nom, table_.at(ligne->second).bccode, ligne->second, false};
    const int code = code_libre(nom, bccode, table_);
    table_[code] = {bccode, nom};
    return {nom, bccode, code, true};
  }

  const Structure& s_;
  TableClimite table_;  // with the new rows
  const std::map<std::string, int>& imposes_;
  std::map<std::string, int> lignes_;  // family to the lowest of its codes
  std::map<std::string, std::size_t> rangs_;
  std::map<std::string, std::string> origines_;
  Familles f_;
};

}  // namespace

Familles attribuer_codes(const Structure& s, const Decoupage& d, const std::vector<bool>& ecrasees,
                         const TableClimite& table, const std::map<std::string, int>& imposes) {
  Attribution a(s, table, imposes);
  for (std::size_t n = 0; n < d.morceaux.size(); ++n) {
    const Morceau& m = d.morceaux[n];
    if (ecrasees[n]) continue;
    for (const std::size_t c : m.conditions) a.condition(c);
    if (m.jonction == aucun && m.conditions.empty()) a.sans_condition(m);
  }
  return a.conclure();
}

std::string nom_de_famille(const std::string& nom) {
  std::string r;
  for (std::size_t n = 0; n < nom.size();) {
    const char c = en_latin1(nom, n);
    const auto octet = static_cast<unsigned char>(c);
    const bool impropre = octet < 0x20 || (octet >= 0x7F && octet < 0xA0) || c == ';';
    r += impropre ? '_' : c;
  }
  r.erase(0, r.find_first_not_of(' '));
  r.erase(r.find_last_not_of(' ') + 1);
  return r.empty() ? "_" : r;
}

}  // namespace topomine
