#include "base/lecture/limites_xml.h"

#include <tinyxml.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace topomine {

namespace {

/// A blank for the parser, which asks isspace; printable ASCII is skipped first, as it is a blank
/// in no locale.
bool est_blanc(char c) {
  return (c <= ' ' || c > '~') && std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// What names begin with and go on with. TinyXML takes every byte from 127 on for a letter; below,
/// letters are the same in every locale.
struct Noms {
  std::array<bool, 256> commence{}, continue_{};
  constexpr Noms() {
    for (std::size_t c = 0; c < 256; ++c) {
      const bool lettre = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 127;
      commence[c] = lettre || c == '_';
      continue_[c] = commence[c] || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
    }
  }
};
constexpr Noms noms;

}  // namespace

bool commence_nom(char c) {
  return noms.commence[static_cast<unsigned char>(c)];
}

bool continue_nom(char c) {
  return noms.continue_[static_cast<unsigned char>(c)];
}

namespace {

/// `mot` is in lower case; the text is compared without regard to case.
bool commence_par(std::string_view texte, std::string_view mot) {
  if (texte.size() < mot.size()) return false;
  for (std::size_t i = 0; i < mot.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(texte[i])) != mot[i]) return false;
  return true;
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
  Tete(const std::string& texte, LimitesXml limites)
      : debut_(texte.c_str()), p_(debut_), fin_(p_ + std::strlen(p_)), limites_(limites) {}

  std::optional<Depassement> depassement() {
    if (prendre("\xEF\xBB\xBF")) codage_ = TIXML_ENCODING_UTF8;
    while (avancer()) {
    }
    if (niveau_ <= limites_.niveaux && attributs_ <= limites_.attributs) return {};
    return Depassement{niveau_ > limites_.niveaux,
                       1 + static_cast<int>(std::count(debut_, element_, '\n'))};
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

  bool voit_mot(std::string_view mot) const {
    return commence_par({p_, static_cast<std::size_t>(fin_ - p_)}, mot);
  }
  bool utf8() const { return codage_ == TIXML_ENCODING_UTF8; }

  /// Past the next `mot`, byte by byte; false when there is none.
  bool sauter_apres(std::string_view mot) {
    const std::size_t i = std::string_view(p_, static_cast<std::size_t>(fin_ - p_)).find(mot);
    p_ = i == std::string_view::npos ? fin_ : p_ + i + mot.size();
    return i != std::string_view::npos;
  }

  /// To the next `c` of a text, character by character.
  bool aller_a(char c) {
    if (!utf8() && sauter_sans_entite(c)) return !au_bout();
    while (!au_bout() && *p_ != c) {
      if (*p_ == '&') {
        if (!entite()) p_ = fin_;
      } else {
        p_ += utf8() ? longueur_utf8(*p_) : 1;
      }
    }
    if (p_ > fin_) p_ = fin_;
    return !au_bout();
  }

  /// The ordinary case, fast: to the next `c`, or the end, unless there is an entity on the way.
  bool sauter_sans_entite(char c) {
    const void* const trouve = std::memchr(p_, c, static_cast<std::size_t>(fin_ - p_));
    const char* const la = trouve ? static_cast<const char*>(trouve) : fin_;
    if (std::memchr(p_, '&', static_cast<std::size_t>(la - p_))) return false;
    p_ = la;
    return true;
  }

  /// Past a numeric entity, "&#...;". The parser looks for its ";" however far, and reads the
  /// digits from there backwards to the nearest "x" or "#": tags may lie in between, unseen. Other
  /// entities hide nothing.
  bool entite() {
    const std::string_view reste(p_, static_cast<std::size_t>(fin_ - p_));
    if (reste.size() < 3 || reste[1] != '#') {
      ++p_;
      return true;
    }
    const bool hexa = reste[2] == 'x';
    const std::size_t fin = reste.find(';', hexa ? 3 : 2);
    if (fin == std::string_view::npos) return false;
    for (std::size_t i = fin - 1; reste[i] != (hexa ? 'x' : '#'); --i) {
      const auto c = static_cast<unsigned char>(reste[i]);
      if (hexa ? std::isxdigit(c) == 0 : std::isdigit(c) == 0) return false;
    }
    p_ += fin + 1;
    return true;
  }

  void sauter_blancs() {
    for (;;) {
      if (!au_bout() && est_blanc(*p_))
        ++p_;
      else if (!utf8() ||
               (!prendre("\xEF\xBB\xBF") && !prendre("\xEF\xBF\xBE") && !prendre("\xEF\xBF\xBF")))
        return;
    }
  }

  /// One node, or one end tag, and the text before it.
  bool avancer() {
    if (niveau_ == 0) {
      sauter_blancs();
      if (!voit("<")) return false;  // text outside of the elements: the parser stops in silence
    }
    if (!aller_a('<')) return false;
    if (prendre("</")) {
      if (niveau_ > 0) --niveau_;
      return sauter_apres(">");
    }
    if (voit("<?") && voit_mot("<?xml")) return declaration();
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
    element_ = p_;
    attributs_ = 0;
    if (++niveau_ > limites_.niveaux || !nom()) return false;
    for (;;) {
      sauter_blancs();
      if (prendre("/>")) {
        --niveau_;
        return true;
      }
      if (prendre(">")) return true;
      if (!attribut() || ++attributs_ > limites_.attributs) return false;
    }
  }

  /// The first declaration outside of the elements decides how the bytes after it are read: as
  /// UTF-8 unless it names another encoding. The name may be spelt with entities, so the parser's
  /// own class is asked to read it.
  bool declaration() {
    TiXmlDeclaration lue;
    const char* const apres = lue.Parse(p_, nullptr, codage_);
    if (!apres || apres > fin_) return false;
    p_ = apres;
    if (codage_ == TIXML_ENCODING_UNKNOWN && niveau_ == 0) {
      const std::string_view codage = lue.Encoding();
      const bool en_utf8 =
          codage.empty() || commence_par(codage, "utf-8") || commence_par(codage, "utf8");
      codage_ = en_utf8 ? TIXML_ENCODING_UTF8 : TIXML_ENCODING_LEGACY;
    }
    return true;
  }

  const char* debut_;
  const char* p_;
  const char* fin_;
  const char* element_ = nullptr;
  LimitesXml limites_;
  TiXmlEncoding codage_ = TIXML_ENCODING_UNKNOWN;
  int niveau_ = 0;
  int attributs_ = 0;
};

}  // namespace

std::optional<Depassement> depassement(const std::string& texte, LimitesXml limites) {
  return Tete(texte, limites).depassement();
}

}  // namespace topomine
