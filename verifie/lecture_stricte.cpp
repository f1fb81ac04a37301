#include "verifie/lecture_stricte.h"

#include <algorithm>
#include <utility>

#include "base/lecture/lectures.h"
#include "base/lecture/xml.h"
#include "verifie/balises.h"
#include "verifie/inventaire.h"
#include "verifie/journal_constats.h"

namespace topomine {

namespace {

/// Names and texts in findings are cut: one file may have 100,000.
std::string abreger(const std::string& texte) {
  constexpr std::size_t max = 300;
  return texte.size() <= max ? texte : texte.substr(0, max - 3) + "...";
}

/// A document that cannot be parsed: where it goes beyond the limits, else where its tags stop
/// making sense, else where the parser stopped.
FauteOctets refus(const std::string& fichier, const std::optional<FauteOctets>& codage,
                  const DocumentXml& doc) {
  std::string texte;
  if (lire_fichier(fichier, texte) != Lecture::faite ||
      texte.find_first_not_of(" \t\r\n") == std::string::npos)
    return {Code::document_vide, 1, "vide"};
  if (const auto trop = hors_limites(texte))
    return {Code::document_demesure, trop->ligne,
            trop->niveaux ? "plus de " + std::to_string(niveaux_max) + " niveaux d'elements"
                          : "plus de " + std::to_string(attributs_max) + " attributs"};
  if (auto faute = faute_xml(texte)) return *std::move(faute);
  if (codage) return {Code::xml_mal_forme, codage->ligne, codage->quoi};
  const auto [vide, ligne, colonne] = doc.arret();
  if (vide) return {Code::document_vide, 1, "aucun element"};
  return {Code::xml_mal_forme, ligne, "illisible a la colonne " + std::to_string(colonne)};
}

/// What the parser lets pass in a document with entities or attributes; most have none.
std::optional<FauteOctets> tolerance(const std::string& texte) {
  const std::size_t debut = texte.starts_with("<?xml") ? texte.find("?>") : 0;
  if (texte.find_first_of("&=", std::min(debut, texte.size())) == std::string::npos) return {};
  auto faute = faute_xml(texte);
  if (faute) faute->code = Code::xml_tolere;
  return faute;
}

/// Parses one file; says why when it cannot be.
bool ouvrir(CasLu& cas, Fichier f, DocumentXml& doc) {
  const auto dire_faute = [&](const std::optional<FauteOctets>& faute) {
    if (faute) cas.signaler(faute->code, f, faute->ligne, "fichier", "", faute->quoi);
    return false;
  };
  std::string texte;
  if (const Lecture lecture = lire_fichier(cas.noms[f], texte); lecture != Lecture::faite)
    return dire_faute(FauteOctets{code_de(lecture), 1, texte_de(lecture)});
  const auto codage = faute_codage(texte);
  const auto toleree = tolerance(texte);
  const bool lisible = analyser_xml(std::move(texte), doc, true);
  if (codage && (lisible || codage->code == Code::octet_nul)) {
    dire_faute(codage);
    if (codage->code == Code::octet_nul) return lisible && doc.racine();
  }
  if (!lisible) return dire_faute(refus(cas.noms[f], codage, doc));
  dire_faute(toleree);
  if (doc.racine()) return true;
  return dire_faute(FauteOctets{Code::document_vide, 1, "coupe avant son premier element"});
}

bool parcourir_def(Base& base, const DocumentXml& doc, const std::string& fichier,
                   Journal& journal) {
  return parcourir_plane(base, doc, fichier, journal) &&
         parcourir_scene(base, doc, fichier, journal);
}

/// By Fichier.
constexpr std::array<Marche, nb_fichiers> marches{parcourir_def, parcourir_blocs, parcourir_faces,
                                                  parcourir_edges, parcourir_vrtxs};

}  // namespace

const char* texte_de(Lecture lecture) {
  switch (lecture) {
    case Lecture::absente:
      return "absent";
    case Lecture::interdite:
      return "interdit de lecture";
    case Lecture::boucle:
      return "lien qui tourne en rond";
    case Lecture::dossier:
      return "dossier au lieu d'un fichier";
    case Lecture::special:
      return "tube ou peripherique au lieu d'un fichier";
    case Lecture::interrompue:
    case Lecture::faite:
      break;
  }
  return "la lecture s'est arretee en chemin";
}

Code code_de(Lecture lecture) {
  const bool manque = lecture == Lecture::absente || lecture == Lecture::interdite;
  return manque ? Code::fichier_absent : Code::fichier_illisible;
}

void lire_document_strict(CasLu& cas, Fichier f, const DocumentXml& doc) {
  const SorteDeFichier& sorte = sortes_de_fichier[f];
  if (!doc.noeud().premier(sorte.racine)) {
    cas.signaler(Code::racine_absente, f, 1, "fichier", "",
                 std::string("pas d'element ") + sorte.racine);
    return;
  }
  cas.lus[f] = true;
  cas.base.disp = false;
  const std::size_t avant = cas.constats.size();
  JournalConstats journal(cas, f);
  marches[f](cas.base, doc, cas.noms[f], journal);
  inventorier(cas, f, doc);
  if (f == fic_def || !cas.lignes[f].empty() || cas.perdus[f] > 0) return;
  cas.lus[f] = false;
  if (cas.constats.size() > avant) return;  // what tells why there are none
  cas.signaler(Code::base_vide, f, doc.noeud().premier(sorte.racine).ligne(), "fichier", "",
               std::string("aucune entite ") + sorte.sorte);
}

int CasLu::ligne(Fichier f, int numero) const {
  const auto trouve = lignes[f].find(numero);
  return trouve == lignes[f].end() ? 1 : trouve->second;
}

int CasLu::ligne_avion(std::string_view element) const {
  const auto trouve = lignes_avion.find(element);
  return trouve == lignes_avion.end() ? 1 : trouve->second;
}

bool CasLu::illisible(Fichier f, int numero, unsigned partie) const {
  const auto trouve = illisibles[f].find(numero);
  return trouve != illisibles[f].end() && (trouve->second & partie) != 0;
}

void retenir(std::vector<Constat>& constats, Constat constat) {
  constexpr std::size_t max = 100'000;
  if (constats.size() > max) return;
  if (constats.size() == max)
    constat = {Code::trop_de_constats,
               constat.fichier,
               constat.ligne,
               "fichier",
               "",
               "les constats suivants ne sont pas dits"};
  constats.push_back(std::move(constat));
}

void CasLu::signaler(Code code, Fichier f, int ligne, const std::string& sorte,
                     const std::string& numero, const std::string& quoi) {
  retenir(constats, {code, noms[f], ligne, sorte, abreger(numero), abreger(quoi)});
}

CasLu lire_cas(const std::string& nom, const std::string& chemin, const std::string& mode) {
  CasLu cas;
  cas.base = Base(nom, chemin, mode);
  cas.base.gen_nom_base();
  for (const Fichier f : {fic_def, fic_blck, fic_face, fic_edge, fic_vrtx}) {
    cas.noms[f] = cas.base.nom_base + fin_de_nom(f, mode);
    if (DocumentXml doc; ouvrir(cas, f, doc)) lire_document_strict(cas, f, doc);
  }
  return cas;
}

}  // namespace topomine
