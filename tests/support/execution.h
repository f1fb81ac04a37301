#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

struct Resultat {
  int statut;  ///< exit status, or minus the signal
  std::string sortie, erreur;
  long memoire = 0;  ///< most that was resident, in KiB
};

/// Runs a program in a folder; `preparer` is called in the new process, its files in place.
inline Resultat lancer(
    const std::string& programme, const std::string& dossier, std::vector<std::string> arguments,
    const std::function<void()>& preparer = [] {}) {
  std::FILE* fichiers[2]{std::tmpfile(), std::tmpfile()};
  arguments.insert(arguments.begin(), programme);
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
  int etat = 0;
  rusage usage{};
  wait4(fils, &etat, 0, &usage);
  Resultat r{WIFEXITED(etat) ? WEXITSTATUS(etat) : -WTERMSIG(etat), {}, {}, usage.ru_maxrss};
  for (int i = 0; i < 2; ++i) {
    std::rewind(fichiers[i]);
    for (int c; (c = std::fgetc(fichiers[i])) != EOF;)
      (i == 0 ? r.sortie : r.erreur) += static_cast<char>(c);
    std::fclose(fichiers[i]);
  }
  return r;
}
