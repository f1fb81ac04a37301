#include "app/flux_standards.h"

#include <fcntl.h>

#include <array>
#include <csignal>
#include <cstddef>

namespace topomine {

namespace {

std::array<bool, 3> fermes{};

}  // namespace

void assurer_flux_standards() {
  // open() answers the lowest free descriptor: the closed ones are filled in ascending order.
  for (int flux = 0; flux <= 2; ++flux) {
    if (fcntl(flux, F_GETFD) != -1) continue;
    fermes[static_cast<std::size_t>(flux)] = true;
    static_cast<void>(open("/dev/null", O_RDWR));
  }
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

bool flux_etait_ferme(int flux) {
  const auto rang = static_cast<std::size_t>(flux);
  return rang < fermes.size() && fermes[rang];
}

}  // namespace topomine
