// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/gaussian_filter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

#include "support/naive_transform.h"
#include "support/near.h"

namespace texturon {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// The mean line by circular convolution with the weighting's own kernel, a sum of cosines in long double:
/// g[d] = 1/m (1 + sum over k of A(k) cos(2 pi k d / m)) with both signs of k.
std::vector<double> BruteForce(const std::vector<double>& z, double spacingUM, double cutoffMM) {
  const std::size_t m = z.size();
  std::vector<long double> kernel(m);
  for (std::size_t d = 0; d < m; ++d) {
    long double sum = 1.0L;
    for (std::size_t k = 1; k < m; ++k) {
      const auto harmonic = static_cast<long double>(std::min(k, m - k));
      const long double ratio = cutoffMM * harmonic / (static_cast<long double>(m) * spacingUM * 0.001L);
      const long double turn = static_cast<long double>(k * d % m) / static_cast<long double>(m);
      sum += std::exp2(-ratio * ratio) * std::cos(2.0L * std::numbers::pi_v<long double> * turn);
    }
    kernel[d] = sum / static_cast<long double>(m);
  }
  std::vector<double> w(m);
  for (std::size_t i = 0; i < m; ++i) {
    long double sum = 0.0L;
    for (std::size_t j = 0; j < m; ++j) sum += kernel[(i + m - j) % m] * z[j];
    w[i] = static_cast<double>(sum);
  }
  return w;
}

TEST(GaussianFilter, MatchesTheCircularConvolution) {
  struct Case {
    std::size_t n;
    double spacingUM, cutoffMM;
  };
  // Even, odd and prime lengths; from a cutoff of three samples, where the highest harmonic still passes, to one that
  // is longer than the record; 0.25 mm has harmonics that vanish.
  const Case cases[] = {{64, 1.0, 0.003}, {65, 0.5, 0.008}, {101, 0.5, 0.01},
                        {5, 1.0, 0.003},  {450, 0.5, 0.25}, {122, 2.0, 0.8}};
  for (const Case& c : cases) {
    std::vector<double> z = RandomSignal(c.n).re;
    for (double& height : z) height += 4.0;
    std::vector<double> w(c.n);
    EXPECT_EQ(GaussianFilter(z, w, c.spacingUM, c.cutoffMM), IndexRange::FromCount(0, static_cast<std::int32_t>(c.n)));
    EXPECT_TRUE(AllNear(w, BruteForce(z, c.spacingUM, c.cutoffMM), 4e-15)) << c.n << " " << c.cutoffMM;
  }
}

TEST(GaussianFilter, ShortensARecordOfRefusedLength) {
  struct Case {
    std::size_t n;
    std::int32_t count;
  };
  for (const Case& c : {Case{503, 502}, {1019, 1017}, {500, 500}, {5, 5}}) {
    const std::vector<double> z = RandomSignal(c.n).re;
    const auto m = static_cast<std::size_t>(c.count);
    std::vector<double> w(c.n, 99.0);
    EXPECT_EQ(GaussianFilter(z, w, 1.0, 0.01), IndexRange::FromCount(0, c.count));
    for (std::size_t i = m; i < c.n; ++i) EXPECT_EQ(w[i], 99.0);
    const std::vector<double> head(z.begin(), z.begin() + c.count);
    EXPECT_TRUE(AllNear(std::span(w).first(m), BruteForce(head, 1.0, 0.01), 4e-15)) << c.n;
  }
}

TEST(GaussianFilter, RefusesWhatItCannotFilter) {
  struct Case {
    std::size_t n;
    double spacingUM, cutoffMM;
    bool works;
  };
  // The first is exactly a third of the cutoff.
  const Case cases[] = {{100, 250.0, 0.75, true}, {100, std::nextafter(250.0, 300.0), 0.75, false},
                        {4, 1.0, 0.8, false},     {0, 1.0, 0.8, false},
                        {100, 1.0, 0.0, false},   {100, 1.0, -0.8, false},
                        {100, 0.0, 0.8, false},   {100, -3.0, -0.001, false},
                        {100, kNaN, 0.8, false},  {100, 1.0, kNaN, false},
                        {100, kInf, kInf, false}};
  for (const Case& c : cases) {
    const std::vector<double> z = RandomSignal(c.n).re;
    std::vector<double> w(c.n);
    EXPECT_EQ(GaussianFilter(z, w, c.spacingUM, c.cutoffMM).has_value(), c.works) << c.spacingUM << " " << c.cutoffMM;
  }
  // An endless cutoff leaves the mean.
  const std::vector<double> z = {1.0, 2.0, 3.0, 4.0, 5.0};
  std::vector<double> w(5);
  ASSERT_TRUE(GaussianFilter(z, w, 1.0, kInf).has_value());
  EXPECT_TRUE(AllNear(w, std::vector<double>(5, 3.0), 1e-15));
}

}  // namespace
}  // namespace texturon
