// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/plain_spectrum.h"

#include <gtest/gtest.h>

#include "support/naive_transform.h"
#include "support/near.h"

namespace texturon {
namespace {

TEST(PlainSpectrum, IsTheTransformOfAnyLength) {
  // 1006 = 2 x 503 and 1009 have prime factors that the quick transforms refuse.
  for (const std::size_t n : {1u, 2u, 7u, 360u, 1006u, 1009u}) {
    Signal x = RandomSignal(n);
    x.im.assign(n, 0.0);
    const Signal y = NaiveTransform(x);
    std::vector<double> expected;
    for (std::size_t k = 0; k <= n / 2; ++k) expected.push_back(y.re[k] * y.re[k] + y.im[k] * y.im[k]);
    EXPECT_TRUE(AllNear(PlainPowerSpectrum(x.re), expected, 1e-12)) << n;
  }
  EXPECT_TRUE(PlainPowerSpectrum({}).empty());
}

TEST(PlainSpectrum, AddsUpLaggedProducts) {
  const std::vector<double> x = RandomSignal(301).re;
  std::vector<double> expected(150);
  for (std::size_t lag = 0; lag < expected.size(); ++lag) {
    for (std::size_t i = 0; i + lag < x.size(); ++i) expected[lag] += x[i] * x[i + lag];
  }
  EXPECT_TRUE(AllNear(LaggedProducts(x, 150), expected, 1e-13));
}

}  // namespace
}  // namespace texturon
