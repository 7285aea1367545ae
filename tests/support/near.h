// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <span>

namespace texturon {

/// The one numeric comparison of the tests: relative, absolute where both values are below `scale`, equal where both
/// are the same non-finite value. Use: EXPECT_TRUE(Near(actual, expected, 1e-9)).
inline ::testing::AssertionResult Near(double actual, double expected, double tolerance, double scale = 1.0) {
  if (actual == expected || (std::isnan(actual) && std::isnan(expected))) return ::testing::AssertionSuccess();
  const double difference = std::abs(actual - expected);
  const double size = std::max(scale, std::abs(expected));
  if (difference <= tolerance * size) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << actual << " is not " << expected << " within " << tolerance << " (off by "
                                       << difference << ")";
}

/// Every element Near its twin; names the worst one.
inline ::testing::AssertionResult AllNear(std::span<const double> actual, std::span<const double> expected,
                                          double tolerance, double scale = 1.0) {
  if (actual.size() != expected.size()) {
    return ::testing::AssertionFailure() << actual.size() << " values, not " << expected.size();
  }
  std::size_t worst = 0;
  double worstDifference = -1.0;
  for (std::size_t i = 0; i < actual.size(); ++i) {
    const double size = std::max(scale, std::abs(expected[i]));
    const double difference = std::abs(actual[i] - expected[i]) / size;
    if (difference > worstDifference || std::isnan(difference)) {
      worst = i;
      worstDifference = difference;
    }
    if (std::isnan(difference)) break;
  }
  if (worstDifference <= tolerance) return ::testing::AssertionSuccess();
  return Near(actual[worst], expected[worst], tolerance, scale) << " at index " << worst;
}

}  // namespace texturon
