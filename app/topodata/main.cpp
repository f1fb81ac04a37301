#include <csignal>

#include "app/flux_standards.h"
#include "app/topodata/commandes.h"

int main(int argc, char** argv) {
  topomine::assurer_flux_standards();
  // A pager that is left early ends the listing without a word.
  static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
  return topomine::executer_topodata(argc, argv);
}
