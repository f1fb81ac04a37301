#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

/// A folder of its own for a test, removed with what it holds.
struct Dossier {
  std::string nom = (fs::temp_directory_path() / "topomine.XXXXXX").string();
  Dossier() {
    if (!mkdtemp(nom.data())) std::abort();
  }
  ~Dossier() { fs::remove_all(nom); }
  Dossier(const Dossier&) = delete;
  Dossier& operator=(const Dossier&) = delete;
};

inline std::string contenu(const std::string& fichier) {
  std::ifstream f(fichier, std::ios::binary);
  return {std::istreambuf_iterator<char>(f), {}};
}

inline void ecrire(const std::string& fichier, const std::string& texte) {
  fs::create_directories(fs::path(fichier).parent_path());
  std::ofstream(fichier, std::ios::binary) << texte;
}

struct Resultat {
  int statut;  ///< exit status, or minus the signal
  std::string sortie, erreur;
};

/// Runs the program in a folder; `preparer` is called in the new process, its files in place.
inline Resultat lancer(
    const std::string& dossier, std::vector<std::string> arguments,
    const std::function<void()>& preparer = [] {}) {
  std::FILE* fichiers[2]{std::tmpfile(), std::tmpfile()};
  arguments.insert(arguments.begin(), TOPOMINE_PROGRAM);
  std::vector<char*> argv;
  for (std::string& a : arguments) argv.push_back(a.data());
  argv.push_back(nullptr);
  const pid_t fils = fork();
  if (fils == 0) {
    if (chdir(dossier.c_str()) != 0) _exit(127);
    dup2(open("/dev/null", O_RDONLY), 0);
    dup2(fileno(fichiers[0]), 1);
    dup2(fileno(fichiers[1]), 2);
    std::signal(SIGPIPE, SIG_DFL);
    preparer();
    execv(argv[0], argv.data());
    _exit(127);
  }
  Resultat r{};
  int etat = 0;
  waitpid(fils, &etat, 0);
  r.statut = WIFEXITED(etat) ? WEXITSTATUS(etat) : -WTERMSIG(etat);
  for (int i = 0; i < 2; ++i) {
    std::rewind(fichiers[i]);
    for (int c; (c = std::fgetc(fichiers[i])) != EOF;)
      (i == 0 ? r.sortie : r.erreur) += static_cast<char>(c);
    std::fclose(fichiers[i]);
  }
  return r;
}
