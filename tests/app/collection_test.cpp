#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <sstream>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "tests/support/capture.h"
#include "tests/support/dossier.h"
#include "tests/support/execution.h"

using namespace topomine;

namespace {

const std::string cas = TOPOMINE_CASES;  // with its "/"

class Collection : public testing::TestWithParam<const char*> {
 protected:
  static std::string attendu(const char* fin) {
    return lire_octets(cas + "attendu/" + GetParam() + fin);
  }
};

// One unit of the fifth digit: the order of a sum follows the shuffle.
bool proche(double x, double y) {
  return x == y ||
         std::abs(x - y) <= 1.01 * std::pow(10.0, std::floor(std::log10(std::abs(y))) - 4);
}

/// The text with "x" in the place of its numbers, which go to `nombres`.
std::string forme(const std::string& texte, std::vector<double>& nombres) {
  static const std::regex nombre("-?[0-9][-+.e0-9]*");
  for (std::sregex_iterator n(texte.begin(), texte.end(), nombre), fin; n != fin; ++n)
    nombres.push_back(std::stod(n->str()));
  return std::regex_replace(texte, nombre, "x");
}

}  // namespace

TEST_P(Collection, TableBeforeNormalisation) {
  BaseBuffer t("topology");
  const Capture muet;
  for (char k = '1'; k <= '8'; ++k) {
    Base base(std::string("mesh_case_") + k, cas, GetParam());
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
  std::filesystem::copy(cas, d.chemin(), std::filesystem::copy_options::recursive);
  EXPECT_EQ(lancer(TOPOMINE_PROGRAM, d.chemin(), {"", GetParam(), "out"}).statut, 0);
  std::vector<double> vus, voulus;
  EXPECT_EQ(forme(d.lire("global.cov"), vus), forme(attendu(".cov"), voulus));
  ASSERT_EQ(vus.size(), voulus.size());
  for (std::size_t i = 0; i < vus.size(); ++i) EXPECT_PRED2(proche, vus[i], voulus[i]) << i;
}

INSTANTIATE_TEST_SUITE_P(Modes, Collection, testing::Values("ext", "nrm", "min"));
