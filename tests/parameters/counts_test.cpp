// SPDX-License-Identifier: Apache-2.0

#include "parameters/counts.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

#include "parameters/letter_settings.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

TEST(CountRows, CountCrossingsWithTheirExactComparisons) {
  struct Case {
    std::vector<double> heights;
    double highSpots, valleys;  // of the levels 1 and -1
  };
  const Case cases[] = {
      {{2, 2, 2}, 1, 0},     {{-2, -2}, 0, 1},          {{1, 1}, 0, 0},          {{-1, -1}, 0, 0},
      {{0, 1, 0, 1}, 2, 0},  {{0, -1, 0, -1}, 0, 2},    {{2, 0, 2, 1, 2}, 2, 0}, {{1, 2, -2, -1, 0, -3}, 0, 2},
      {{0, 0.9, 0.9}, 0, 0}, {{5, -5, 5, -5, 5}, 3, 2},
  };
  for (const Case& c : cases) {
    for (const char letter : {'P', 'R'}) {
      RowCase row{.heights = c.heights, .letter = letter};
      (letter == 'P' ? row.settings.PrimaryHSCHeight : row.settings.RoughnessHSCHeight) = 1.0;
      (letter == 'P' ? row.settings.PrimaryVCHeight : row.settings.RoughnessVCHeight) = -1.0;
      EXPECT_EQ(RowValue("hsc", row), c.highSpots) << letter << " " << c.heights[0] << " " << c.heights[1];
      EXPECT_EQ(RowValue("vc", row), c.valleys) << letter << " " << c.heights[0] << " " << c.heights[1];
    }
  }
  EXPECT_FALSE(RowValue("hsc", {}).has_value());
  EXPECT_FALSE(RowValue("vc", {}).has_value());
  EXPECT_EQ(RowValue("pc", {}), 0.0);
}

TEST(CountRows, CountAPeakOnlyAfterAnEntryBelowTheBand) {
  const auto sine = [](double phase) {
    std::vector<double> z;
    for (int i = 0; i < 2001; ++i) z.push_back(std::sin(2.0 * std::numbers::pi * (i / 200.0 + phase)));
    return z;
  };
  // Ten periods over 2000 steps of 1 um: 2 mm. From just above the trough's lowest point the profile never enters the
  // first valley, and the first peak does not count.
  struct Case {
    double phase, band, peaks;
  };
  const Case cases[] = {{0.0, 1.0, 9}, {-0.25, 1.0, 9}, {0.25, 1.0, 10}, {0.5, 1.0, 10}, {0.0, 2.5, 0}, {0.0, 0.0, 9}};
  for (const Case& c : cases) {
    RowCase row{.heights = sine(c.phase)};
    row.settings.RoughnessPcLevel = c.band;
    const double peaks = RowValue("pc", row).value() * 0.2;
    EXPECT_TRUE(Near(peaks, c.peaks, 1e-9)) << c.phase << " " << c.band;
  }
  const RowCase startsInValley{.heights = {-1, 1, -1, 1, -1}, .spacingMM = 1.0};
  EXPECT_TRUE(Near(RowValue("pc", startsInValley).value(), 1.0 / 4.0 * 10.0, 1e-12));
  AnalysisSettings settings;
  settings.PrimaryPcLevel = 1.0;
  settings.RoughnessPcLevel = 2.0;
  settings.WavinessPcLevel = 3.0;
  EXPECT_EQ(settings.*SettingsOfLetter('P').peakBandUM, 1.0);
  EXPECT_EQ(settings.*SettingsOfLetter('R').peakBandUM, 2.0);
  EXPECT_EQ(settings.*SettingsOfLetter('F').peakBandUM, 3.0);
}

}  // namespace
}  // namespace texturon
