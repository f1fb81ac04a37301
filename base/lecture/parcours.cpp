#include "base/lecture/parcours.h"

#include <cstring>
#include <exception>
#include <iostream>
#include <utility>

#include "base/lecture/fichier.h"
#include "base/lecture/limites_xml.h"

namespace topomine {

namespace {

/// Line ends as XML wants them: "\r\n" and "\r" become "\n".
void normaliser_fins_de_ligne(std::string& texte) {
  if (texte.find('\r') == std::string::npos) return;
  std::size_t ecrit = 0;
  for (std::size_t lu = 0; lu < texte.size(); ++lu) {
    if (texte[lu] == '\r' && lu + 1 < texte.size() && texte[lu + 1] == '\n') continue;
    texte[ecrit++] = texte[lu] == '\r' ? '\n' : texte[lu];
  }
  texte.resize(ecrit);
}

bool ouvrir(const std::string& fichier, TiXmlDocument& doc) {
  std::string texte;
  return lire_fichier(fichier, texte) == Lecture::faite && analyser_xml(std::move(texte), doc);
}

/// Names from the top element down to `nom`, a child of `noeud`.
std::string chemin_xml(const TiXmlNode* noeud, std::string_view nom) {
  std::string chemin(nom);
  for (; noeud && noeud->ToElement(); noeud = noeud->Parent())
    chemin.insert(0, noeud->ValueStr() + "/");
  return chemin;
}

}  // namespace

bool analyser_xml(std::string texte, TiXmlDocument& doc, bool suivi) {
  normaliser_fins_de_ligne(texte);
  // The text ends at its first NUL. In UTF-8 the parser takes up to four bytes at once without a
  // look at the last ones: a text that ends within a character must not lead it further.
  texte.resize(std::strlen(texte.c_str()));
  texte.append(4, '\0');
  if (!xml_lisible(texte)) return false;
  doc.Clear();
  // Locations cost a tenth of the time, and only those who mend files ask for them.
  doc.SetTabSize(suivi ? 1 : 0);
  doc.Parse(texte.c_str());
  // The parser is content with a document that was cut before its first element.
  return !doc.Error() && doc.RootElement();
}

bool lire_document(Base& base, const std::string& fichier, std::string_view avant_echec,
                   Marche marche) {
  std::cout << "parsing fichier " << fichier << " ... " << std::flush;
  try {
    TiXmlDocument doc;
    if (ouvrir(fichier, doc)) {
      std::cout << "done. " << std::endl;
      return marche(base, doc, fichier);
    }
  } catch (const std::exception&) {
    // No memory for the document or for what it holds: it could not be loaded.
  }
  std::cout << avant_echec << "probleme de lecture du fichier" << std::endl;
  return false;
}

void Parcours::changer_sorte(const char* sorte) {
  sorte_ = sorte;
  rang_ = 0;
  numero_.reset();
}

void Parcours::suivante() {
  ++rang_;
  numero_.reset();
}

int Parcours::ident(const TiXmlNode& entite) {
  numero_ = entier(entite, "Ident");
  return *numero_;
}

const TiXmlNode& Parcours::enfant(const TiXmlNode& parent, const char* nom,
                                  const char* expr) const {
  const TiXmlNode* noeud = parent.FirstChild(nom);
  if (!noeud) faute(expr, &parent, nom);
  return *noeud;
}

const std::string& Parcours::texte(const TiXmlNode& element, const char* expr) const {
  const TiXmlNode* noeud = element.FirstChild();
  if (!noeud) faute(expr, element.Parent(), element.ValueStr());
  return noeud->ValueStr();
}

int Parcours::contenu_case(const TiXmlNode& place, const char* nb, const char* sous,
                           std::string_view avertissement) {
  const int n = entier(place, nb);
  if (n == 1) return entier(place, sous);
  if (n != 0) std::cerr << avertissement << std::endl;
  return n;
}

void Parcours::faute(const char* expr, const TiXmlNode* parent, std::string_view nom) const {
  std::cout.flush();
  std::cerr << "base: " << lecteur_ << ": Assertion `" << expr << "' failed.\n"
            << "fichier " << fichier_;
  if (numero_)
    std::cerr << ", " << sorte_ << ' ' << *numero_;
  else if (rang_ > 0)
    std::cerr << ", " << sorte_ << " de rang " << rang_;
  std::cerr << " : " << chemin_xml(parent, nom) << " absent ou vide" << std::endl;
  suite_faute();
  std::abort();
}

}  // namespace topomine
