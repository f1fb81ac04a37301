#include <dlfcn.h>

#include <ctime>

/// Preloaded: a clock that gains an hour at every look.
extern "C" int clock_gettime(clockid_t horloge, timespec* t) noexcept {
  static long heures = 0;
  const int r = reinterpret_cast<int (*)(clockid_t, timespec*)>(dlsym(RTLD_NEXT, "clock_gettime"))(
      horloge, t);
  t->tv_sec += 3600 * ++heures;
  return r;
}
