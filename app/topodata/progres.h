#pragma once

#include <chrono>
#include <string>

namespace topomine {

/// A line on standard error that says what is being done: only on a terminal, with the first step
/// that begins once the work has lasted over a second, and wiped away at the end.
class Progres {
 public:
  Progres();
  ~Progres() { effacer(); }
  Progres(const Progres&) = delete;
  Progres& operator=(const Progres&) = delete;

  /// What is being done from now on.
  void etape(const std::string& texte);
  /// Wipes the line away until the next step: something else comes onto the terminal.
  void effacer();
  /// The step "ecriture", or nothing when it is standard output (no file name) that is written.
  void ecriture(const std::string& fichier);

 private:
  bool terminal_;
  bool visible_ = false;
  std::chrono::steady_clock::time_point debut_ = std::chrono::steady_clock::now();
};

}  // namespace topomine
