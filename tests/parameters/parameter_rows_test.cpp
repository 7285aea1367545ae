// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "parameters/suffix_table.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

TEST(HeightRows, MatchHandComputedValues) {
  struct Case {
    std::vector<double> heights;
    double samplingLength;  // in points
    const char* suffixes;
    std::vector<double> values;
  };
  const double q = std::sqrt(40.0 / 5.0);
  const double none = std::nan("");
  const double endless = std::numeric_limits<double>::infinity();
  // One sampling length with two peaks and four valleys: both peaks and the two deepest valleys count. Seven of each:
  // the five largest.
  std::vector<double> seven;
  for (int i = 1; i <= 7; ++i) seven.insert(seven.end(), {1.0 * i, -10.0 * i});
  const Case cases[] = {
      {{3, -1, 2, 1, -5}, 800, "t p v a q sk ku", {8, 3, 5, 2.4, q, -90.0 / (5.0 * q * q * q), 724.0 / 320.0}},
      {{}, 800, "t p v a q sk ku", {none, none, none, none, none, none, none}},
      {{4}, 50, "t v max", {0, -4, none}},
      {{0, 0, 0}, 800, "sk ku", {0, 0}},
      // Four points a sampling length, two of them, one point left over that would change everything.
      {{1, -2, 0.5, 0, 4, -1, 3, -0.5, 100},
       4,
       "zDIN zi max y z1max pm vm zJIS",
       {4, 4, 5, 5, 5, 2.5, 1.5, (3.0 + 4.25) / 2.0}},
      // A short profile is one sampling length, unless two points of it are missing.
      {{1, -1, 2}, 50, "zDIN zi max y z1max zJIS 3z pm/3z", {3, 3, 3, 3, 3, none, none, none}},
      {{1, -1, 2}, 1.9, "zDIN", {none}},
      {{1, -1, 2}, 0.0, "zDIN", {none}},
      {{1, -1, 2}, none, "zDIN", {none}},
      {{1, -1, 2}, endless, "max", {3}},
      {{3, -1, 0, -4, 5, -2, 0, -3}, 8, "zJIS", {(8.0 + 7.0) / 2.0}},
      {{1, 2, 1, 2}, 4, "zJIS", {0}},
      {seven, 14, "zJIS", {(25.0 + 250.0) / 5.0}},
      // The third of peaks 5, 4, 3 and of valleys 1, 2, 3 deep; the last point of the first sampling length is a valley
      // because its neighbour in the next one is higher.
      {{0, 5, -1, 4, -2, 3, -3, 0, 0, 0, 0, 0, 0, 0}, 7, "3z pm/3z", {4, 2.5 / 4.0}},
      {{0, 5, 5, -1, 4, 4, -2, 3, 3, -3, 2, 2, -1, 0}, 14, "3z", {none}},
      {{0, 5, -1, 4, -2, 3, -3, 0}, 8, "3z", {4}},
      {{0, 5, -1, 4, -2, 3, 0, 0}, 8, "3z", {none}},
  };
  for (const Case& c : cases) {
    std::istringstream suffixes(c.suffixes);
    for (const double expected : c.values) {
      std::string suffix;
      suffixes >> suffix;
      const auto actual =
          RowValue(suffix, {.heights = c.heights, .spacingMM = 1.0, .samplingLengthMM = c.samplingLength});
      EXPECT_TRUE(Near(actual.value_or(none), expected, 1e-12)) << suffix << " of " << c.heights.size() << " points";
    }
  }
}

TEST(ElementRows, TakeThePercentagesOfTheirLetterAndSpacingsInMillimetres) {
  // Waves of 20 points, every second one small: dropped by a height percentage above theirs.
  std::vector<double> heights;
  for (int i = 0; i < 2000; ++i) {
    const double size = (i / 20) % 2 == 0 ? 5.0 : 0.5;
    heights.push_back(-size * std::sin(2.0 * std::numbers::pi * (i + 0.5) / 20.0));
  }
  AnalysisSettings settings;
  settings.RcRzPercent = 20.0;   // roughness: both kinds of row
  settings.RsmRzPercent = 99.0;  // plays no part
  settings.PsmPzPercent = 1.0;
  settings.WsmWzPercent = 20.0;
  settings.WcWzPercent = 1.0;
  struct Case {
    char letter;
    std::string_view suffix;
    double value;
  };
  const double large = 10.0 * std::sin(2.0 * std::numbers::pi * 4.5 / 20.0);
  const Case cases[] = {
      {'R', "sm", 0.04},  {'W', "sm", 0.04},        {'P', "sm", 0.02}, {'R', "c", large},
      {'R', "tc", large}, {'W', "c", 0.55 * large},  // every wave counts: the hill of one and the dale of the next
  };
  for (const Case& c : cases) {
    const ParameterProfile profile(c.letter, heights, {1.0, 0.4, 0.4});
    const auto value = FindSuffix(c.suffix)->routine({profile, settings});
    ASSERT_TRUE(value.has_value()) << c.letter << c.suffix;
    EXPECT_TRUE(Near(*value, c.value, 1e-9)) << c.letter << c.suffix;
  }
}

}  // namespace
}  // namespace texturon
