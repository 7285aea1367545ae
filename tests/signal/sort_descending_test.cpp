// SPDX-License-Identifier: Apache-2.0

#include "signal/sort_descending.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace texturon {
namespace {

TEST(SortDescending, OrdersWhateverTheValuesCrowdInto) {
  // From the plain to the awkward: bells, steps with zeros of both signs, a crowd beside a far point, two crowds.
  std::mt19937_64 random(3);
  std::normal_distribution<double> bell;
  const std::function<double(std::size_t)> shapes[] = {
      [&](std::size_t) { return bell(random); },
      [&](std::size_t i) { return i % 3 == 0 ? -0.0 : std::round(bell(random)); },
      [&](std::size_t i) { return i == 777 ? -1e9 : bell(random) * 1e-3; },
      [&](std::size_t i) { return i % 2 == 0 ? 1e5 + bell(random) : bell(random) * 1e-9; },
      [&](std::size_t i) { return i % 100 == 0 ? 1e300 * bell(random) : bell(random); },
      [&](std::size_t i) { return std::ldexp(bell(random), static_cast<int>(i % 75) - 37); },
      [&](std::size_t i) { return i == 5 ? std::numeric_limits<double>::infinity() : bell(random); },
  };
  for (const auto& shape : shapes) {
    for (const std::size_t n : {0u, 1u, 7u, 4095u, 4096u, 60'000u}) {
      std::vector<double> values(n);
      for (std::size_t i = 0; i < n; ++i) values[i] = shape(i);
      std::vector<double> expected = values;
      std::sort(expected.begin(), expected.end(),
                [](double a, double b) { return a != b ? a > b : !std::signbit(a) && std::signbit(b); });
      SortDescending(values);
      EXPECT_TRUE(std::equal(values.begin(), values.end(), expected.begin(),
                             [](double a, double b) { return a == b && std::signbit(a) == std::signbit(b); }))
          << &shape - shapes << " of " << n;
    }
  }
  std::vector<double> equal(5000, -2.5);
  SortDescending(equal);
  EXPECT_EQ(equal, std::vector<double>(5000, -2.5));
}

}  // namespace
}  // namespace texturon
