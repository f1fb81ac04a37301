#include "tests/topodata/programme.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include "base/base.h"
#include "base/lecture/chargement.h"
#include "dataset/schema.h"
#include "tests/support/rangees.h"

using namespace topomine;

namespace fs = std::filesystem;

Resultat topodata(const std::vector<std::string>& arguments,
                  const std::function<void()>& preparer) {
  return lancer(TOPODATA_PROGRAM, ".", arguments, [&] {
    setenv("LC_ALL", "C", 1);
    preparer();
  });
}

Resultat topodata_disque_plein(std::vector<std::string> arguments) {
  // By a shell, and without the counters of a coverage build: those would be cut too.
  arguments.insert(
      arguments.begin(),
      {"-c", "export GCOV_PREFIX=/dev/null; ulimit -f 2; exec \"$@\"", "sh", TOPODATA_PROGRAM});
  return lancer("/bin/sh", ".", arguments);
}

std::string lire(const fs::path& fichier) {
  return lire_octets(fichier);
}

void ecrire(const fs::path& fichier, const std::string& texte) {
  std::ofstream(fichier, std::ios::binary) << texte;
}

Collection::Collection() {
  if (lancer(MAKE_CASES_PROGRAM, ".", {cas(), "--blocs", "8"}).statut != 0) std::abort();
}

bool Collection::changer(const std::string& fichier, const std::string& motif,
                         const std::string& texte) const {
  const std::string avant = lire(cas() + fichier);
  const std::string apres =
      std::regex_replace(avant, std::regex(motif), texte, std::regex_constants::format_first_only);
  ecrire(cas() + fichier, apres);
  return apres != avant;
}

BaseBuffer Collection::table(const std::vector<std::string>& bases) const {
  BaseBuffer table("topology");
  for (const std::string& nom : bases) {
    Base base(nom, cas(), "nrm");
    if (!charger(base).fait) std::abort();
    table.add_base(base);
  }
  return table;
}

void rejouer_sessions(const Collection& collection, const std::string& fichier) {
  const fs::path bin = collection.dossier / "bin", ici = collection.dossier / "ici";
  fs::create_directory(bin);
  fs::create_symlink(TOPODATA_PROGRAM, bin / "topodata");
  fs::create_symlink(MAKE_CASES_PROGRAM, bin / "make_cases");
  ecrire(bin / "gnuplot", "#!/bin/sh\necho '<svg>'\ncat\necho '</svg>'\n");
  fs::permissions(bin / "gnuplot", fs::perms::owner_all);
  comparer_rangees(fichier, [&](const Rangee& r) {
    fs::remove_all(ici);
    fs::create_directory(ici);
    fs::create_directory_symlink("../cas", ici / "cas");
    fs::create_directory_symlink("../modeles", ici / "modeles");
    fs::create_directory_symlink(TOPOMINE_CASES, ici / "reels");
    std::istringstream commandes(r.entree);
    std::string vu;
    for (std::string commande; std::getline(commandes, commande);) {
      const Resultat fait = lancer("/bin/sh", ici.string(), {"-c", octets_de(commande)}, [&] {
        setenv("PATH", (bin.string() + ":/usr/bin:/bin").c_str(), 1);
        setenv("LC_ALL", "C", 1);
        setenv("COLUMNS", "100", 1);
      });
      vu += visible(fait.sortie + fait.erreur);
      if (fait.statut != 0) vu += "-> " + std::to_string(fait.statut) + '\n';
    }
    return vu;
  });
}
