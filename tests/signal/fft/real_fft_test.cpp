// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/real_fft.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "support/naive_transform.h"

namespace texturon {
namespace {

Signal FirstHalf(const Signal& full) {
  const auto count = static_cast<std::ptrdiff_t>(full.re.size() / 2 + 1);
  return {{full.re.begin(), full.re.begin() + count}, {full.im.begin(), full.im.begin() + count}};
}

TEST(RealFft, MatchesTheDefinitionAndReturns) {
  for (std::size_t n = 1; n <= 400; ++n) {
    if (!FftAcceptsLength(n)) continue;
    Signal x = RandomSignal(n);
    std::fill(x.im.begin(), x.im.end(), 0.0);
    const RealFftPlan plan = *RealFftPlan::Make(n);
    Signal half{std::vector<double>(n / 2 + 1), std::vector<double>(n / 2 + 1)};
    plan.Forward(x.re, half.re, half.im);
    EXPECT_LT(RelativeRms(half, FirstHalf(NaiveTransform(x))), AllowedLoss(n)) << n;

    // The inverse ignores what cannot come from real values.
    half.im[0] = 3.0;
    if (n % 2 == 0) half.im[n / 2] = 5.0;
    Signal back = x;
    plan.Inverse(half.re, half.im, back.re);
    EXPECT_LT(RelativeRms(back, x), 2.0 * AllowedLoss(n)) << n;
  }
  EXPECT_FALSE(RealFftPlan::Make(503).has_value());
  EXPECT_FALSE(RealFftPlan::Make(0).has_value());
}

}  // namespace
}  // namespace texturon
