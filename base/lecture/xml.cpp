#include "base/lecture/xml.h"

#include <algorithm>

namespace topomine {

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
