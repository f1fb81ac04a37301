#include <cstddef>
#include <cstdlib>
#include <new>

// What mimalloc, which is written in C, has in these places throws nothing: without memory it ends
// the program by SIGABRT. Only where the memory comes from is to be its own.

void* operator new(std::size_t taille) {
  if (void* const p = std::malloc(taille == 0 ? 1 : taille)) return p;
  throw std::bad_alloc();
}

void* operator new[](std::size_t taille) {
  return operator new(taille);
}

void operator delete(void* p) noexcept {
  std::free(p);
}

void operator delete(void* p, std::size_t /*taille*/) noexcept {
  std::free(p);
}

void operator delete[](void* p) noexcept {
  std::free(p);
}

void operator delete[](void* p, std::size_t /*taille*/) noexcept {
  std::free(p);
}
