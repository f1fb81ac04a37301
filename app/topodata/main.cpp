#include <sys/resource.h>

#include <csignal>

#include "app/flux_standards.h"
#include "app/topodata/commandes.h"

int main(int argc, char** argv) {
  topomine::assurer_flux_standards();
  // A pager that is left early ends the listing without a word.
  static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
  // The parts of a table may be many, and each is held open until all are whole.
  if (rlimit fichiers{}; getrlimit(RLIMIT_NOFILE, &fichiers) == 0) {
    fichiers.rlim_cur = fichiers.rlim_max;
    setrlimit(RLIMIT_NOFILE, &fichiers);
  }
  return topomine::executer_topodata(argc, argv);
}
