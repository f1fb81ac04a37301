#include "base/lecture/xml.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

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

}  // namespace

void preparer_xml(std::string& texte) {
  normaliser_fins_de_ligne(texte);
  texte.resize(std::strlen(texte.c_str()));
  // In UTF-8 the parser takes up to four bytes at once without a look at the last ones: a text that
  // ends within a character must not lead it further.
  texte.append(4, '\0');
}

bool DocumentXml::analyser(const std::string& texte, bool suivi) {
  doc_.Clear();
  doc_.SetTabSize(suivi ? 1 : 0);
  doc_.Parse(texte.c_str());
  return !doc_.Error();
}

DocumentXml::Arret DocumentXml::arret() const {
  return {!doc_.Error() || doc_.ErrorId() == TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY,
          std::max(doc_.ErrorRow(), 1), std::max(doc_.ErrorCol(), 1)};
}

}  // namespace topomine
