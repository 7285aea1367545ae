// SPDX-License-Identifier: Apache-2.0

#include "base/fixed_decimal.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

namespace texturon {
namespace {

/// Numbers of all sizes, halves of the last decimal that a double holds exactly, and what lies beside a rounding.
TEST(FixedDecimal, IsWhatTheLibraryWrites) {
  std::mt19937_64 random(11);
  int taken = 0;
  for (int i = 0; i < 400'000; ++i) {
    const int decimals = static_cast<int>(random() % 11);
    const double any = std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 160) - 20);
    const double half = static_cast<double>(random() % 100'000) / 64.0;
    const double kinds[] = {any, -any, half, -half, std::nextafter(std::round(any * 1e6) / 1e6 + 5e-7, i % 2 * 1e300)};
    const double value = kinds[i % 5];
    char text[kRoomForFixedDecimal];
    const std::size_t length = WriteFixedDecimal(value, decimals, text);
    if (decimals > 9 || std::abs(value) >= 1 << 30) {
      ASSERT_EQ(length, 0U) << value;
      continue;
    }
    ++taken;
    char expected[400];
    const auto end =
        std::to_chars(std::begin(expected), std::end(expected), value, std::chars_format::fixed, decimals).ptr;
    ASSERT_EQ(std::string_view(text, length), std::string_view(expected, static_cast<std::size_t>(end - expected)));
  }
  EXPECT_GT(taken, 200'000);
}

/// Signs of zeros, the least number, the largest one that is taken, and those that are left to the library.
TEST(FixedDecimal, AtTheEdges) {
  const auto written = [](double value, int decimals) {
    char text[kRoomForFixedDecimal];
    return std::string(text, WriteFixedDecimal(value, decimals, text));
  };
  EXPECT_EQ(written(-0.0, 2) + ' ' + written(5e-324, 1) + ' ' + written(-1e-30, 3) + ' ' + written(0.0, 0),
            "-0.00 0.0 -0.000 0");
  EXPECT_EQ(written(std::nextafter(1 << 30, 0.0), 9), "1073741823.999999881");
  EXPECT_EQ(written(2.5, 0) + ' ' + written(3.5, 0) + ' ' + written(0.5, 0), "2 4 0");
  EXPECT_EQ(written(1 << 30, 0) + written(std::nan(""), 2) + written(HUGE_VAL, 2) + written(1.0, -1), "");
}

}  // namespace
}  // namespace texturon
