#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

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

 private:
  void montrer();

  bool terminal_;
  bool fini_ = false;
  bool change_ = false;
  std::string texte_;
  std::mutex verrou_;
  std::condition_variable reveil_;
  std::thread fil_;
};
