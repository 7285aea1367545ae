// SPDX-License-Identifier: Apache-2.0

#include "base/units.h"

#include <gtest/gtest.h>
#include <limits>

namespace texturon {
namespace {

TEST(StepsInLength, RoundsHalfAwayFromZeroAndSaturates) {
  struct Case {
    double lengthMM, spacingUM;
    std::int32_t steps;
  };
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const Case cases[] = {
      {0.4, 0.5, 800},     {0.00125, 0.5, 3},      {-0.00125, 0.5, -3},          {0.00124, 0.5, 2},
      {-0.00124, 0.5, -2}, {0.0, 0.5, 0},          {1e300, 0.5, 2147483647},     {-1e300, 0.5, -2147483647 - 1},
      {0.0, 0.0, 0},       {1.0, 0.0, 2147483647}, {kInfinity, 1.0, 2147483647},
  };
  for (const Case& c : cases) EXPECT_EQ(StepsInLength(c.lengthMM, c.spacingUM), c.steps) << c.lengthMM;
}

TEST(WholePartsOfLength, LosesNoneToDecimalFractions) {
  // Every n-th part of a whole length holds n of them, however both are rounded.
  for (int n = 1; n < 6000; ++n) {
    for (const double part : {0.1, 0.25, 0.3, 0.7}) {
      const double length = static_cast<double>(n) * part;
      ASSERT_EQ(WholePartsOfLength(length, part), n) << part;
      ASSERT_EQ(WholePartsOfLength(length / 1000.0, part * 0.001), n) << part;
      ASSERT_EQ(WholePartsOfLength(length * (1.0 - 1e-7), part), n - 1) << part;
    }
  }
  EXPECT_EQ(WholePartsOfLength(-2.5, 1.0), -2.0) << "towards 0";
}

}  // namespace
}  // namespace texturon
