// SPDX-License-Identifier: Apache-2.0

#include "signal/mean.h"

#include <gtest/gtest.h>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

TEST(Mean, MatchesTheClosedFormForEveryRemainderOfTheLanes) {
  EXPECT_EQ(Mean({}), 0.0);
  for (std::size_t n = 1; n < 40; ++n) {
    std::vector<double> ramp(n);
    for (std::size_t i = 0; i < n; ++i) ramp[i] = 3.0 * static_cast<double>(i) - 7.0;
    EXPECT_TRUE(Near(Mean(ramp), 1.5 * static_cast<double>(n - 1) - 7.0, 1e-15, 100.0)) << n;
  }
}

}  // namespace
}  // namespace texturon
