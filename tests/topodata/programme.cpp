#include "programme.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>

#include "base/base.h"
#include "base/charge.h"
#include "dataset/schema.h"

namespace fs = std::filesystem;

namespace {

fs::path dossier_neuf() {
  std::string modele = fs::temp_directory_path() / "topodata_test.XXXXXX";
  if (!mkdtemp(modele.data())) std::abort();
  return modele;
}

Resultat lancer(const std::string& programme, const std::vector<std::string>& arguments,
                const std::function<void()>& avant) {
  const fs::path dossier = dossier_neuf();
  std::vector<char*> argv{const_cast<char*>(programme.c_str())};
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  const pid_t enfant = fork();
  if (enfant == 0) {
    constexpr int creer = O_CREAT | O_WRONLY;
    dup2(open((dossier / "sortie").c_str(), creer, 0600), STDOUT_FILENO);
    dup2(open((dossier / "erreurs").c_str(), creer, 0600), STDERR_FILENO);
    avant();
    execv(programme.c_str(), argv.data());
    _exit(126);
  }
  int etat = 0;
  waitpid(enfant, &etat, 0);
  Resultat r{WIFEXITED(etat) ? WEXITSTATUS(etat) : -WTERMSIG(etat), lire(dossier / "sortie"),
             lire(dossier / "erreurs")};
  fs::remove_all(dossier);
  return r;
}

}  // namespace

Resultat topodata(const std::vector<std::string>& arguments, const std::function<void()>& avant) {
  return lancer(TOPODATA_PROGRAM, arguments, avant);
}

std::string lire(const fs::path& fichier) {
  std::ifstream flux(fichier, std::ios::binary);
  return {std::istreambuf_iterator<char>(flux), {}};
}

void ecrire(const fs::path& fichier, const std::string& texte) {
  std::ofstream(fichier, std::ios::binary) << texte;
}

Collection::Collection() : dossier(dossier_neuf()) {
  if (lancer(MAKE_CASES_PROGRAM, {cas(), "--blocs", "8"}, [] {}).statut != 0) std::abort();
}

Collection::~Collection() {
  fs::remove_all(dossier);
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
