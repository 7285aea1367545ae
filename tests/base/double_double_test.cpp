// SPDX-License-Identifier: Apache-2.0

#include "base/double_double.h"

#include <cmath>
#include <gtest/gtest.h>

namespace texturon {
namespace {

constexpr double kTolerance = 0x1p-100;

TEST(DoubleDouble, HoldsAnIntegerOf96BitsAndDividesItDownAgain) {
  DoubleDouble power = 1.0;
  for (int k = 0; k < 60; ++k) power *= 3.0;
  EXPECT_EQ(power.hi, 42391158275216203514294433201.0);
  EXPECT_EQ(power.lo, -6125652559.0);  // 3^60 less its nearest double, by integer arithmetic
  for (int k = 0; k < 60; ++k) power = power / 3.0;
  EXPECT_EQ(power.hi, 1.0);
  EXPECT_LT(std::abs(power.lo), 60 * kTolerance);
}

}  // namespace
}  // namespace texturon
