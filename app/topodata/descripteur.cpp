#include "app/topodata/descripteur.h"

#include <unistd.h>

#include <cerrno>

namespace topomine {

void Descripteur::fermer() {
  if (numero_ >= 0) close(std::exchange(numero_, -1));
}

TamponSortie::int_type TamponSortie::overflow(int_type c) {
  if (sync() != 0) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

int TamponSortie::sync() {
  for (const char* p = pbase(); p < pptr() && erreur_ == 0;) {
    const ssize_t n = write(descripteur_, p, static_cast<std::size_t>(pptr() - p));
    if (n > 0)
      p += n;
    else if (n == 0 || errno != EINTR)
      erreur_ = n == 0 ? EIO : errno;
  }
  setp(octets_.data(), octets_.data() + octets_.size());
  return erreur_ == 0 ? 0 : -1;
}

}  // namespace topomine
