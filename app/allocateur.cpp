#include <cstddef>
#include <cstdlib>
#include <new>

// mimalloc's C version of operator new aborts without memory instead of throwing; these call
// malloc, which mimalloc replaces, and throw.

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
