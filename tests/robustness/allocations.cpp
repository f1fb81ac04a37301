#include "tests/robustness/allocations.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <tinyxml.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SOUS_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(SOUS_ASAN)
#include <sanitizer/lsan_interface.h>
#else
static void __lsan_disable() {}
static void __lsan_enable() {}
#endif

namespace {

struct Memoire {
  bool armee = false;
  long reste = 0;  // allocations until the one that is refused
  bool toutes = false;
  bool refusee = false;
  int dans_tinyxml = 0;
  long vivantes = 0;
};
Memoire memoire;

struct Entete {
  alignas(std::max_align_t) bool comptee;
};

void* allouer(std::size_t n) {
  if (memoire.armee && memoire.reste-- <= 0 && (memoire.toutes || memoire.reste == -1)) {
    memoire.refusee = true;
    return nullptr;
  }
  const bool comptee = memoire.dans_tinyxml == 0;
  if (!comptee) __lsan_disable();
  void* const bloc = std::malloc(sizeof(Entete) + n);
  if (!comptee) __lsan_enable();
  if (!bloc) return nullptr;
  memoire.vivantes += comptee;
  return new (bloc) Entete{comptee} + 1;
}

void rendre(void* p) {
  if (!p) return;
  Entete* const entete = static_cast<Entete*>(p) - 1;
  memoire.vivantes -= entete->comptee;
  std::free(entete);
}

}  // namespace

void* operator new(std::size_t n) {
  if (void* p = allouer(n)) return p;
  throw std::bad_alloc();
}
void* operator new[](std::size_t n) {
  return operator new(n);
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
  return allouer(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
  return allouer(n);
}
void operator delete(void* p) noexcept {
  rendre(p);
}
void operator delete[](void* p) noexcept {
  rendre(p);
}
void operator delete(void* p, std::size_t) noexcept {
  rendre(p);
}
void operator delete[](void* p, std::size_t) noexcept {
  rendre(p);
}

/// Stands before the library's own, which it calls.
const char* TiXmlDocument::Parse(const char* p, TiXmlParsingData* data, TiXmlEncoding codage) {
  using Lire = const char* (*)(TiXmlDocument*, const char*, TiXmlParsingData*, TiXmlEncoding);
  static const auto lire = reinterpret_cast<Lire>(
      dlsym(RTLD_NEXT, "_ZN13TiXmlDocument5ParseEPKcP16TiXmlParsingData13TiXmlEncoding"));
  struct Dedans {
    Dedans() { ++memoire.dans_tinyxml; }
    ~Dedans() { --memoire.dans_tinyxml; }
  } const dedans;
  return lire(this, p, data, codage);
}

long a_chaque_refus(const std::function<bool(const Refus&)>& essai) {
  long echecs = 0;
  for (const bool toutes : {false, true}) {
    for (long i = 0;; ++i) {
      bool sortie = false;
      memoire.refusee = false;
      const Refus refus = [&](const std::function<void()>& operation) {
        memoire.reste = i;
        memoire.toutes = toutes;
        memoire.armee = true;
        try {
          operation();
        } catch (...) {
          sortie = true;
        }
        memoire.armee = false;
      };
      const long avant = memoire.vivantes;
      const bool reussi = essai(refus);
      const long apres = memoire.vivantes;
      const std::string ou = (toutes ? "from allocation " : "allocation ") + std::to_string(i);
      EXPECT_FALSE(sortie) << "an exception came out, " << ou;
      EXPECT_EQ(apres, avant) << "memory left behind, " << ou;
      if (!memoire.refusee) {
        EXPECT_TRUE(reussi) << ou;
        break;
      }
      echecs += !reussi;
      if (::testing::Test::HasFailure()) return echecs;
    }
  }
  return echecs;
}
