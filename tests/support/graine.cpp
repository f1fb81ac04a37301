#include <dlfcn.h>

#include <cstdlib>
#include <iostream>

/// Preloaded: says the seed on standard error before it goes where it should.
extern "C" void srand48(long graine) noexcept {
  std::cerr << "graine " << graine << std::endl;
  reinterpret_cast<void (*)(long)>(dlsym(RTLD_NEXT, "srand48"))(graine);
}
