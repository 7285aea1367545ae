// SPDX-License-Identifier: Apache-2.0

#include "presentation/curve_readouts.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "base/charset.h"
#include "presentation/motif_plot.h"
#include "support/golden.h"

namespace texturon {
namespace {

// One line a readout; the numbers follow from the heights by hand.
TEST(CurveReadouts, SayWhatStandsAtTheCursors) {
  Document document = MakeDocument();
  std::string text;
  const auto say = [&text](const std::string& line) { text += line + "\n"; };
  say(BearingReadout(document, 40.0, 1.0));
  say(MotifReadout(document));
  // Point i of ten has the ratio 10 i %.
  document.results.roughnessCurve.heightsUM = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
  document.results.primaryCurve.heightsUM = {1, 0, -1, -2};
  for (const std::int32_t type : {-1, 0, 1, 2, 3, 4, 5, 6}) {
    document.settings.display.BrcAdfType = type;
    const BearingChoice choice = BearingChoiceOf(document.settings.display);
    text += choice.showsRatios ? choice.showsAmplitudes ? "both: " : "ratios: " : "amplitudes: ";
    say(BearingReadout(document, 50.0, 0.5));
  }
  say(BearingReadout(document, 140.0, -1.0));
  document.settings.display.Metric = false;
  say(BearingReadout(document, 50.0, 0.0));
  document.settings.display.Metric = true;
  document.profiles.spectrum = {.valid = true, .amplitudeUM = {0.0, 0.25, 0.5}, .wavelengthMM = {4.0, 4.0, 2.0}};
  say(SpectrumReadout(document, 2));
  say(SpectrumReadout(document, 3));
  document.results.probability = {
      .plateau = ProbabilityLine{-0.25, 1.0}, .valley = ProbabilityLine{-1.5, 2.0}, .crossingPercent = 81.25};
  for (const std::string& line : ProbabilityTexts(document)) say(line);
  document.profiles.primaryRange = IndexRange{};
  document.profiles.residualSpacingUM = 10.0;
  document.profiles.roughnessMotifs = {{100, 110, 130}, {130, 150, 160}};
  say(MotifReadout(document));
  document.settings.analysis.MotifWProfile = true;
  say(MotifReadout(document));
  EXPECT_TRUE(MatchesGolden("presentation/curve_readouts.txt", Utf8FromWindows1252(text)));
}

TEST(CurveReadouts, TheNearestHarmonicIsTheNearestOfAll) {
  Spectrum spectrum;
  EXPECT_FALSE(NearestHarmonic(spectrum, 1.0));
  for (int k = 0; k < 200; ++k) spectrum.wavelengthMM.push_back(8.0 / std::max(k, 1));
  EXPECT_FALSE(NearestHarmonic(spectrum, 0.0));
  for (double wavelength = 0.01; wavelength < 20.0; wavelength *= 1.013) {
    std::size_t nearest = 1;
    const auto distance = [&](std::size_t k) { return std::abs(std::log(spectrum.wavelengthMM[k] / wavelength)); };
    for (std::size_t k = 2; k < 200; ++k) {
      if (distance(k) < distance(nearest)) nearest = k;
    }
    EXPECT_EQ(NearestHarmonic(spectrum, wavelength), nearest) << wavelength;
  }
}

/// A record of hills of 1 um, ten points each, with one high peak and one deep dale.
Document Hills(std::int32_t count) {
  Document document = MakeDocument();
  std::vector<double> heights(static_cast<std::size_t>(count) * 10 + 1);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = i % 10 == 0 ? 1.0 : i % 10 == 5 ? 0.0 : 0.5;
  heights[heights.size() / 3 / 10 * 10] = 7.0;
  heights[heights.size() / 2 / 10 * 10 + 5] = -7.0;
  document.profiles = MakeProfileSet(heights, 100.0);
  document.profiles.primary.assign(heights.begin(), heights.end());
  document.profiles.primaryRange = IndexRange::FromCount(0, count * 10 + 1);
  for (std::int32_t k = 0; k < count; ++k) {
    const auto at = [&](std::int32_t i) { return heights[static_cast<std::size_t>(i)]; };
    const std::int32_t peak = 10 * k;
    document.profiles.roughnessMotifs.push_back(
        {peak, peak + 5, peak + 10, at(peak) - at(peak + 5), at(peak + 10) - at(peak + 5)});
  }
  return document;
}

TEST(MotifPlot, KeepsPeaksAndDalesHoweverFewItsColumns) {
  const Document document = Hills(10'000);
  const MotifPlot plot = MotifPlotOf(document, 0.0, 1e4, 300);
  EXPECT_TRUE(plot.isThinned);
  for (const MotifPlot::Line* const each : {&plot.profile, &plot.roughness, &plot.envelope}) {
    const MotifPlot::Line& line = *each;
    EXPECT_LE(line.size(), 602U);
    EXPECT_TRUE(std::ranges::is_sorted(line, {}, &MotifPlot::Line::value_type::xMM));
    const auto [lowest, highest] = std::ranges::minmax(line, {}, &MotifPlot::Line::value_type::zUM);
    EXPECT_EQ(lowest.zUM, each == &plot.envelope ? 1.0 : -7.0);
    EXPECT_EQ(highest.zUM, 7.0);
    EXPECT_EQ(line.front().xMM, 0.0);
    EXPECT_NEAR(line.back().xMM, 10'000.0, 1e-9);
  }
}

TEST(MotifPlot, AStretchHoldsTheMotifsThatReachIntoIt) {
  const MotifPlot plot = MotifPlotOf(Hills(10'000), 100.25, 103.75, 300);
  EXPECT_FALSE(plot.isThinned);
  ASSERT_EQ(plot.profile.size(), 37U) << "samples 1002 to 1038";
  EXPECT_NEAR(plot.profile.front().xMM, 100.2, 1e-9);
  ASSERT_EQ(plot.roughness.size(), 9U) << "four motifs";
  EXPECT_NEAR(plot.roughness[1].xMM, 100.5, 1e-9);
  EXPECT_EQ(plot.envelope.size(), 5U);
  EXPECT_TRUE(plot.waviness.empty());
  EXPECT_TRUE(MotifPlotOf(MakeDocument(), 0.0, 1.0, 300).profile.empty());
}

}  // namespace
}  // namespace texturon
