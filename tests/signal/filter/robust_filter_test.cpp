// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/robust_filter.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "signal/filter/spline_filter.h"
#include "signal/mean.h"
#include "support/near.h"
#include "support/recording_progress.h"

namespace texturon {
namespace {

// A wave, noise and three narrow scratches of 30 um, on an offset.
std::vector<double> Scratched(std::size_t n) {
  std::mt19937 random(3);
  std::vector<double> z(n);
  for (std::size_t i = 0; i < n; ++i) {
    z[i] = 12.0 + std::sin(static_cast<double>(i) * 0.004) + static_cast<double>(random() % 1000) * 2e-4;
    if (i % 1000 > 490 && i % 1000 < 510) z[i] -= 30.0;
  }
  return z;
}

// The rules written out: whole sort, weights from c, unlimited by a window.
std::vector<double> Twin(const std::vector<double>& z, double cutoffMM, double tension, int passes,
                         std::vector<double>* scales = nullptr) {
  const std::size_t n = z.size();
  std::vector<double> centred(z), line(n), weights(n, 1.0);
  for (double& value : centred) value -= Mean(z);
  for (int pass = 0; pass <= passes; ++pass) {
    EXPECT_TRUE(SplineFilter(centred, line, 0.5, cutoffMM, tension, weights));
    std::vector<double> sorted(n);
    for (std::size_t i = 0; i < n; ++i) sorted[i] = std::abs(centred[i] - line[i]);
    std::sort(sorted.begin(), sorted.end());
    const double c = 4.447806654 * sorted[n / 2];
    if (scales != nullptr) scales->push_back(c);
    for (std::size_t i = 0; i < n; ++i) {
      const double r = centred[i] - line[i];
      weights[i] = std::abs(r) <= c ? std::pow(1.0 - r * r / (c * c), 2) : 0.0;
    }
  }
  for (double& value : line) value += Mean(z);
  return line;
}

TEST(RobustFilter, LeavesScratchesToTheRoughness) {
  const std::vector<double> z = Scratched(3000);
  for (const double tension : {0.0, kGaussianLikeTension}) {
    std::vector<double> w(z.size()), plain(z.size());
    RecordingProgress progress(1000);
    const RobustResult result = RobustSplineFilter(z, w, 0.5, 0.08, tension, &progress);
    ASSERT_EQ(result.stop, RobustStop::kConverged);
    EXPECT_EQ(result.range, IndexRange::FromCount(0, 3000));
    ASSERT_TRUE(SplineFilter(z, plain, 0.5, 0.08, tension));
    for (const std::size_t scratch : {500u, 1500u, 2500u}) {
      const double surface = 12.1 + std::sin(static_cast<double>(scratch) * 0.004);
      EXPECT_LT(plain[scratch], surface - 1.0);
      EXPECT_TRUE(Near(w[scratch], surface, 0.05, 1.0)) << scratch;
    }
    std::vector<double> c;
    EXPECT_TRUE(AllNear(w, Twin(z, 0.08, tension, result.iterations, &c), 1e-11));
    // Each percentage tells how far the logarithm of the relative change has come on its way to that of 0.001.
    std::vector<int> expected;
    for (std::size_t k = 1; k < c.size(); ++k) {
      const double percent = 100.0 * std::log10(std::abs(c[k] - c[k - 1]) / c[k]) / std::log10(0.001);
      const int shown = static_cast<int>(std::lround(std::clamp(percent, 0.0, 100.0)));
      expected.push_back(expected.empty() ? shown : std::max(expected.back(), shown));
    }
    EXPECT_EQ(progress.shown, expected);
    EXPECT_EQ(expected.back(), 100);
  }
}

TEST(RobustFilter, EndsEarlyWithTheLineSoFar) {
  const std::vector<double> z = Scratched(3000);
  std::vector<double> w(z.size());
  RecordingProgress closedAtOnce(1);
  const RobustResult cancelled = RobustSplineFilter(z, w, 0.5, 0.08, 0.0, &closedAtOnce);
  EXPECT_EQ(cancelled.stop, RobustStop::kCancelled);
  EXPECT_EQ(cancelled.iterations, 1);
  EXPECT_TRUE(cancelled.range);
  EXPECT_TRUE(AllNear(w, Twin(z, 0.08, 0.0, 1), 1e-11));

  const std::vector<double> flat(400, 3.25);  // no residual: every weight becomes 0
  w.resize(flat.size());
  const RobustResult singular = RobustSplineFilter(flat, w, 0.5, 0.08, 0.0, nullptr);
  EXPECT_EQ(singular.stop, RobustStop::kSingularWeights);
  EXPECT_EQ(singular.iterations, 0);
  EXPECT_TRUE(singular.range);
  EXPECT_TRUE(AllNear(w, flat, 1e-15));
}

TEST(RobustFilter, FailsAsTheSplineFilterAndCopiesForAVanishingCutoff) {
  const std::vector<double> z = Scratched(60);
  std::vector<double> w(z.size());
  EXPECT_EQ(RobustSplineFilter(z, w, 0.5, 0.0014, 0.0, nullptr).stop, RobustStop::kFailed);
  EXPECT_FALSE(RobustSplineFilter({}, {}, 0.5, 0.08, 0.0, nullptr).range);
  EXPECT_NE(w, z);
  for (const double cutoff : {0.0, -1.0, 0x1p-52}) {
    w.assign(z.size(), 0.0);
    EXPECT_FALSE(RobustSplineFilter(z, w, 1e-20, cutoff, 0.0, nullptr).range);
    EXPECT_EQ(w, z) << cutoff;
  }
}

}  // namespace
}  // namespace texturon
