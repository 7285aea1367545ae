// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <utility>
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
    std::vector<std::pair<const char*, double>> rows;
  };
  const double q = std::sqrt(40.0 / 5.0);
  const double none = std::nan("");
  const double endless = std::numeric_limits<double>::infinity();
  // One sampling length with two peaks and four valleys: both peaks and the two deepest valleys count. Seven of each:
  // the five largest.
  std::vector<double> seven;
  for (int i = 1; i <= 7; ++i) seven.insert(seven.end(), {1.0 * i, -10.0 * i});
  const Case cases[] = {
      {{3, -1, 2, -5, 1},
       800,
       {{"t", 8.0},
        {"p", 3.0},
        {"v", 5.0},
        {"a", 12.0 / 5.0},
        {"q", q},
        {"sk", -90.0 / (5.0 * q * q * q)},
        {"ku", 724.0 / 320.0}}},
      {{}, 800, {{"t", none}, {"p", none}, {"v", none}, {"a", none}, {"q", none}, {"sk", none}, {"ku", none}}},
      {{4}, 50, {{"t", 0.0}, {"v", -4.0}, {"max", none}}},
      {{0, 0, 0}, 800, {{"sk", 0.0}, {"ku", 0.0}}},
      // Four points a sampling length, two of them, one point left over that would change everything.
      {{1, -2, 0.5, 0, 4, -1, 3, -0.5, 100},
       4,
       {{"zDIN", 4.0},
        {"zi", 4.0},
        {"max", 5.0},
        {"y", 5.0},
        {"z1max", 5.0},
        {"pm", 2.5},
        {"vm", 1.5},
        {"zJIS", (3.0 + 4.25) / 2.0}}},
      // A short profile is one sampling length, unless two points of it are missing.
      {{1, -1, 2},
       50,
       {{"zDIN", 3.0},
        {"zi", 3.0},
        {"max", 3.0},
        {"y", 3.0},
        {"z1max", 3.0},
        {"zJIS", none},
        {"3z", none},
        {"pm/3z", none}}},
      {{1, -1, 2}, 1.9, {{"zDIN", none}}},
      {{1, -1, 2}, 0.0, {{"zDIN", none}}},
      {{1, -1, 2}, none, {{"zDIN", none}}},
      {{1, -1, 2}, endless, {{"max", 3.0}}},
      {{3, -1, 0, -4, 5, -2, 0, -3}, 8, {{"zJIS", (8.0 + 7.0) / 2.0}}},
      {{1, 2, 1, 2}, 4, {{"zJIS", 0.0}}},
      {seven, 14, {{"zJIS", (25.0 + 250.0) / 5.0}}},
      // The third of peaks 5, 4, 3 and of valleys 1, 2, 3 deep; the last point of the first sampling length is a valley
      // because its neighbour in the next one is higher.
      {{0, 5, -1, 4, -2, 3, -3, 0, 0, 0, 0, 0, 0, 0}, 7, {{"3z", 3.0 + 1.0}, {"pm/3z", 2.5 / 4.0}}},
      {{0, 5, 5, -1, 4, 4, -2, 3, 3, -3, 2, 2, -1, 0}, 14, {{"3z", none}}},
      {{0, 5, -1, 4, -2, 3, -3, 0}, 8, {{"3z", 4.0}}},
      {{0, 5, -1, 4, -2, 3, 0, 0}, 8, {{"3z", none}}},
  };
  for (const Case& c : cases) {
    for (const auto& [suffix, value] : c.rows) {
      const auto actual =
          RowValue(suffix, {.heights = c.heights, .spacingMM = 1.0, .samplingLengthMM = c.samplingLength});
      EXPECT_TRUE(Near(actual.value_or(none), value, 1e-12)) << suffix << " of " << c.heights.size() << " points";
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
      {'R', "sm", 0.04}, {'W', "sm", 0.04}, {'P', "sm", 0.02}, {'R', "c", large}, {'R', "tc", large},
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
