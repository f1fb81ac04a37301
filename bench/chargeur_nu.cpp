// The yardstick of the whole run: loads the XML files that a run loads, one after the other, with
// TinyXML's default settings, and does nothing with them.

#include <tinyxml.h>

#include <iostream>
#include <string>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: chargeur_nu DATA/ MODE\n";
    return 1;
  }
  for (int k = 1; k <= 8; ++k) {
    const std::string nom = "mesh_case_" + std::to_string(k);
    const std::string prefixe = argv[1] + nom + "/" + nom;
    const std::string mode = prefixe + "_" + argv[2];
    for (const std::string& fichier : {prefixe + ".def", prefixe + ".def", mode + ".blck",
                                       mode + ".face", mode + ".edge", mode + ".vrtx"}) {
      TiXmlDocument doc(fichier.c_str());
      if (!doc.LoadFile()) {
        std::cerr << fichier << ": " << doc.ErrorDesc() << '\n';
        return 2;
      }
    }
  }
  return 0;
}
