// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/pentadiagonal.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "support/near.h"

namespace texturon {
namespace {

TEST(Pentadiagonal, FindsTheUnknownsOfEverySmallSizeAndALongSystemOrRefusesAPivot) {
  for (const std::size_t n : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 101u, 50'000u}) {
    // No two entries alike, so that an index that is off by one shows; every third diagonal entry negative.
    std::vector<double> main, first, second, expected, rhs(n), x(n);
    for (std::size_t i = 0; i < n; ++i) {
      const double k = static_cast<double>(i);
      main.push_back((i % 3 == 1 ? -1.0 : 1.0) * (7.0 + std::cos(k)));
      if (i + 1 < n) first.push_back(-2.0 + std::sin(2.0 * k));
      if (i + 2 < n) second.push_back(0.5 + 0.3 * std::cos(3.0 * k));
      expected.push_back(std::sin(0.7 * k) + 2.0);
    }
    for (std::size_t i = 0; i < n; ++i) {
      rhs[i] += main[i] * expected[i];
      if (i + 1 < n) rhs[i] += first[i] * expected[i + 1], rhs[i + 1] += first[i] * expected[i];
      if (i + 2 < n) rhs[i] += second[i] * expected[i + 2], rhs[i + 2] += second[i] * expected[i];
    }
    ASSERT_TRUE(SolvePentadiagonal(main, first, second, rhs, x)) << n;
    EXPECT_TRUE(AllNear(x, expected, 1e-13)) << n;
    std::vector<double> inPlace = rhs;
    ASSERT_TRUE(SolvePentadiagonal(main, first, second, inPlace, inPlace));
    EXPECT_EQ(inPlace, x);
    for (std::size_t i = 0; i < n && n < 10; ++i) {
      for (const double bad : {0.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
        std::vector<double> diagonal = main;
        diagonal[i] = bad;
        const std::vector<double> zeros(n);
        EXPECT_FALSE(SolvePentadiagonal(diagonal, std::span(zeros).first(first.size()),
                                        std::span(zeros).first(second.size()), rhs, x))
            << bad << " at " << i;
      }
    }
    EXPECT_EQ(SolvePentadiagonal(main, main, second, rhs, x), n == 0);
  }
}

}  // namespace
}  // namespace texturon
