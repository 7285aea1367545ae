// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/pentadiagonal.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

struct FiveBands {
  std::vector<double> main, first, second;

  std::size_t Size() const { return main.size(); }
  std::vector<double> Times(std::span<const double> x) const {
    std::vector<double> product(Size());
    for (std::size_t i = 0; i < Size(); ++i) {
      product[i] += main[i] * x[i];
      if (i + 1 < Size()) product[i] += first[i] * x[i + 1], product[i + 1] += first[i] * x[i];
      if (i + 2 < Size()) product[i] += second[i] * x[i + 2], product[i + 2] += second[i] * x[i];
    }
    return product;
  }
};

// No two entries alike, so that an index that is off by one shows; diagonally dominant, indefinite where asked.
FiveBands Bands(std::size_t n, bool indefinite = false) {
  FiveBands bands;
  for (std::size_t i = 0; i < n; ++i) {
    const double k = static_cast<double>(i);
    const double sign = indefinite && i % 3 == 1 ? -1.0 : 1.0;
    bands.main.push_back(sign * (7.0 + std::cos(k)));
    if (i + 1 < n) bands.first.push_back(-2.0 + std::sin(2.0 * k));
    if (i + 2 < n) bands.second.push_back(0.5 + 0.3 * std::cos(3.0 * k));
  }
  return bands;
}

std::vector<double> Unknowns(std::size_t n) {
  std::vector<double> x(n);
  for (std::size_t i = 0; i < n; ++i) x[i] = std::sin(0.7 * static_cast<double>(i)) + 2.0;
  return x;
}

TEST(Pentadiagonal, FindsTheUnknownsOfEverySmallSizeAndALongSystem) {
  for (const bool indefinite : {false, true}) {
    for (const std::size_t n : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 100u, 101u, 50'000u}) {
      const FiveBands bands = Bands(n, indefinite);
      const std::vector<double> expected = Unknowns(n);
      const std::vector<double> rhs = bands.Times(expected);
      std::vector<double> x(n, -1.0);
      ASSERT_TRUE(SolvePentadiagonal(bands.main, bands.first, bands.second, rhs, x)) << n;
      EXPECT_TRUE(AllNear(x, expected, 1e-13)) << n;
      std::vector<double> inPlace = rhs;
      ASSERT_TRUE(SolvePentadiagonal(bands.main, bands.first, bands.second, inPlace, inPlace));
      EXPECT_EQ(inPlace, x);
    }
  }
}

TEST(Pentadiagonal, RefusesAnUnusablePivotWhereverItIs) {
  constexpr std::size_t kSize = 9;
  const std::vector<double> rhs(kSize, 1.0);
  std::vector<double> x(kSize);
  for (const double bad : {0.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    for (std::size_t i = 0; i < kSize; ++i) {
      FiveBands bands = Bands(kSize);
      bands.first.assign(kSize - 1, 0.0);
      bands.second.assign(kSize - 2, 0.0);
      ASSERT_TRUE(SolvePentadiagonal(bands.main, bands.first, bands.second, rhs, x));
      bands.main[i] = bad;
      EXPECT_FALSE(SolvePentadiagonal(bands.main, bands.first, bands.second, rhs, x)) << bad << " at " << i;
    }
  }
  const FiveBands bands = Bands(kSize);
  EXPECT_FALSE(SolvePentadiagonal(bands.main, bands.main, bands.second, rhs, x));
  EXPECT_FALSE(SolvePentadiagonal(bands.main, bands.first, bands.first, rhs, x));
  EXPECT_FALSE(SolvePentadiagonal(std::vector{0.0}, {}, {}, std::vector{1.0}, std::span(x).first(1)));
}

}  // namespace
}  // namespace texturon
