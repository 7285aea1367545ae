// SPDX-License-Identifier: Apache-2.0

#include "parameters/window_rows.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <vector>

#include "parameters/swept_windows.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

constexpr double kTight = 1e-12;
constexpr double kMinutes = 180.0 / std::numbers::pi * 60.0;

TEST(SweptWindows, CombineEveryWindowWholeAndInOrder) {
  for (const std::size_t n : {1u, 2u, 5u, 6u, 7u, 23u}) {
    for (std::size_t width = 1; width <= n + 1; ++width) {
      std::size_t next = 0;
      // Joining texts shows the order as well as the elements.
      SweepWindows(
          n, width, [](std::size_t i, std::size_t) { return std::string(1, static_cast<char>('a' + i)); },
          [](const std::string& a, const std::string& b) { return a + b; },
          [&](std::size_t first, const std::string& joined) {
            EXPECT_EQ(first, next++);
            std::string expected;
            for (std::size_t i = first; i < first + width; ++i) expected += static_cast<char>('a' + i);
            EXPECT_EQ(joined, expected) << n << " points, width " << width;
          });
      EXPECT_EQ(next, width <= n ? n - width + 1 : 0);
    }
  }
}

/// Largest of `value(first)` over all windows, the first of equals.
template <typename Value>
std::pair<double, std::size_t> BruteForce(std::size_t n, std::size_t width, const Value& value) {
  double greatest = -1.0;
  std::size_t at = 0;
  for (std::size_t first = 0; first + width <= n; ++first) {
    if (value(first) > greatest) {
      greatest = value(first);
      at = first;
    }
  }
  return {greatest, at};
}

TEST(WindowRows, AgreeWithWindowsAddedUpOneByOne) {
  constexpr std::size_t kPoints = 900;
  RowCase row{.heights = RandomSurface(kPoints, 6), .spacingMM = 0.002, .samplingLengthMM = 0.1};
  row.settings.WindowWidthForWseg = 0.25;
  row.settings.AsphereSlopeWindowMM = 0.081;  // 40.5 steps, rounded to 41
  row.heights[700] = 1e9;                     // windows that left it behind must not remember it
  row.heights[20] = 40.0;
  const std::vector<double>& z = row.heights;
  const auto meanOf = [&z](std::size_t width) {
    return [&z, width](std::size_t first) {
      long double sum = 0.0L;
      for (std::size_t i = first; i < first + width; ++i) sum += std::abs(z[i]);
      return static_cast<double>(sum / static_cast<long double>(width));
    };
  };
  const auto peaks = [&z](std::size_t first) {
    double sum = 0.0;
    for (std::size_t k = 0; k < 7; ++k) {
      const auto begin = z.begin() + static_cast<std::ptrdiff_t>(first + 50 * k);
      sum += *std::max_element(begin, begin + 50) / 7.0;
    }
    return sum;
  };
  const auto range = [&z](std::size_t first) {
    const auto begin = z.begin() + static_cast<std::ptrdiff_t>(first);
    return *std::max_element(begin, begin + 126) - *std::min_element(begin, begin + 126);
  };
  const auto line = [&z](std::size_t first) {
    long double sxz = 0.0L, sxx = 0.0L;
    for (int k = 0; k < 42; ++k) {
      const long double x = k - 20.5L;
      sxz += x * z[first + static_cast<std::size_t>(k)];
      sxx += x * x;
    }
    return std::abs(static_cast<double>(sxz / sxx)) / 2.0;
  };
  const auto chord = [&z](std::size_t first) { return std::abs(z[first + 41] - z[first]) / (41 * 2.0); };
  for (const bool withSpike : {true, false}) {
    if (!withSpike) row.heights[700] = 0.5;
    const auto check = [&row](const char* value, const char* place, std::pair<double, std::size_t> expected,
                              std::size_t width, bool isAngle) {
      const double shown = isAngle ? std::atan(expected.first) * kMinutes : expected.first;
      EXPECT_TRUE(Near(*RowValue(value, row), shown, kTight, 1e-6)) << value;
      const double middle = (static_cast<double>(expected.second) + 0.5 * static_cast<double>(width - 1)) * 0.002;
      EXPECT_TRUE(Near(*RowValue(place, row), middle, kTight)) << place;
    };
    check("a1", "a1l", BruteForce(kPoints, 50, meanOf(50)), 50, false);
    check("a7", "a7l", BruteForce(kPoints, 350, meanOf(350)), 350, false);
    check("pm7", "pm7l", BruteForce(kPoints, 350, peaks), 350, false);
    check("seg", "segl", BruteForce(kPoints, 126, range), 126, false);
    check("lslp", "lslpl", BruteForce(kPoints, 42, line), 42, true);
    check("eslp", "eslpl", BruteForce(kPoints, 42, chord), 42, true);
  }
}

TEST(WindowRows, RoundHalfAStepAwayFromZero) {
  // 0.7 mm are exactly 437.5 steps of 1.6 um and 2187.5 of 0.32 um, though not in binary fractions of a millimetre.
  struct Case {
    double spacingUM;
    std::size_t steps;
  };
  for (const auto& [spacingUM, steps] : {Case{1.6, 438}, Case{0.32, 2188}, Case{1.0, 700}}) {
    RowCase row{.heights = {}, .letter = 'W', .spacingMM = spacingUM / 1000.0};
    for (int i = 0; i < 3000; ++i) row.heights.push_back(i);
    row.settings.WindowWidthForWseg = row.settings.AsphereSlopeWindowMM = row.settings.WxpEndRegionsMM = 0.7;
    const auto length = static_cast<double>(steps);
    EXPECT_EQ(*RowValue("seg", row), length) << spacingUM;
    EXPECT_EQ(*RowValue("pl", row), length - 1.0) << spacingUM << ": as many points";
    EXPECT_TRUE(Near(*RowValue("eslpl", row), 0.5 * length * row.spacingMM, kTight)) << spacingUM;
  }
}

TEST(WindowRows, FailWhenTheWindowDoesNotFit) {
  RowCase row{.heights = RandomSurface(300, 2), .spacingMM = 0.001, .samplingLengthMM = 0.05};
  EXPECT_TRUE(RowValue("a1", row) && !RowValue("a7", row) && !RowValue("a7l", row) && !RowValue("pm7", row));
  const double lengths[] = {0.0, -1.0, 0.0004, 0.3, 1e300, std::numeric_limits<double>::infinity(), std::nan("")};
  for (const double length : lengths) {
    row.settings.WindowWidthForWseg = length;
    row.settings.AsphereSlopeWindowMM = length;
    row.settings.WxpEndRegionsMM = length;
    for (const char* suffix : {"seg", "segl", "lslp", "lslpl", "eslp", "eslpl"}) {
      EXPECT_FALSE(RowValue(suffix, row).has_value()) << suffix << " " << length;
    }
    EXPECT_EQ(RowValue("pl", row).has_value(), length > 0.0) << length;
    EXPECT_EQ(RowValue("pr", row).has_value(), length > 0.0) << length;
  }
  row.settings.WindowWidthForWseg = 0.299;
  EXPECT_EQ(*RowValue("seg", row), *RowValue("t", row)) << "a window as long as the profile";
  row.settings.WxpEndRegionsMM = 0.0004;
  EXPECT_EQ(*RowValue("pl", row), row.heights.front());
  EXPECT_EQ(*RowValue("pr", row), row.heights.back());
}

}  // namespace
}  // namespace texturon
