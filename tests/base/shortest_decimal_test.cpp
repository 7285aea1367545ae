// SPDX-License-Identifier: Apache-2.0

#include "base/shortest_decimal.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

namespace texturon {
namespace {

/// Numbers of all digits, of few, powers of two, whose lower neighbours are nearer, and what lies beside them.
TEST(ShortestDecimal, IsWhatTheLibraryWrites) {
  std::mt19937_64 random(9);
  int taken = 0;
  for (int i = 0; i < 400'000; ++i) {
    const auto places = static_cast<std::uint64_t>(1023 - 16 + static_cast<int>(random() % 68));
    const double any = std::bit_cast<double>((random() & ~(std::uint64_t{0x7FF} << 52)) | places << 52);
    const double power = std::ldexp(1.0, static_cast<int>(random() % 68) - 16);
    const double kinds[] = {any, static_cast<double>(random() % 100'000'000) / 1e6 - 50.0, power,
                            std::nextafter(power, i % 2 == 0 ? 0.0 : 1e300), std::round(any * 1000.0) / 1000.0};
    const double value = kinds[i % 5];
    char text[kRoomForShortestDecimal];
    const std::size_t length = WriteShortestDecimal(value, text);
    const bool isLeftOut = !(std::abs(value) >= 1e-4 && std::abs(value) < 1e15) || value == std::trunc(value);
    if (length == 0 || isLeftOut) {
      ASSERT_EQ(length, 0U) << value;
      continue;
    }
    ++taken;
    char expected[400];
    const auto end = std::to_chars(std::begin(expected), std::end(expected), value).ptr;
    ASSERT_EQ(std::string_view(text, length), std::string_view(expected, static_cast<std::size_t>(end - expected)));
  }
  EXPECT_GT(taken, 200'000);
  char text[kRoomForShortestDecimal];
  for (const double value : {0.0, std::nan(""), -HUGE_VAL, 5e-324, 0.0001, 3.0}) {
    EXPECT_EQ(WriteShortestDecimal(value, text), 0U) << value;
  }
}

}  // namespace
}  // namespace texturon
