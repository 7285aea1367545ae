// SPDX-License-Identifier: Apache-2.0

#include "signal/nth_smallest.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <vector>

namespace texturon {
namespace {

/// Also where the sample misleads: long runs of equal values, values in order, and all of a sample's places alike.
TEST(NthSmallest, IsThatOfTheSortedValues) {
  std::mt19937_64 random(7);
  std::normal_distribution<double> noise;
  for (const std::size_t n : std::initializer_list<std::size_t>{1, 2, 1000, 5000, 8192, 32'768, 50'001, 131'072}) {
    for (int kind = 0; kind < 5; ++kind) {
      std::vector<double> values(n);
      for (std::size_t i = 0; i < n; ++i) {
        const double x = std::abs(noise(random));
        const bool isSampled = n >= 4096 && i % (n / 4096) == 0;
        const double kinds[] = {x, 1.0, std::floor(3.0 * x), static_cast<double>(i), isSampled ? -1.0 : x};
        values[i] = kinds[kind];
      }
      std::vector<double> sorted = values;
      std::sort(sorted.begin(), sorted.end());
      for (const std::size_t rank : {std::size_t{0}, n / 100, n / 2, n - 1}) {
        std::vector<double> scratch = values;
        EXPECT_EQ(NthSmallest(scratch, rank), sorted[rank]) << n << " values of kind " << kind << ", rank " << rank;
      }
      const double median = n % 2 == 1 ? sorted[n / 2] : 0.5 * (sorted[n / 2 - 1] + sorted[n / 2]);
      for (const double guess : {median, 0.0, 0.8 * median, 2.0 * median, -1e300}) {
        for (const double aside : {0.1 * guess, 1e-3, 0.0}) {
          std::vector<double> scratch = values;
          EXPECT_EQ(MedianNear(scratch, guess, aside), median) << n << " values of kind " << kind << ", " << guess;
        }
      }
      EXPECT_EQ(Median(values), median) << n << " values of kind " << kind;
    }
  }
}

}  // namespace
}  // namespace texturon
