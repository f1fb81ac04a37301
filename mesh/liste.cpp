#include "mesh/liste.h"

namespace topomine {

void remettre_a_zero(std::vector<int>& liste, int n) {
  for (int i = 0; i < n; ++i) {
    if (!dans_liste(liste, i)) {
      liste.clear();
      return;
    }
    liste[static_cast<std::size_t>(i)] = 0;
  }
}

void imprimer_liste(std::ostream& out, std::string_view titre, std::string_view entete,
                    const std::vector<int>& liste) {
  out << titre << liste.size() << '\n';
  if (liste.empty()) return;
  out << entete;
  for (const int v : liste) out << v << ' ';
  out << '\n';
}

void imprimer_places(std::ostream& out, std::string_view nom, const std::vector<int>& liste,
                     int n) {
  for (int i = 0; i < n; ++i) {
    out << "  " << nom << ' ' << i;
    if (dans_liste(liste, i))
      out << " : " << liste[static_cast<std::size_t>(i)] << '\n';
    else
      out << " absent\n";
  }
}

}  // namespace topomine
