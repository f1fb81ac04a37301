#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "tests/support/capture.h"
#include "tests/support/dossier.h"
#include "tests/support/execution.h"

using namespace topomine;

namespace fs = std::filesystem;

namespace {

const std::string collection = TOPOMINE_COLLECTION;

class Collection : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (!fs::exists(collection + "/cases") || !fs::exists(collection + "/expected"))
      GTEST_SKIP() << "no sample collection in " << collection;
  }
  std::string attendu(const char* sorte) const {
    return lire_octets(collection + "/expected/" + GetParam() + sorte);
  }
};

// One unit of the fifth digit: the order of a sum follows the shuffle.
bool proche(const std::string& a, const std::string& b) {
  if (a == b) return true;
  if (a == "NaN" || b == "NaN") return false;
  const double x = std::stod(a), y = std::stod(b);
  return std::abs(x - y) <= 1.01 * std::pow(10.0, std::floor(std::log10(std::abs(y))) - 4);
}

}  // namespace

TEST_P(Collection, TableBeforeNormalisation) {
  BaseBuffer t("topology");
  const Capture muet;
  for (char k = '1'; k <= '8'; ++k) {
    Base base(std::string("mesh_case_") + k, collection + "/cases/", GetParam());
    base._disp(false);
    ASSERT_TRUE(base.load_all());
    t.add_base(base);
  }
  std::ostringstream weka, torch;
  t.Print_weka(weka);
  t.Print_torch(torch);
  EXPECT_EQ(weka.str(), attendu(".arff"));
  EXPECT_EQ(torch.str(), attendu(".torch"));
}

TEST_P(Collection, Matrix) {
  const Dossier d;  // the collection itself stays as it is
  for (const auto& entree : fs::directory_iterator(collection + "/cases"))
    fs::create_symlink(fs::canonical(entree.path()), d.chemin() / entree.path().filename());
  fs::remove(d.chemin() + "global.cov");
  EXPECT_EQ(lancer(TOPOMINE_PROGRAM, d.chemin(), {"", GetParam(), "out"}).statut, 0);
  std::istringstream vu(d.lire("global.cov")), voulu(attendu(".cov"));
  std::string a, b;
  for (int ligne = 0; ligne < 50; ++ligne)
    for (int col = 0; col < 50; ++col) {
      std::getline(vu, a, '\t');
      std::getline(voulu, b, '\t');
      if (ligne > 0 && col == 0) {  // the end of the line before
        EXPECT_EQ(a.substr(0, 1) + b.substr(0, 1), "\n\n");
        a.erase(0, 1);
        b.erase(0, 1);
      }
      EXPECT_PRED2(proche, a, b) << ligne << ", " << col;
    }
  EXPECT_TRUE(std::getline(vu, a, '\0') && a == "\n") << a;
}

INSTANTIATE_TEST_SUITE_P(Modes, Collection, testing::Values("ext", "nrm", "min"));
