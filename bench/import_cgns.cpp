// How long does `topodata importe` take, beside the bare reading of the same coordinates?
//   import_cgns TOPODATA DOSSIER [MILLIONS_DE_CELLULES [ZONES]]
// writes a mesh of so many cells (10 million in 8 zones) in DOSSIER, as ADF and as HDF5, and times
// five times each, in turn: a process that only reads all coordinates with the CGNS library, and
// the import of the mesh. The shortest of each counts.
#include <cgnslib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using Tailles = std::array<cgsize_t, 9>;
constexpr std::array<const char*, 3> noms{"CoordinateX", "CoordinateY", "CoordinateZ"};

void appel(int statut) {
  if (statut != CG_OK) cg_error_exit();
}

/// Zones in a row along x, joined, walls below, far field above.
void ecrire(const std::string& fichier, int genre, cgsize_t n, int zones) {
  int f = 0, b = 0, z = 0, c = 0;
  appel(cg_set_file_type(genre));
  appel(cg_open(fichier.c_str(), CG_MODE_WRITE, &f));
  appel(cg_base_write(f, "banc", 3, 3, &b));
  const auto nom = [](int zone) { return "zone " + std::to_string(zone); };
  const auto taille = static_cast<std::size_t>(n);
  std::vector<double> x(taille * taille * taille);
  for (int zone = 1; zone <= zones; ++zone) {
    const Tailles t{n, n, n, n - 1, n - 1, n - 1, 0, 0, 0};
    appel(cg_zone_write(f, b, nom(zone).c_str(), t.data(), CGNS_ENUMV(Structured), &z));
    for (std::size_t a = 0; a < 3; ++a) {
      std::size_t p = 0;
      for (cgsize_t k = 0; k < n; ++k)
        for (cgsize_t j = 0; j < n; ++j)
          for (cgsize_t i = 0; i < n; ++i) {
            const double u = static_cast<double>(i + (zone - 1) * (n - 1));
            const std::array<double, 3> q{u, static_cast<double>(j), static_cast<double>(k)};
            x[p++] = q[a] + 0.2 * std::sin(0.1 * q[(a + 1) % 3]);
          }
      appel(cg_coord_write(f, b, z, CGNS_ENUMV(RealDouble), noms[a], x.data(), &c));
    }
    const std::array<cgsize_t, 6> bas{1, 1, 1, n, n, 1}, haut{1, 1, n, n, n, n};
    appel(cg_boco_write(f, b, z, "sol", CGNS_ENUMV(BCWall), CGNS_ENUMV(PointRange), 2, bas.data(),
                        &c));
    appel(cg_boco_write(f, b, z, "loin", CGNS_ENUMV(BCFarfield), CGNS_ENUMV(PointRange), 2,
                        haut.data(), &c));
    const std::array<cgsize_t, 6> gauche{1, 1, 1, 1, n, n}, droite{n, 1, 1, n, n, n};
    const std::array<int, 3> t3{1, 2, 3};
    if (zone > 1)
      appel(cg_1to1_write(f, b, z, "g", nom(zone - 1).c_str(), gauche.data(), droite.data(),
                          t3.data(), &c));
    if (zone < zones)
      appel(cg_1to1_write(f, b, z, "d", nom(zone + 1).c_str(), droite.data(), gauche.data(),
                          t3.data(), &c));
  }
  appel(cg_close(f));
}

/// What any program that wants the coordinates does, one zone at a time.
void lire_seulement(const std::string& fichier) {
  int f = 0, nb = 0;
  appel(cg_open(fichier.c_str(), CG_MODE_READ, &f));
  appel(cg_nzones(f, 1, &nb));
  for (int z = 1; z <= nb; ++z) {
    std::array<char, 64> nom{};
    Tailles t{};
    appel(cg_zone_read(f, 1, z, nom.data(), t.data()));
    const std::array<cgsize_t, 3> debut{1, 1, 1};
    const auto noeuds = static_cast<std::size_t>(t[0] * t[1] * t[2]);
    std::array<std::unique_ptr<double[]>, 3> xyz;
    for (std::size_t a = 0; a < 3; ++a) {
      xyz[a] = std::make_unique_for_overwrite<double[]>(noeuds);
      appel(cg_coord_read(f, 1, z, noms[a], CGNS_ENUMV(RealDouble), debut.data(), t.data(),
                          xyz[a].get()));
    }
  }
  appel(cg_close(f));
}

/// Seconds that a process takes, and those of processors that it and its own processes use.
struct Duree {
  double horloge = 1e9, processeur = 1e9;
  void garder(const Duree& d) {
    horloge = std::min(horloge, d.horloge);
    processeur = std::min(processeur, d.processeur);
  }
};

double secondes(const timeval& t) {
  return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
}

Duree chronometrer(const std::function<void()>& travail) {
  std::fflush(stdout);
  const auto debut = std::chrono::steady_clock::now();
  const pid_t fils = fork();
  if (fils == 0) {
    travail();
    _exit(0);
  }
  int etat = 0;
  rusage usage{};
  wait4(fils, &etat, 0, &usage);
  if (!WIFEXITED(etat) || WEXITSTATUS(etat) != 0) std::exit(1);
  return {std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count(),
          secondes(usage.ru_utime) + secondes(usage.ru_stime)};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 1;
  const std::string topodata = argv[1], dossier = std::string(argv[2]) + "/", cas = dossier + "cas";
  const double millions = argc > 3 ? std::atof(argv[3]) : 10;
  const int zones = argc > 4 ? std::atoi(argv[4]) : 8;
  const auto n = static_cast<cgsize_t>(std::cbrt(millions * 1e6 / zones)) + 1;
  std::filesystem::create_directories(cas);
  for (const auto& [genre, nom] : {std::pair{CG_FILE_ADF, "ADF"}, {CG_FILE_HDF5, "HDF5"}}) {
    const std::string fichier = dossier + nom + ".cgns";
    ecrire(fichier, genre, n, zones);
    Duree lecture, total;
    for (int essai = 0; essai < 5; ++essai) {
      lecture.garder(chronometrer([&] { lire_seulement(fichier); }));
      total.garder(chronometrer([&] {
        if (!std::freopen("/dev/null", "w", stdout)) _exit(1);
        execl(topodata.c_str(), topodata.c_str(), "importe", fichier.c_str(), cas.c_str(), "banc",
              "--force", nullptr);
        _exit(1);
      }));
    }
    std::printf(
        "%-5s%5.1f million cells, %d zones: read %.3f s (processor %.3f), import %.3f s (%.3f), "
        "ratio "
        "%.2f (%.2f)\n",
        nom, std::pow(static_cast<double>(n - 1), 3) * zones / 1e6, zones, lecture.horloge,
        lecture.processeur, total.horloge, total.processeur, total.horloge / lecture.horloge,
        total.processeur / lecture.processeur);
    std::filesystem::remove(fichier);
  }
  return 0;
}
