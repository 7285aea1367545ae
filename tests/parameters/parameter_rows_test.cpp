// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include "parameters/suffix_table.h"
#include "support/near.h"

namespace texturon {
namespace {

/// One row computed on heights given outright.
std::optional<double> Value(std::string_view suffix, const std::vector<double>& heights, double spacingMM = 0.001,
                            double samplingLengthMM = 0.8, char letter = 'R') {
  const ParameterProfile profile(letter, heights, {spacingMM * 1000.0, samplingLengthMM, samplingLengthMM});
  const AnalysisSettings settings;
  return FindSuffix(suffix)->routine({profile, settings});
}

constexpr double kTight = 1e-12;

struct Expectation {
  std::string_view suffix;
  double value;
};

TEST(AmplitudeRows, MatchHandComputedValues) {
  const std::vector<double> heights = {3.0, -1.0, 2.0, -5.0, 1.0};
  const double q = std::sqrt(40.0 / 5.0);
  const Expectation cases[] = {
      {"t", 8.0},
      {"p", 3.0},
      {"v", 5.0},
      {"a", 12.0 / 5.0},
      {"q", q},
      {"sk", (27.0 - 1.0 + 8.0 - 125.0 + 1.0) / (5.0 * q * q * q)},
      {"ku", (81.0 + 1.0 + 16.0 + 625.0 + 1.0) / (5.0 * 64.0)},
  };
  for (const auto& c : cases) EXPECT_TRUE(Near(Value(c.suffix, heights).value(), c.value, kTight)) << c.suffix;
}

TEST(AmplitudeRows, HaveTheirFallBacksOnOneEqualAndNoPoints) {
  for (const std::string_view suffix : {"t", "p", "v", "a", "q", "sk", "ku"}) {
    EXPECT_FALSE(Value(suffix, {}).has_value()) << suffix;
  }
  EXPECT_EQ(Value("t", {4.0}), 0.0);
  EXPECT_EQ(Value("v", {4.0}), -4.0);
  EXPECT_EQ(Value("sk", std::vector<double>(60, 0.0)), 0.0);
  EXPECT_EQ(Value("ku", std::vector<double>(60, 0.0)), 0.0);
}

TEST(SamplingLengthRows, UseWholeSamplingLengthsOnly) {
  // Four points a sampling length, two of them, one point left over that would change everything.
  const std::vector<double> heights = {1.0, -2.0, 0.5, 0.0, 4.0, -1.0, 3.0, -0.5, 100.0};
  const Expectation cases[] = {
      {"zDIN", 4.0},
      {"zi", 4.0},
      {"max", 5.0},
      {"y", 5.0},
      {"z1max", 5.0},
      {"pm", 2.5},
      {"vm", 1.5},
      // One pair in the first (1 + 2), two in the second (4 + 3 + 1 + 0.5) / 2.
      {"zJIS", (3.0 + 4.25) / 2.0},
  };
  for (const auto& c : cases) {
    EXPECT_TRUE(Near(Value(c.suffix, heights, 1.0, 4.0).value(), c.value, kTight)) << c.suffix;
  }
}

TEST(SamplingLengthRows, DecideWhatAShortProfileMeans) {
  const std::vector<double> heights = {1.0, -1.0, 2.0};
  for (const std::string_view suffix : {"zDIN", "zi", "max", "y", "z1max"}) {
    EXPECT_EQ(Value(suffix, heights, 1.0, 50.0), 3.0) << suffix;
  }
  for (const std::string_view suffix : {"zJIS", "3z", "pm/3z"}) {
    EXPECT_FALSE(Value(suffix, heights, 1.0, 50.0).has_value()) << suffix;
  }
  for (const double length : {1.9, 0.0, -3.0, std::nan("")}) {
    EXPECT_FALSE(Value("zDIN", heights, 1.0, length).has_value()) << length;
  }
  EXPECT_EQ(Value("max", heights, 1.0, std::numeric_limits<double>::infinity()), 3.0);
  EXPECT_FALSE(Value("max", {1.0}, 1.0, 50.0).has_value());
}

TEST(TenPointHeight, TakesAsManyPeaksAsValleysAndSkipsOneSidedSamplingLengths) {
  // Two peaks and four valleys: both peaks and the two deepest valleys.
  const std::vector<double> heights = {3.0, -1.0, 0.0, -4.0, 5.0, -2.0, 0.0, -3.0};
  EXPECT_TRUE(Near(Value("zJIS", heights, 1.0, 8.0).value(), (8.0 + 7.0) / 2.0, kTight));
  EXPECT_EQ(Value("zJIS", {1.0, 2.0, 1.0, 2.0}, 1.0, 4.0), 0.0);
  // Seven alternating peaks and valleys: the five largest of each.
  std::vector<double> many;
  for (int i = 1; i <= 7; ++i) {
    many.push_back(i);
    many.push_back(-10.0 * i);
  }
  EXPECT_TRUE(Near(Value("zJIS", many, 1.0, 14.0).value(), (25.0 + 250.0) / 5.0, kTight));
}

TEST(ThirdPointHeight, SeesNeighboursAcrossSamplingLengthsAndIsStrict) {
  // Peaks 5, 4, 3 and valleys 1, 2, 3 deep; the last point of the sampling length is a valley because its neighbour in
  // the next one is higher.
  const std::vector<double> heights = {0.0, 5.0, -1.0, 4.0, -2.0, 3.0, -3.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  EXPECT_TRUE(Near(Value("3z", heights, 1.0, 7.0).value(), 3.0 + 1.0, kTight));
  EXPECT_TRUE(Near(Value("pm/3z", heights, 1.0, 7.0).value(), (5.0 + 0.0) / 2.0 / 4.0, kTight));
  const std::vector<double> plateaus = {0, 5, 5, -1, 4, 4, -2, 3, 3, -3, 2, 2, -1, 0};
  EXPECT_FALSE(Value("3z", plateaus, 1.0, 14.0).has_value());
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
