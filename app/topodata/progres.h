#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace topomine {

/// A line on standard error that says what is being done: only on a terminal, once the work has
/// lasted over a second, and wiped away at the end. A thread writes it, since the library cannot be
/// asked how far it is; it is not even started elsewhere than on a terminal.
class Progres {
 public:
  Progres();
  ~Progres();
  Progres(const Progres&) = delete;
  Progres& operator=(const Progres&) = delete;

  /// What is being done from now on.
  void etape(const std::string& texte);
  /// Wipes the line away until the next step: something else comes onto the terminal.
  void effacer();
  /// The step "ecriture", or nothing when it is standard output (no file name) that is written.
  void ecriture(const std::string& fichier);

 private:
  void montrer();

  bool terminal_;
  bool fini_ = false;
  bool change_ = false;
  bool visible_ = false;
  std::string texte_;
  std::mutex verrou_;
  std::condition_variable reveil_;
  std::thread fil_;
};

}  // namespace topomine
