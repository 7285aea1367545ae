// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "signal/fft/fft_batch.h"
#include "support/naive_transform.h"

namespace texturon {
namespace {

TEST(Fft, AcceptsLengthsWithoutLongPrimes) {
  for (const std::size_t n : {1U, 2U, 499U, 502U, 2994U, 249'001U, 750'000U}) EXPECT_TRUE(FftAcceptsLength(n)) << n;
  for (const std::size_t n : {0U, 503U, 1006U, 1509U, 253'009U}) EXPECT_FALSE(FftAcceptsLength(n)) << n;

  struct Case {
    std::size_t n, largest;
  };
  for (const Case& c : {Case{503, 502}, {500, 500}, {1509, 1508}, {1019, 1017}, {5, 5}, {4, 0}, {0, 0}}) {
    EXPECT_EQ(LargestFftLength(c.n), c.largest) << c.n;
  }
}

TEST(Fft, MatchesTheDefinitionAtEveryShortLength) {
  for (std::size_t n = 1; n <= 600; ++n) {
    if (!FftAcceptsLength(n)) continue;
    const Signal x = RandomSignal(n);
    const Signal expected = NaiveTransform(x);
    Signal y = x;
    ASSERT_TRUE(Fft(x.re, x.im, y.re, y.im));
    EXPECT_LT(RelativeRms(y, expected), AllowedLoss(n)) << n;
    ASSERT_TRUE(InverseFft(y.re, y.im, y.re, y.im));  // in place
    EXPECT_LT(RelativeRms(y, x), 2.0 * AllowedLoss(n)) << n;
  }
}

/// What is not read holds no number.
TEST(Fft, OfTheOuterRowsAloneIsThatWithZerosBetween) {
  constexpr std::size_t kLanes = kLaneQuantum;
  for (const std::size_t n : {4U, 8U, 12U, 16U, 24U, 40U, 48U, 64U, 96U, 144U, 320U, 15U, 30U}) {
    const BatchFft plan(n);
    for (std::size_t least = 1; least <= n / 2; ++least) {
      const std::size_t outer = BatchFft::OuterRows(n, least);
      ASSERT_TRUE(outer >= least && outer <= n);
      const Signal x = RandomSignal(n * kLanes);
      Signal zeros = x, gaps = x, expected = x, y = x;
      for (std::size_t i = outer * kLanes; i + outer * kLanes < n * kLanes; ++i) {
        zeros.re[i] = zeros.im[i] = 0.0;
        gaps.re[i] = gaps.im[i] = NAN;
      }
      std::vector<double> scratch(plan.ScratchDoubles(kLanes) + kLanes);
      plan.Run({zeros.re.data(), zeros.im.data(), kLanes}, {expected.re.data(), expected.im.data(), kLanes}, kLanes,
               scratch);
      plan.Run({gaps.re.data(), gaps.im.data(), kLanes}, {y.re.data(), y.im.data(), kLanes}, kLanes, scratch, outer);
      EXPECT_TRUE(RelativeRms(y, expected) < 1e-15) << n << ": " << outer;
    }
  }
  EXPECT_EQ(BatchFft::OuterRows(320, 40), 40U);
  EXPECT_EQ(BatchFft::OuterRows(320, 41), 80U);
  EXPECT_EQ(BatchFft::OuterRows(320, 81), 120U);
  EXPECT_EQ(BatchFft::OuterRows(16, 4), 4U) << "fours first";
}

// Smooth, odd, prime times little, two and three long primes (a convolution inside a longer bundle needs the third).
constexpr std::array<std::size_t, 13> kLongLengths = {982,    1024,    2994,    5604,    7918,    8000,   65'536,
                                                      99'225, 100'000, 249'001, 300'763, 498'002, 750'000};

TEST(Fft, MatchesClosedFormsAtLongLengths) {
  for (const std::size_t n : kLongLengths) {
    const FftPlan plan = *FftPlan::Make(n);
    Signal y{std::vector<double>(n), std::vector<double>(n)};

    // Two harmonics of different size become two lines.
    const std::size_t h = n / 3 + 1;
    Signal x = Harmonic(n, h, 2.0);
    const Signal second = Harmonic(n, n - 2, 0.5);
    for (std::size_t j = 0; j < n; ++j) {
      x.re[j] += second.re[j];
      x.im[j] += second.im[j];
    }
    Signal lines{std::vector<double>(n), std::vector<double>(n)};
    lines.re[h] = 2.0 * static_cast<double>(n);
    lines.re[n - 2] = 0.5 * static_cast<double>(n);
    plan.Forward(x.re, x.im, y.re, y.im);
    EXPECT_LT(RelativeRms(y, lines), AllowedLoss(n)) << n;

    // A random sequence comes back.
    x = RandomSignal(n);
    plan.Forward(x.re, x.im, y.re, y.im);
    plan.Inverse(y.re, y.im, y.re, y.im);
    EXPECT_LT(RelativeRms(y, x), 2.0 * AllowedLoss(n)) << n;
  }
  EXPECT_FALSE(FftPlan::Make(503).has_value());
}

}  // namespace
}  // namespace texturon
