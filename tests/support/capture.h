#pragma once

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

/// What this process writes to std::cout and std::cerr as long as the object lives; all of it in
/// its order goes to out() when they are taken together.
class Capture {
 public:
  explicit Capture(bool ensemble = false)
      : cout_(std::cout.rdbuf(out_.rdbuf())),
        cerr_(std::cerr.rdbuf(ensemble ? out_.rdbuf() : err_.rdbuf())) {}
  ~Capture() {
    std::cout.rdbuf(cout_);
    std::cerr.rdbuf(cerr_);
  }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  std::string out() const { return out_.str(); }
  std::string err() const { return err_.str(); }

 private:
  std::ostringstream out_, err_;
  std::streambuf* cout_;
  std::streambuf* cerr_;
};

/// What `agir` writes to std::cout.
template <class Action>
std::string sortie(Action agir) {
  const Capture c;
  agir();
  return c.out();
}

/// Standard input holds `texte` (short) and then ends, as long as the object lives.
class Entree {
 public:
  explicit Entree(std::string_view texte) : avant_(dup(STDIN_FILENO)) {
    int tube[2];
    if (pipe(tube) != 0 || write(tube[1], texte.data(), texte.size()) < 0)
      throw std::runtime_error("pipe");
    close(tube[1]);
    dup2(tube[0], STDIN_FILENO);
    close(tube[0]);
    std::clearerr(stdin);
  }
  ~Entree() {
    reste();
    if (avant_ >= 0) {
      dup2(avant_, STDIN_FILENO);
      close(avant_);
    }
    std::clearerr(stdin);
  }
  Entree(const Entree&) = delete;
  Entree& operator=(const Entree&) = delete;

  /// Reads what nobody has read yet.
  std::string reste() {
    std::string lu;
    for (int c = std::getchar(); c != EOF; c = std::getchar()) lu += static_cast<char>(c);
    return lu;
  }

 private:
  int avant_;
};
