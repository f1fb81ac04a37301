#include "app/topodata/console.h"

#include <langinfo.h>
#include <locale.h>
#include <strings.h>

#include <cstdlib>
#include <iostream>

#include "texte/affichable.h"

namespace topomine {

namespace {

bool est_utf8(std::string_view codage) {
  const std::string nom(codage.substr(0, codage.find('@')));
  return strcasecmp(nom.c_str(), "UTF-8") == 0 || strcasecmp(nom.c_str(), "UTF8") == 0;
}

bool demander_au_systeme() {
  // Not setlocale: how files are read must not depend on the reader.
  if (const locale_t l = newlocale(LC_CTYPE_MASK, "", nullptr)) {
    const bool utf8 = est_utf8(nl_langinfo_l(CODESET, l));
    freelocale(l);
    return utf8;
  }
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const valeur = std::getenv(variable);
    if (!valeur || *valeur == '\0') continue;
    const std::string_view nom = valeur;
    const std::size_t point = nom.find('.');
    return point != std::string_view::npos && est_utf8(nom.substr(point + 1));
  }
  return false;
}

}  // namespace

bool lecteur_en_utf8() {
  static const bool utf8 = demander_au_systeme();
  return utf8;
}

std::string pour_lecteur(std::string_view texte) {
  const std::string visible = affichable(texte);
  return lecteur_en_utf8() ? en_utf8(visible) : visible;
}

void dire(std::string_view texte) {
  std::cerr << "topodata : " + pour_lecteur(texte) + '\n' << std::flush;
}

TamponLecteur::int_type TamponLecteur::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  ligne_ += traits_type::to_char_type(c);
  if (ligne_.back() == '\n') passer();  // whole lines: no character is cut in two
  return c;
}

void TamponLecteur::passer() {
  const bool entiere = ligne_.ends_with('\n');
  if (entiere) ligne_.pop_back();
  flux_ << pour_lecteur(ligne_) << (entiere ? "\n" : "");
  ligne_.clear();
}

}  // namespace topomine
