// SPDX-License-Identifier: Apache-2.0

#include "base/counter_random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <set>
#include <vector>

namespace texturon {
namespace {

// The bits were made by another program in whole numbers of any size, which also gives the published sequence from 0.
TEST(CounterRandom, IsTheSameEverywhereAndEvenlySpread) {
  const CounterRandom stream(1, 2, 3);
  EXPECT_EQ(stream.Bits(0), 0x214d4c07ecfeaac5u);
  EXPECT_EQ(stream.Bits(1), 0x6ff419cb83dfe1e6u);
  EXPECT_EQ(stream.Bits(1000), 0x2f00a3970810b74bu);
  std::vector<double> numbers(100'000);
  stream.FillUniform(numbers);
  std::array<int, 100> counts{};
  double lag = 0.0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    ASSERT_TRUE(numbers[i] > 0.0 && numbers[i] < 1.0);
    EXPECT_EQ(numbers[i], stream.Uniform(i));
    ++counts[static_cast<std::size_t>(numbers[i] * 100.0)];
    if (i > 0) lag += (numbers[i] - 0.5) * (numbers[i - 1] - 0.5);
  }
  double square = 0.0;
  for (const int count : counts) square += (count - 1000.0) * (count - 1000.0) / 1000.0;
  EXPECT_GT(square, 60.0);  // chi square of 99: beyond either end once in a thousand
  EXPECT_LT(square, 149.0);
  EXPECT_LT(std::abs(lag) / 1e5, 4.0 / 12.0 / std::sqrt(1e5));
}

TEST(CounterRandom, StreamsDoNotMeet) {
  std::set<std::uint64_t> seen;
  std::size_t made = 0;
  for (std::uint64_t seed = 0; seed < 4; ++seed) {
    for (std::uint64_t trial = 0; trial < 20; ++trial) {
      for (std::uint64_t line = 0; line < 12; ++line) {
        const CounterRandom stream(seed, trial, line);
        for (std::uint64_t i = 0; i < 20; ++i, ++made) seen.insert(stream.Bits(i));
      }
    }
  }
  EXPECT_EQ(seen.size(), made);
}

}  // namespace
}  // namespace texturon
