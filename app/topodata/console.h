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

/// The text on one line, control characters visible, in the reader's encoding.
std::string pour_lecteur(std::string_view texte);

/// Says one line on standard error: "topodata : " and the text.
void dire(std::string_view texte);

/// While it lives, what the library lists on std::cout goes to `flux`, in the reader's encoding.
class Listing : std::streambuf {
 public:
  explicit Listing(std::ostream& flux);
  ~Listing() override;

 private:
  int_type overflow(int_type c) override;
  void passer();

  std::ostream& flux_;
  std::string ligne_;  // not passed on yet
  std::streambuf* avant_;
};

}  // namespace topomine
