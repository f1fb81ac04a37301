#include "app/topodata/progres.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

using namespace topomine;

namespace {

/// While it lives, standard error is a terminal of the test's own.
class Terminal {
 public:
  Terminal() : avant_(dup(STDERR_FILENO)) {
    int esclave = -1;
    if (openpty(&maitre_, &esclave, nullptr, nullptr, nullptr) != 0) std::abort();
    dup2(esclave, STDERR_FILENO);
    close(esclave);
  }
  ~Terminal() {
    dup2(avant_, STDERR_FILENO);
    close(avant_);
    close(maitre_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// What came up to its `fin`, waited for; all there is without one.
  std::string lire(const std::string& fin = "") const {
    std::string texte;
    pollfd attente{maitre_, POLLIN, 0};
    while ((fin.empty() || !texte.ends_with(fin)) &&
           poll(&attente, 1, fin.empty() ? 0 : 5000) > 0) {
      char octet = 0;
      if (read(maitre_, &octet, 1) != 1) break;
      texte += octet;
    }
    return texte;
  }

 private:
  int avant_;
  int maitre_ = -1;
};

}  // namespace

TEST(Progres, SaysOnATerminalWhatLastsAndWipesItAway) {
  const Terminal t;
  {
    Progres bref;
    bref.etape("bref");
  }
  EXPECT_EQ(t.lire(), "") << "within a second nothing is said";
  {
    Progres p;
    p.etape("bref");
    std::this_thread::sleep_for(std::chrono::milliseconds(1050));
    p.etape("chargement");
    EXPECT_EQ(t.lire("ment"), "\r\033[Kchargement");
    p.ecriture("out.csv");
    EXPECT_EQ(t.lire("csv"), "\r\033[Kecriture de out.csv");
    p.ecriture("");
    EXPECT_EQ(t.lire("K"), "\r\033[K") << "standard output comes onto the terminal";
    p.etape("suite");
    EXPECT_EQ(t.lire("suite"), "\r\033[Ksuite");
  }
  EXPECT_EQ(t.lire(), "\r\033[K");
}
