#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace topomine {

// What topodata says to people. It is UTF-8 where LC_CTYPE asks for it, on a terminal or not;
// elsewhere bytes stay as they come: ISO-8859-1 from the library, the user's own in names.

/// Whether LC_CTYPE asks for UTF-8. A locale that is not installed counts by its name.
bool lecteur_en_utf8();

/// The text on one line, control characters visible, in the reader's encoding. All that people read
/// passes here, but for the words on pictures.
std::string pour_lecteur(std::string_view texte);

/// Says one line on standard error: "topodata : " and the text.
void dire(std::string_view texte);

/// What is written to `flux` through it, line by line, is in the reader's encoding.
class TamponLecteur : public std::streambuf {
 public:
  explicit TamponLecteur(std::ostream& flux) : flux_(flux) {}
  ~TamponLecteur() override { passer(); }

 private:
  int_type overflow(int_type c) override;
  void passer();

  std::ostream& flux_;
  std::string ligne_;  // not passed on yet
};

}  // namespace topomine
