#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/cibles.h"

// What the fuzzer calls: CIBLE is the target that the build links in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t taille) {
  CIBLE({reinterpret_cast<const char*>(octets), taille});
  return 0;
}
