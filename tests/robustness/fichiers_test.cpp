#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <locale>
#include <string>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "fuzz/proprietes.h"
#include "tests/support/capture.h"
#include "tests/support/cas.h"
#include "tests/support/dossier.h"

using namespace topomine;

// What may happen to a file between its opening and its reading. The stream's reads end in read(2),
// for which the one below stands in.

namespace {

ssize_t lire_vraiment(int fd, void* place, std::size_t taille) {
  return syscall(SYS_read, fd, place, taille);
}

/// Called instead of a read; empty: the read itself.
std::function<ssize_t(int fd, void* place, std::size_t taille)> au_lieu_de_lire;

}  // namespace

extern "C" ssize_t read(int fd, void* place, std::size_t taille) {
  return au_lieu_de_lire ? au_lieu_de_lire(fd, place, taille) : lire_vraiment(fd, place, taille);
}

namespace {

class Fichiers : public ::testing::Test {
 protected:
  Fichiers() : cas_(grille("petite", {2, 1, 1})), base_("b", dossier_.chemin(), "nrm") {
    cas_.base.nom = base_.nom;
    cas_.base.type = base_.type;
    ecrire_cas(cas_.base, dossier_);
    base_.gen_nom_base();
    base_.disp = false;
    Base::init_cl_cfg = true;
  }
  ~Fichiers() override {
    au_lieu_de_lire = nullptr;
    oublier_configuration();
  }

  /// Reads the blocks, the first read being preceded by `d_abord`.
  bool lire_blocs(const std::function<void()>& d_abord) {
    bool fait = false;
    au_lieu_de_lire = [&, d_abord](int fd, void* place, std::size_t taille) {
      if (!fait) d_abord();
      fait = true;
      return lire_vraiment(fd, place, taille);
    };
    const bool lus = base_.load_blocs();
    au_lieu_de_lire = nullptr;
    EXPECT_TRUE(fait) << "the read went another way";
    return lus;
  }

  Dossier dossier_;
  Cas cas_;
  Base base_;
  const std::string blck_ = dossier_.chemin() + "b/b_nrm.blck";
};

TEST_F(Fichiers, AFileThatShrinksIsOneThatCannotBeLoaded) {
  const auto taille = std::filesystem::file_size(blck_);
  for (const std::uintmax_t reste : {taille - 5, taille / 2, std::uintmax_t{0}}) {
    ecrire_cas(cas_.base, dossier_);
    const Capture capture;
    EXPECT_FALSE(lire_blocs([&] { std::filesystem::resize_file(blck_, reste); })) << reste;
    EXPECT_EQ(capture.out(), "parsing fichier " + blck_ + " ... probleme de lecture du fichier\n");
    EXPECT_TRUE(base_.blocs.empty());
  }
}

TEST_F(Fichiers, AFileThatVanishesOrGrowsIsTheOneThatWasOpened) {
  const Capture muet;
  EXPECT_TRUE(lire_blocs([&] { std::filesystem::remove(blck_); }));
  EXPECT_EQ(base_.blocs.size(), 2u);
  ecrire_cas(cas_.base, dossier_);
  EXPECT_TRUE(lire_blocs([&] {
    std::FILE* f = std::fopen(blck_.c_str(), "a");
    std::fputs("<Blocks>", f);
    std::fclose(f);
  }));
}

TEST_F(Fichiers, AReadThatFailsHalfwayIsSaid) {
  int lectures = 0;
  const auto lire_mal = [&](int fd, void* place, std::size_t taille) -> ssize_t {
    if (++lectures == 1) return lire_vraiment(fd, place, std::min<std::size_t>(taille, 64));
    errno = EIO;
    return -1;
  };
  dossier_.ecrire("climite.cfg", "Damas code;BCCODE;\n" + std::string(9000, ';') + "\n");
  for (const bool climite : {false, true}) {
    Base::init_cl_cfg = false;
    const Capture capture;
    lectures = 0;
    au_lieu_de_lire = lire_mal;
    EXPECT_FALSE(climite ? base_.load_clcfg(dossier_.chemin()) : base_.load_blocs());
    au_lieu_de_lire = nullptr;
    EXPECT_GE(lectures, 2);
    EXPECT_EQ(capture.err(), climite ? "Erreur acquisition climite.cfg.... \n" : "");
    EXPECT_EQ(capture.out(),
              climite ? "" : "parsing fichier " + blck_ + " ... probleme de lecture du fichier\n");
    EXPECT_FALSE(Base::init_cl_cfg);
  }
}

/// Decimal comma, thousands in threes: what a French program may have made its global locale.
struct Virgule : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return ' '; }
  std::string do_grouping() const override { return "\3"; }
};

TEST_F(Fichiers, NumbersAreReadAndStoredWithAPointWhateverTheGlobalLocale) {
  const Capture muet;
  const auto table = [&] {
    Base base("b", dossier_.chemin(), "nrm");
    EXPECT_TRUE(base.load_all());
    BaseBuffer t;
    t.add_base(base);
    t._expl[0][5] = "+1234.5";  // a text for the stream
    t.normalize();
    return std::pair(image(base), t._expl);
  };
  const auto attendue = table();
  const std::locale avant = std::locale::global(std::locale(std::locale(), new Virgule));
  const auto lue = table();
  std::locale::global(avant);
  EXPECT_TRUE(lue == attendue);
}

}  // namespace
