#include "base/xml_garde.h"

#include <cctype>
#include <cstring>
#include <string_view>

namespace {

bool est_blanc(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// TinyXML takes every byte from 127 on for a letter.
bool est_lettre(char c) {
  const auto u = static_cast<unsigned char>(c);
  return u >= 127 || std::isalpha(u) != 0;
}

bool commence_nom(char c) {
  return est_lettre(c) || c == '_';
}

bool continue_nom(char c) {
  return commence_nom(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '-' ||
         c == '.' || c == ':';
}

/// Bytes that TinyXML takes at once in UTF-8 text, from the first of them, whatever the others are.
int longueur_utf8(char c) {
  const auto u = static_cast<unsigned char>(c);
  if (u < 0xC2 || u > 0xF4) return 1;
  return u < 0xE0 ? 2 : u < 0xF0 ? 3 : 4;
}

/// A reading head over the document. Each step moves it as the parser moves its own; false: the
/// parser stops here, at the end or on an error.
class Tete {
 public:
  explicit Tete(const std::string& texte) : p_(texte.c_str()), fin_(p_ + std::strlen(p_)) {}

  bool dans_les_limites() {
    if (prendre("\xEF\xBB\xBF")) utf8_ = true;
    while (avancer()) {
      if (niveau_ > niveaux_max || attributs_ > attributs_max) return false;
    }
    return niveau_ <= niveaux_max && attributs_ <= attributs_max;
  }

 private:
  bool au_bout() const { return p_ >= fin_; }
  bool voit(std::string_view mot) const {
    return std::string_view(p_, static_cast<std::size_t>(fin_ - p_)).starts_with(mot);
  }
  bool prendre(std::string_view mot) {
    if (!voit(mot)) return false;
    p_ += mot.size();
    return true;
  }

  /// Word in lower case, compared without regard to case.
  bool voit_mot(std::string_view mot) const {
    if (static_cast<std::size_t>(fin_ - p_) < mot.size()) return false;
    for (std::size_t i = 0; i < mot.size(); ++i)
      if (std::tolower(static_cast<unsigned char>(p_[i])) != mot[i]) return false;
    return true;
  }

  /// Past the next `mot`, byte by byte; false when there is none.
  bool sauter_apres(std::string_view mot) {
    const std::size_t i = std::string_view(p_, static_cast<std::size_t>(fin_ - p_)).find(mot);
    p_ = i == std::string_view::npos ? fin_ : p_ + i + mot.size();
    return i != std::string_view::npos;
  }

  /// To the next `c` of a text, character by character.
  bool aller_a(char c) {
    if (!utf8_) {
      const void* la = std::memchr(p_, c, static_cast<std::size_t>(fin_ - p_));
      p_ = la ? static_cast<const char*>(la) : fin_;
    } else {
      while (!au_bout() && *p_ != c) p_ += longueur_utf8(*p_);
      if (p_ > fin_) p_ = fin_;
    }
    return !au_bout();
  }

  void sauter_blancs() {
    for (;;) {
      if (!au_bout() && est_blanc(*p_))
        ++p_;
      else if (!prendre("\xEF\xBB\xBF") && !prendre("\xEF\xBF\xBE") && !prendre("\xEF\xBF\xBF"))
        return;
    }
  }

  /// One node, or one end tag, and the text before it.
  bool avancer() {
    if (!aller_a('<')) return false;
    if (prendre("</")) {
      if (niveau_ > 0) --niveau_;
      return sauter_apres(">");
    }
    if (voit_mot("<?xml")) return declaration();
    if (prendre("<!--")) return sauter_apres("-->");
    if (prendre("<![CDATA[")) return sauter_apres("]]>");
    ++p_;
    if (!au_bout() && commence_nom(*p_)) return element();
    return sauter_apres(">");
  }

  bool nom() {
    if (au_bout() || !commence_nom(*p_)) return false;
    while (!au_bout() && continue_nom(*p_)) ++p_;
    return !au_bout();
  }

  /// name = value, quoted or bare.
  bool attribut() {
    if (!nom()) return false;
    sauter_blancs();
    if (!prendre("=")) return false;
    sauter_blancs();
    if (au_bout()) return false;
    if (const char guillemet = *p_; guillemet == '\'' || guillemet == '"') {
      ++p_;
      if (!aller_a(guillemet)) return false;
      ++p_;
      return !au_bout();
    }
    for (; !au_bout() && !est_blanc(*p_) && *p_ != '/' && *p_ != '>'; ++p_)
      if (*p_ == '\'' || *p_ == '"') return false;
    return !au_bout();
  }

  bool element() {
    ++niveau_;
    attributs_ = 0;
    if (!nom()) return false;
    for (;;) {
      sauter_blancs();
      if (prendre("/>")) {
        --niveau_;
        return true;
      }
      if (prendre(">")) return true;
      if (!attribut() || ++attributs_ > attributs_max) return false;
    }
  }

  /// The declaration also settles how the rest is read: as UTF-8 unless it names another encoding.
  bool declaration() {
    p_ += std::strlen("<?xml");
    std::string_view codage;
    while (!au_bout()) {
      if (prendre(">")) {
        if (!codage_connu_) utf8_ = utf8_ || codage_utf8(codage);
        codage_connu_ = true;
        return true;
      }
      sauter_blancs();
      if (voit_mot("version") || voit_mot("encoding") || voit_mot("standalone")) {
        const bool est_codage = voit_mot("encoding");
        const char* const debut = p_;
        if (!attribut()) return false;
        if (est_codage) codage = std::string_view(debut, static_cast<std::size_t>(p_ - debut));
      } else {
        while (!au_bout() && *p_ != '>' && !est_blanc(*p_)) ++p_;
      }
    }
    return false;
  }

  /// `attribut` is the text of the declaration's encoding="...", empty when it has none.
  static bool codage_utf8(std::string_view attribut) {
    std::string lettres;
    for (const char c : attribut.substr(attribut.find('=') + 1))
      if (std::isalnum(static_cast<unsigned char>(c)))
        lettres += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lettres.empty() || lettres == "utf8";
  }

  const char* p_;
  const char* fin_;
  bool utf8_ = false;
  bool codage_connu_ = false;
  int niveau_ = 0;
  int attributs_ = 0;
};

}  // namespace

bool xml_lisible(const std::string& texte) {
  return Tete(texte).dans_les_limites();
}
