#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/lecture/document.h"
#include "base/lecture/xml.h"
#include "fuzz/cibles.h"

using namespace topomine;

// Mutations that keep a document well-formed, so that they get past the parser: nodes are dropped,
// doubled, moved, renamed, wrapped and given odd texts. What is not a document, and one document in
// eight, is left to the fuzzer's own mutations of bytes.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* octets, std::size_t taille, std::size_t max);

namespace {

constexpr std::string_view noms =
    "Blocks|Block|Ident|Type|Erikson|Cell|Volumes|Exact|Mor|Moyen|NSMB|Faces|Face|Numero|"
    "NbSubFace|SubFace|NumCaract|Surfaces|Edge|NbSubEdge|SubEdge|Edges|NbVertex|Vertices|"
    "rmin|rmax|Coord|X|Y|Z|Proj|Famille|Normale|nom|family|name|topologie|special|piece|type|"
    "sweep|liste_pieces|liste_raccords|reference_avion|definition_scene|Boundary_Conditions|"
    "Edge2|Info|a-b.c:d";

constexpr std::string_view textes =
    "0|1|2|3|6|7|-1|-2147483648|2147483647|2147483648|99999999999999999999|1e999|-1e999|"
    "1e-999|0x10|nan|inf|12a|1,5|1.5|.5|-|+3|- 1|  4 |1 2|C|HO|c45|\351|&|]]>|--|4.9e-324|"
    "1.7976931348623157e308|007|&#x0;|3&#x0;1|C&#x100;|\033[2J|a\nb";

using Hasard = std::minstd_rand;

std::size_t tirer(Hasard& hasard, std::size_t n) {
  return n == 0 ? 0 : hasard() % n;
}

/// One of the words between the bars.
std::string mot(Hasard& hasard, std::string_view mots) {
  for (auto i = tirer(hasard, static_cast<std::size_t>(std::ranges::count(mots, '|')) + 1); i > 0;
       --i)
    mots.remove_prefix(mots.find('|') + 1);
  return std::string(mots.substr(0, mots.find('|')));
}

/// All the nodes below `racine`, itself left out.
std::vector<TiXmlNode*> noeuds(TiXmlNode& racine) {
  std::vector<TiXmlNode*> trouves;
  for (TiXmlNode* n = racine.FirstChild(); n; n = n->NextSibling()) trouves.push_back(n);
  for (std::size_t i = 0; i < trouves.size(); ++i)
    for (TiXmlNode* n = trouves[i]->FirstChild(); n; n = n->NextSibling()) trouves.push_back(n);
  return trouves;
}

std::string texte_mute(Hasard& hasard, std::string texte) {
  switch (tirer(hasard, 8)) {
    case 0: {
      const std::size_t avant = texte.size();
      texte.resize(avant + 16);
      texte.resize(
          LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(texte.data()), avant, texte.size()));
      return texte;
    }
    case 1:
      return std::to_string(static_cast<int>(hasard() % 40) - 4);
    case 2:
      return std::string(1 + tirer(hasard, 600), "0123456789 .e-;"[tirer(hasard, 15)]);
    case 3:
      return mot(hasard, textes) + texte;
    default:
      return mot(hasard, textes);
  }
}

std::unique_ptr<TiXmlNode> noeud_neuf(Hasard& hasard) {
  const std::string texte = texte_mute(hasard, "1");
  switch (tirer(hasard, 6)) {
    case 0:
      return std::make_unique<TiXmlComment>(texte.c_str());
    case 1: {
      auto cdata = std::make_unique<TiXmlText>(texte);
      cdata->SetCDATA(true);
      return cdata;
    }
    case 2:
      return std::make_unique<TiXmlText>(texte);
    default: {
      auto element = std::make_unique<TiXmlElement>(mot(hasard, noms));
      if (tirer(hasard, 3) != 0) element->LinkEndChild(new TiXmlText(texte));
      return element;
    }
  }
}

/// Before or below `place`; what has no place there is dropped by the tree itself.
void poser(Hasard& hasard, TiXmlNode& place, const TiXmlNode& noeud) {
  if (place.ToElement() && tirer(hasard, 2) == 0)
    place.InsertEndChild(noeud);
  else if (place.Parent())
    place.Parent()->InsertBeforeChild(&place, noeud);
}

void envelopper(Hasard& hasard, TiXmlNode& n) {
  static constexpr std::size_t profondeurs[] = {1, 2, 5, 996, 997, 998, 1200};
  std::unique_ptr<TiXmlNode> dehors(n.Clone());
  const std::string nom = mot(hasard, noms);
  for (std::size_t i = profondeurs[tirer(hasard, std::size(profondeurs))]; i > 0; --i) {
    auto coque = std::make_unique<TiXmlElement>(nom);
    coque->LinkEndChild(dehors.release());
    dehors = std::move(coque);
  }
  n.Parent()->InsertBeforeChild(&n, *dehors);
  n.Parent()->RemoveChild(&n);
}

void muter(Hasard& hasard, TiXmlDocument& doc) {
  const std::vector<TiXmlNode*> tous = noeuds(doc);
  if (tous.empty()) return;
  TiXmlNode& n = *tous[tirer(hasard, tous.size())];
  TiXmlNode& autre = *tous[tirer(hasard, tous.size())];
  TiXmlNode& parent = *n.Parent();
  switch (tirer(hasard, 12)) {
    case 0:
      parent.RemoveChild(&n);
      break;
    case 1:
      parent.InsertAfterChild(&n, n);
      break;
    case 2: {
      const std::unique_ptr<TiXmlNode> copie(n.Clone());
      poser(hasard, autre, *copie);
      parent.RemoveChild(&n);
      break;
    }
    case 3:
      n.Clear();
      break;
    case 4:
      if (n.ToElement()) n.SetValue(mot(hasard, noms).c_str());
      break;
    case 5:
      poser(hasard, n, *noeud_neuf(hasard));
      break;
    case 6:
      if (tirer(hasard, 8) == 0) envelopper(hasard, n);
      break;
    case 7:
      if (TiXmlElement* e = n.ToElement())
        for (std::size_t i = tirer(hasard, 10) == 0 ? 1001 : 2; i > 0; --i)
          e->SetAttribute("a" + std::to_string(i), "v");
      break;
    default:  // mostly texts: that is where the numbers are
      for (TiXmlNode* t = &n; t; t = t->FirstChild())
        if (t->ToText()) t->SetValue(texte_mute(hasard, t->ValueStr()));
  }
}

/// The document in `texte`, changed, or "" when it is none.
std::string document_mute(Hasard& hasard, std::string_view texte) {
  DocumentXml document;
  if (!analyser_xml(std::string(texte), document)) return {};
  TiXmlDocument& doc = document.arbre();
  for (std::size_t i = 1 + tirer(hasard, 3); i > 0; --i) muter(hasard, doc);
  TiXmlPrinter ecrivain;
  ecrivain.SetStreamPrinting();
  doc.Accept(&ecrivain);
  return ecrivain.Str();
}

}  // namespace

/// In a packed collection one part is taken out, changed, and put back.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* octets, std::size_t taille,
                                               std::size_t max, unsigned graine) {
  Hasard hasard(graine);
  if (tirer(hasard, 8) == 0) return LLVMFuzzerMutate(octets, taille, max);
  const std::string_view entree(reinterpret_cast<const char*>(octets), taille);
  const auto parts = static_cast<std::size_t>(std::ranges::count(entree, separateur));
  std::size_t debut = 0;
  for (std::size_t i = tirer(hasard, parts + 1); i > 0; --i)
    debut = entree.find(separateur, debut) + 1;
  const std::size_t fin = std::min(entree.find(separateur, debut), taille);
  const std::string change = document_mute(hasard, entree.substr(debut, fin - debut));
  if (change.empty() || taille - (fin - debut) + change.size() > max)
    return LLVMFuzzerMutate(octets, taille, max);
  std::memmove(octets + debut + change.size(), octets + fin, taille - fin);
  std::memcpy(octets + debut, change.data(), change.size());
  return taille - (fin - debut) + change.size();
}
