#include "signal/sort_descending.h"

#include <algorithm>
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
  std::vector<double> equal(5000, -2.5);
  SortDescending(equal);
  EXPECT_EQ(equal, std::vector<double>(5000, -2.5));
}

}  // namespace
}  // namespace texturon
