#include "app/topodata/recherche.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <set>

#include "app/topodata/attributs.h"
#include "app/topodata/cible.h"
#include "app/topodata/une_base.h"
#include "base/conditions.h"
#include "base/configuration.h"
#include "dataset/caracteristiques.h"
#include "dataset/motifs.h"
#include "mesh/numbering.h"
#include "texte/affichable.h"
#include "texte/nombres.h"

namespace topomine {

namespace {

using Ligne = BaseBuffer::Exemple;
/// Text to show for a block that meets the condition; nothing otherwise.
using Condition = std::function<std::optional<std::string>(const Block& bloc, const Ligne& ligne)>;

/// "erikson<=0.3" taken apart; without an operator, only a name.
struct Parts {
  std::string nom, op, valeur;
};

std::string sans_blancs(const std::string& texte) {
  const std::vector<std::string> parts = decouper(texte);
  return parts.empty() ? "" : parts[0];
}

Parts separer(const std::string& texte) {
  const std::size_t debut = texte.find_first_of("<>=!", 1);
  if (debut == std::string::npos) return {texte, "", ""};
  const bool double_signe = texte.substr(debut + 1).starts_with('=');
  Parts p{sans_blancs(texte.substr(0, debut)), texte.substr(debut, double_signe ? 2 : 1),
          sans_blancs(texte.substr(debut + (double_signe ? 2 : 1)))};
  if (p.op == "==") p.op = "=";
  return p;
}

[[noreturn]] void refuser(const std::string& texte, const std::string& pourquoi) {
  throw Erreur("condition '" + texte + "' : " + pourquoi);
}

template <class T>
bool comparer(const T& a, const std::string& op, const T& b) {
  if (op == "<") return a < b;
  if (op == "<=") return a <= b;
  if (op == ">") return a > b;
  if (op == ">=") return a >= b;
  return (a == b) == (op == "=");
}

/// The families are ISO-8859-1, the command line may be UTF-8.
bool meme_nom(const std::string& famille, const std::string& voulue) {
  return famille == voulue || en_utf8(famille) == voulue;
}

void exiger_famille(const Base& base, const std::string& voulue) {
  std::set<std::string> noms;
  for (const auto& [code, colonnes] : Base::list_CLim)
    noms.insert(base._CL(code, std::string(colonne_famille)));
  noms.erase("");
  if (std::ranges::any_of(noms, [&](const auto& nom) { return meme_nom(nom, voulue); })) return;
  const std::string proche = nom_le_plus_proche(voulue, {noms.begin(), noms.end()});
  throw Erreur("famille inconnue : '" + voulue + "'" +
               (proche.empty() ? "" : " (la plus proche : " + proche + ")"));
}

/// famille, code or BCCODE of the faces.
Condition condition_de_bord(const Base& base, const Parts& p, const std::string& texte) {
  if (p.op != "=" && p.op != "!=") refuser(texte, p.nom + " se compare par = ou !=");
  const std::optional<int> numero = entier_strict(p.valeur);
  if (p.nom == "famille")
    exiger_famille(base, p.valeur);
  else if (!numero)
    refuser(texte, "'" + p.valeur + "' n'est pas un entier de -2147483648 a 2147483647");
  const auto voulue = [p, numero](const ConditionLimite& l) {
    if (p.nom == "famille") return meme_nom(l.famille, p.valeur);
    return (p.nom == "code" ? l.code : l.bccode) == *numero;
  };
  // Blocks share faces and faces share codes: each is looked at once.
  std::map<int, bool> codes;
  std::set<int> faces;
  for (const auto& [f, face] : base.faces)
    for (int i = 0; i < face.nb_BC() && !faces.contains(f); ++i) {
      const auto [code, nouveau] = codes.try_emplace(face._BC(i));
      if (nouveau) code->second = voulue(condition_limite(base, code->first));
      if (code->second) faces.insert(f);
    }
  return [p, faces](const Block& bloc, const Ligne&) -> std::optional<std::string> {
    std::string ou;
    for (int i = 0; i < nb_faces_bloc; ++i)
      if (faces.contains(bloc._face(i)))
        ou += (ou.empty() ? "" : ", ") + std::to_string(bloc._face(i));
    if (ou.empty() != (p.op == "!=")) return {};
    return p.nom + p.op + p.valeur + (ou.empty() ? "" : " (face " + ou + ")");
  };
}

Condition condition_d_attribut(const BaseBuffer& table, const Parts& p, const std::string& texte) {
  const std::size_t colonne = colonne_de(table, p.nom, {"famille", "code", "BCCODE"});
  const bool nom_propre = p.nom == "base";
  const std::optional<double> borne = reel_strict(p.valeur);
  if (nom_propre && p.op != "=" && p.op != "!=") refuser(texte, "base se compare par = ou !=");
  if (!nom_propre && !borne) refuser(texte, "'" + p.valeur + "' n'est pas un nombre");
  return [=](const Block&, const Ligne& ligne) -> std::optional<std::string> {
    const std::string& valeur = ligne.at(colonne);
    const std::optional<double> v = reel_strict(valeur);
    const bool tient = nom_propre ? comparer(valeur, p.op, p.valeur)
                                  : (v ? comparer(*v, p.op, *borne) : p.op == "!=");
    return tient ? std::optional(p.nom + "=" + valeur) : std::nullopt;
  };
}

Condition lire_condition(const Base& base, const BaseBuffer& table, const std::string& texte) {
  Parts p = separer(texte);
  if (p.op.empty()) {
    const bool non = p.nom.starts_with('!');
    if (non) p.nom.erase(0, 1);
    const std::size_t colonne = colonne_de(table, p.nom, {});
    if (table._attr[colonne].second != "{-1,1}")
      refuser(texte, "a comparer a une valeur, par exemple " + p.nom + ">0");
    return condition_d_attribut(table, {p.nom, "=", non ? "-1" : "1"}, texte);
  }
  if (p.valeur.empty()) refuser(texte, "il manque la valeur");
  if (p.nom == "famille" || p.nom == "code" || p.nom == "BCCODE")
    return condition_de_bord(base, p, texte);
  return condition_d_attribut(table, p, texte);
}

}  // namespace

std::size_t chercher_blocs(Base& base, const std::vector<std::string>& conditions,
                           std::ostream& out) {
  const BaseBuffer table = table_de(base);
  std::vector<Condition> lues;
  for (const std::string& texte : conditions)
    for (const std::string& une : decouper(texte)) lues.push_back(lire_condition(base, table, une));
  if (lues.empty()) throw Erreur("--cherche : aucune condition");
  std::size_t trouves = 0, rang = 0;
  for (const auto& paire : base.blocs) {
    const Block& bloc = paire.second;
    const Ligne& ligne = table._expl[rang++];
    std::vector<std::string> dits;
    const bool tous = std::ranges::all_of(lues, [&](const Condition& condition) {
      const auto dit = condition(bloc, ligne);
      if (dit && std::ranges::count(dits, *dit) == 0) dits.push_back(*dit);
      return dit.has_value();
    });
    if (!tous) continue;
    ++trouves;
    out << "Bloc " << paire.first << " : " << enumerer(dits) << '\n';
  }
  return trouves;
}

}  // namespace topomine
