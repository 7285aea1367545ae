// SPDX-License-Identifier: Apache-2.0

#include "signal/sort_descending.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace texturon {
namespace {

TEST(SortDescending, OrdersAsAComparisonSort) {
  std::mt19937_64 random(11);
  std::uniform_int_distribution<int> exponent(-300, 300);
  std::normal_distribution<double> number;
  for (const std::size_t n : {0u, 1u, 7u, 4095u, 4096u, 50'000u}) {
    std::vector<double> values(n);
    for (double& value : values) value = std::ldexp(number(random), exponent(random) / 8);
    if (n > 10) {
      values[3] = values[5] = 0.0;
      values[4] = std::numeric_limits<double>::infinity();
      values[6] = -std::numeric_limits<double>::max();
      values[7] = std::numeric_limits<double>::denorm_min();
    }
    std::vector<double> expected = values;
    std::sort(expected.begin(), expected.end(), std::greater<>());
    SortDescending(values);
    EXPECT_EQ(values, expected) << n;
  }
}

TEST(SortDescending, OrdersWhateverTheValuesCrowdInto) {
  // From the plain to the awkward: bells, steps with zeros of both signs, a crowd beside a far point, two crowds.
  constexpr std::size_t kCount = 60'000;
  std::mt19937_64 random(3);
  std::normal_distribution<double> bell;
  const std::function<double(std::size_t)> shapes[] = {
      [&](std::size_t) { return bell(random); },
      [&](std::size_t i) { return i % 3 == 0 ? -0.0 : std::round(bell(random)); },
      [&](std::size_t i) { return i == 777 ? -1e9 : bell(random) * 1e-3; },
      [&](std::size_t i) { return i % 2 == 0 ? 1e5 + bell(random) : bell(random) * 1e-9; },
      [&](std::size_t i) { return i % 100 == 0 ? 1e300 * bell(random) : bell(random); },
      [&](std::size_t i) { return i == 5 ? std::numeric_limits<double>::infinity() : bell(random); },
  };
  for (const auto& shape : shapes) {
    std::vector<double> values(kCount);
    for (std::size_t i = 0; i < kCount; ++i) values[i] = shape(i);
    std::vector<double> expected = values;
    std::sort(expected.begin(), expected.end(),
              [](double a, double b) { return a != b ? a > b : !std::signbit(a) && std::signbit(b); });
    SortDescending(values);
    EXPECT_EQ(std::memcmp(values.data(), expected.data(), kCount * sizeof(double)), 0) << &shape - shapes;
  }
  std::vector<double> equal(5000, -2.5);
  SortDescending(equal);
  EXPECT_EQ(equal, std::vector<double>(5000, -2.5));
}

}  // namespace
}  // namespace texturon
