// SPDX-License-Identifier: Apache-2.0

#include "settings/filter_table.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace texturon {
namespace {

TEST(FilterTable, TheRegressionFilterSaysWhyItEndedEarly) {
  const auto ending = [](auto height) {
    std::vector<double> z(400), w(400);
    for (std::size_t i = 0; i < z.size(); ++i) z[i] = height(static_cast<double>(i));
    std::string text = "of the run before";
    const FilterSetup setup{.spacingUM = 1.0, .cutoffMM = 0.02, .ending = &text};
    EXPECT_TRUE(RunRegression(z, w, setup));
    return text;
  };
  EXPECT_EQ(ending([](double i) { return 0.2 * i; }),
            "The robust regression filter ended after 0 passes: half of the points lie on its mean line, so that no "
            "weights can be made of their distances.");
  const std::string grooved =
      ending([](double i) { return std::sin(i * i) + (i > 100.0 && i < 260.0 ? 1e3 * std::cos(3.0 * i) : 0.0); });
  EXPECT_NE(grooved.find("a point has fewer than three points with weight"), std::string::npos) << grooved;
  EXPECT_EQ(ending([](double i) { return std::sin(i * i); }), "");
}

}  // namespace
}  // namespace texturon
