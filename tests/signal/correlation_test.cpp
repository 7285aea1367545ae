// SPDX-License-Identifier: Apache-2.0

#include "signal/correlation.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

/// The coefficient of one lag, added up; not a number where too few points or no spread are shared.
double Coefficient(const std::vector<double>& a, const std::vector<double>& b, std::ptrdiff_t lag, std::size_t fewest) {
  std::vector<long double> x, y;
  for (std::ptrdiff_t i = 0; i < std::ssize(b); ++i) {
    if (i + lag < 0 || i + lag >= std::ssize(a)) continue;
    x.push_back(a[static_cast<std::size_t>(i + lag)]);
    y.push_back(b[static_cast<std::size_t>(i)]);
  }
  if (x.size() < std::max<std::size_t>(fewest, 2)) return NAN;
  long double meanX = 0, meanY = 0, xx = 0, yy = 0, xy = 0;
  for (std::size_t i = 0; i < x.size(); ++i) meanX += x[i], meanY += y[i];
  meanX /= static_cast<long double>(x.size());
  meanY /= static_cast<long double>(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    xx += (x[i] - meanX) * (x[i] - meanX);
    yy += (y[i] - meanY) * (y[i] - meanY);
    xy += (x[i] - meanX) * (y[i] - meanY);
  }
  return static_cast<double>(xy / std::sqrt(xx * yy));
}

TEST(FindBestLag, IsThatOfTheSumsAddedUpOneByOne) {
  std::mt19937 random(5);
  std::normal_distribution<double> noise;
  for (const auto& [n1, n2, move, fewest] :
       {std::array{50, 50, 7, 25}, std::array{80, 31, 30, 15}, std::array{20, 64, -40, 10}, std::array{9, 9, 0, 2}}) {
    std::vector<double> a(static_cast<std::size_t>(n1)), b(static_cast<std::size_t>(n2));
    for (double& z : a) z = 1000.0 + noise(random);
    for (int i = 0; i < n2; ++i) {
      const bool isShared = i + move >= 0 && i + move < n1;
      b[static_cast<std::size_t>(i)] =
          0.2 * noise(random) + (isShared ? 0.5 * a[static_cast<std::size_t>(i + move)] : 500.0 + noise(random));
    }
    double best = -2.0;
    for (std::ptrdiff_t lag = -n2; lag <= n1; ++lag) {
      const double value = Coefficient(a, b, lag, static_cast<std::size_t>(fewest));
      if (value > best) best = value;
    }
    const auto found = FindBestLag(a, b, static_cast<std::size_t>(fewest));
    ASSERT_TRUE(found.has_value());
    EXPECT_TRUE(Near(found->correlation, best, 1e-9)) << n1;
    EXPECT_TRUE(Near(Coefficient(a, b, found->lag, static_cast<std::size_t>(fewest)), best, 1e-9)) << n1;
    if (fewest > 2) {
      EXPECT_EQ(found->lag, move);
    }
  }
}

TEST(FindBestLag, IsNothingWhereNothingVaries) {
  const std::vector<double> flat(40, 3.0);
  std::vector<double> wave(40);
  for (std::size_t i = 0; i < wave.size(); ++i) wave[i] = std::sin(0.3 * static_cast<double>(i));
  EXPECT_FALSE(FindBestLag(flat, wave, 20));
  EXPECT_FALSE(FindBestLag(wave, std::span(wave).first(10), 20)) << "shorter than what must be shared";
  EXPECT_EQ(FindBestLag(wave, wave, 20)->lag, 0);
}

}  // namespace
}  // namespace texturon
