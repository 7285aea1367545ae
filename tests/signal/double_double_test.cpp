// SPDX-License-Identifier: Apache-2.0

#include "signal/double_double.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/near.h"

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

TEST(DoubleDouble, KeepsWhatADoubleDropsInASumAndAProduct) {
  const DoubleDouble small(0x1p-80);
  const DoubleDouble sum = DoubleDouble(1.0) + small;
  EXPECT_EQ((sum - DoubleDouble(1.0)).hi, 0x1p-80);
  EXPECT_EQ((-sum + DoubleDouble(1.0)).hi, -0x1p-80);
  // (1 + e)(1 - e) = 1 - e^2
  const DoubleDouble e(0x1p-40);
  EXPECT_EQ(((DoubleDouble(1.0) + e) * (DoubleDouble(1.0) - e) - DoubleDouble(1.0)).hi, -0x1p-80);
}

}  // namespace
}  // namespace texturon
