#include "cgns/enfant.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <new>

namespace topomine {

namespace {

constexpr char illisible_[] = " : fichier CGNS illisible";

// The first byte that the reading process sends.
constexpr char reussi = 'E', refuse = 'R';

// The sanitizers' own tables take the whole address space.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool sous_surveillance = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool sous_surveillance = true;
#else
constexpr bool sous_surveillance = false;
#endif
#else
constexpr bool sous_surveillance = false;
#endif

/// A file descriptor that is closed once.
class Bout {
 public:
  explicit Bout(int d) : d_(d) {}
  ~Bout() { fermer(); }
  Bout(const Bout&) = delete;
  Bout& operator=(const Bout&) = delete;
  void fermer() {
    if (d_ >= 0) close(d_);
    d_ = -1;
  }
  int descripteur() const { return d_; }

 private:
  int d_;
};

void limiter(int ressource, unsigned long v) {
  rlimit limite{};
  if (getrlimit(static_cast<__rlimit_resource_t>(ressource), &limite) != 0) return;
  limite.rlim_cur = limite.rlim_max == RLIM_INFINITY ? v : std::min<rlim_t>(v, limite.rlim_max);
  static_cast<void>(setrlimit(static_cast<__rlimit_resource_t>(ressource), &limite));
}

std::string travailler(const std::string& fichier, const OptionsLecture& options) {
  try {
    Emballage paquet;
    paquet.texte = reussi;
    Extrait e = lire_cgns(fichier, options);
    emballer(paquet, e);
    return std::move(paquet.texte);
  } catch (const MaillageRefuse& r) {
    return refuse + std::string(r.what());
  } catch (const std::bad_alloc&) {
    return refuse + std::string("memoire insuffisante pour une zone de ce maillage");
  }
}

/// The child: its output is discarded and its crashes do not reach the parent.
[[noreturn]] void fils(int sortie, const std::string& fichier, const OptionsLecture& options,
                       const LimitesLecture& limites) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGSEGV, SIGABRT, SIGBUS, SIGFPE})
    static_cast<void>(std::signal(signal, SIG_DFL));
  if (const int rien = open("/dev/null", O_RDWR); rien >= 0)
    for (const int d : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(rien, d);
  limiter(RLIMIT_CORE, 0);
  limiter(RLIMIT_CPU, 8 * limites.secondes);
  if (!sous_surveillance) limiter(RLIMIT_AS, limites.octets);
  OptionsLecture bornees = options;
  bornees.octets = limites.octets;
  const std::string resultat = travailler(fichier, bornees);
  for (std::size_t n = 0; n < resultat.size();) {
    const ssize_t ecrits = write(sortie, resultat.data() + n, resultat.size() - n);
    if (ecrits < 0 && errno != EINTR) _exit(1);
    if (ecrits > 0) n += static_cast<std::size_t>(ecrits);
  }
  _exit(0);
}

/// All that comes from the reading process until it closes its end; false when it takes too long.
bool ecouter(int entree, unsigned long secondes, std::string& recu) {
  using Horloge = std::chrono::steady_clock;
  const auto fin = Horloge::now() + std::chrono::seconds(secondes);
  char tampon[1 << 16];
  for (;;) {
    const auto reste =
        std::chrono::duration_cast<std::chrono::milliseconds>(fin - Horloge::now()).count();
    if (reste <= 0) return false;
    pollfd attente{entree, POLLIN, 0};
    const int pret = poll(&attente, 1, static_cast<int>(std::min<long long>(reste, 60'000)));
    if (pret <= 0) continue;
    const ssize_t lus = read(entree, tampon, sizeof tampon);
    if (lus == 0) return true;
    if (lus > 0) recu.append(tampon, static_cast<std::size_t>(lus));
  }
}

unsigned long taille_du_fichier(const std::string& fichier) {
  struct stat etat {};
  if (stat(fichier.c_str(), &etat) != 0)
    throw MaillageRefuse(fichier + " : " + std::strerror(errno));
  if (!S_ISREG(etat.st_mode)) throw MaillageRefuse(fichier + " : n'est pas un fichier");
  if (access(fichier.c_str(), R_OK) != 0)
    throw MaillageRefuse(fichier + " : " + std::strerror(errno));
  return static_cast<unsigned long>(etat.st_size);
}

}  // namespace

LimitesLecture limites_pour(unsigned long taille) {
  constexpr unsigned long assez = 60, octets_par_seconde = 2'000'000, giga = 1UL << 30;
  return {assez + taille / octets_par_seconde, 4 * giga + 32 * taille};
}

Extrait extraire(const std::string& fichier, const OptionsLecture& options) {
  return extraire(fichier, options, limites_pour(taille_du_fichier(fichier)));
}

Extrait extraire(const std::string& fichier, const OptionsLecture& options,
                 const LimitesLecture& limites) {
  int tube[2];
  if (pipe2(tube, O_CLOEXEC) != 0) throw MaillageRefuse(fichier + " : " + std::strerror(errno));
  Bout entree(tube[0]), sortie(tube[1]);
  const pid_t pid = fork();
  if (pid < 0) throw MaillageRefuse(fichier + " : " + std::strerror(errno));
  if (pid == 0) fils(sortie.descripteur(), fichier, options, limites);
  sortie.fermer();
  std::string recu;
  const bool a_temps = ecouter(entree.descripteur(), limites.secondes, recu);
  if (!a_temps) kill(pid, SIGKILL);
  int etat{};
  while (waitpid(pid, &etat, 0) < 0 && errno == EINTR) {
  }
  if (!a_temps)
    throw MaillageRefuse(fichier + illisible_ + " (lecture de plus de " +
                         std::to_string(limites.secondes) + " s)");
  if (!WIFEXITED(etat) || WEXITSTATUS(etat) != 0 || recu.empty())
    throw MaillageRefuse(fichier + illisible_ + " (sa lecture a echoue)");
  const std::string_view corps = std::string_view(recu).substr(1);
  if (recu[0] != reussi) throw MaillageRefuse(fichier + " : " + std::string(corps));
  return deballer(corps);
}

}  // namespace topomine
