// SPDX-License-Identifier: Apache-2.0

#include "analysis/acceptance.h"

#include <cmath>
#include <gtest/gtest.h>

namespace texturon {
namespace {

constexpr Tolerance kUpToTen = {.toleranced = true, .upperLimit = 10.0};
constexpr Tolerance kFourToTen = {.toleranced = true, .bilateral = true, .upperLimit = 10.0, .lowerLimit = 4.0};

ValueSeries Series(std::size_t inside, std::size_t beyond) {
  ValueSeries values(inside, 9.0);
  values.resize(inside + beyond, 11.0);
  return values;
}

/// Values that are inside but for those at these places.
ValueSeries BeyondAt(std::size_t count, const std::vector<std::size_t>& places) {
  ValueSeries values(count, 9.0);
  for (const std::size_t place : places) values[place] = 11.0;
  return values;
}

TEST(Acceptance, FollowsTheRules) {
  using enum AcceptanceRule;
  using enum Acceptance;
  const double nan = std::nan("");
  const struct {
    AcceptanceRule rule;
    Tolerance tolerance;
    ValueSeries values;
    Acceptance verdict;
    std::string_view by;
  } cases[] = {
      {kMaximum, kUpToTen, {10.0}, kPass, "maximum"},
      {kMaximum, kUpToTen, Series(20, 1), kFail, "maximum"},
      {kMaximum, kFourToTen, {9.0, 3.9}, kFail, "maximum"},
      {kMaximum, kUpToTen, {9.0, {}}, kUndecided, "a value is missing"},
      {kMaximum, kUpToTen, {11.0, {}}, kFail, "maximum"},
      {kMaximum, kUpToTen, {nan}, kFail, "maximum"},
      {kMaximum, kUpToTen, {{}, {}}, kUndecided, "no value"},
      {kMaximum, {.toleranced = true}, {9.0}, kPass, "no limit"},
      {k16Percent, kUpToTen, {7.0}, kPass, "short procedure"},
      {k16Percent, {.toleranced = true, .upperLimit = 3.0}, {2.1, 4.0}, kPass, "short procedure"},
      {k16Percent, kUpToTen, {7.1}, kUndecided, "fewer than three values"},
      {k16Percent, kUpToTen, {11.0, 11.0}, kUndecided, "fewer than three values"},
      {k16Percent, {.toleranced = true, .upperLimit = -1.0}, {-0.9}, kUndecided, "fewer than three values"},
      {k16Percent, kUpToTen, Series(3, 0), kPass, "share"},
      {k16Percent, kUpToTen, Series(3, 9), kPass, "short procedure"},      // none of the first three
      {k16Percent, kUpToTen, BeyondAt(6, {1}), kPass, "short procedure"},  // 16.7 %, one of six
      {k16Percent, kUpToTen, BeyondAt(6, {1, 4}), kFail, "share"},
      {k16Percent, kUpToTen, BeyondAt(12, {0, 4}), kPass, "short procedure"},
      {k16Percent, kUpToTen, BeyondAt(12, {0, 4, 5}), kFail, "share"},
      {k16Percent, kUpToTen, BeyondAt(25, {0, 1, 2, 3}), kPass, "share"},  // 16 % exactly
      {k16Percent, kUpToTen, BeyondAt(24, {0, 1, 2, 3}), kFail, "share"},
      {k16Percent, kFourToTen, {7.0, 3.0, 3.0}, kFail, "share"},  // the lower limit
      {kMedian, kUpToTen, {9.0, 9.0}, kUndecided, "fewer than three values"},
      {kMedian, kUpToTen, {30.0, 10.0, 2.0}, kPass, "median"},
      {kMedian, kUpToTen, {30.0, 10.5, 9.4, 2.0}, kPass, "median"},
      {kMedian, kUpToTen, {30.0, 11.5, 9.4, 2.0}, kFail, "median"},
      {kMedian, kUpToTen, {nan, nan, 2.0}, kFail, "median"},
      {kMedian, kFourToTen, {nan, 5.0, 3.0}, kFail, "median"},
  };
  for (const auto& [rule, tolerance, values, verdict, by] : cases) {
    const auto result = Accept(values, tolerance, rule);
    const auto number = &values - &cases[0].values;
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->verdict, verdict) << by << ", byte " << number;
    EXPECT_EQ(result->by, by);
  }
  EXPECT_FALSE(Accept(Series(1, 1), {.upperLimit = 1.0}, kMaximum)) << "not toleranced";
}

}  // namespace
}  // namespace texturon
