// SPDX-License-Identifier: Apache-2.0

#include "presentation/curve_readouts.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "presentation/motif_plot.h"

namespace texturon {
namespace {

TEST(CurveReadouts, BearingCurveAtTheCursors) {
  Document document = MakeDocument();
  EXPECT_EQ(BearingReadout(document, 40.0, 1.0), "") << "no curve";
  // Point i of ten has the ratio 10 i %.
  document.results.roughnessCurve.heightsUM = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
  document.results.primaryCurve.heightsUM = {1, 0, -1, -2};
  EXPECT_EQ(BearingReadout(document, 40.0, 2.5), "At 40.00 %: 5.0000 \xB5m    At 2.5000 \xB5m: 70.00 %");
  EXPECT_EQ(BearingReadout(document, 140.0, -1.0), "At 100.00 %: 0.0000 \xB5m    At -1.0000 \xB5m: 100.00 %");
  document.settings.display.BrcAdfType = 5;
  EXPECT_EQ(BearingReadout(document, 50.0, 0.0), "At 50.00 %: -1.0000 \xB5m    At 0.0000 \xB5m: 25.00 %");
  document.settings.display.Metric = false;
  EXPECT_EQ(BearingReadout(document, 50.0, 0.0), "At 50.00 %: -39.37 \xB5in    At 0.00 \xB5in: 25.00 %");
}

TEST(CurveReadouts, NumbersOfTheBearingViewHaveAMeaning) {
  struct Case {
    std::int32_t type;
    ProfileKind profile;
    bool ratios, amplitudes;
  };
  for (const Case& c : {Case{0, ProfileKind::kRoughness, true, false},
                        {1, ProfileKind::kRoughness, false, true},
                        {2, ProfileKind::kRoughness, true, true},
                        {3, ProfileKind::kPrimary, true, false},
                        {4, ProfileKind::kPrimary, false, true},
                        {5, ProfileKind::kPrimary, true, true},
                        {6, ProfileKind::kRoughness, true, true},
                        {-1, ProfileKind::kRoughness, true, true}}) {
    const BearingChoice choice = BearingChoiceOf({.BrcAdfType = c.type});
    EXPECT_EQ(choice.profile, c.profile) << c.type;
    EXPECT_EQ(choice.showsRatios, c.ratios) << c.type;
    EXPECT_EQ(choice.showsAmplitudes, c.amplitudes) << c.type;
  }
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

TEST(CurveReadouts, SpectrumProbabilityAndMotifs) {
  Document document = MakeDocument();
  document.profiles.spectrum = {.valid = true, .amplitudeUM = {0.0, 0.25, 0.5}, .wavelengthMM = {4.0, 4.0, 2.0}};
  EXPECT_EQ(SpectrumReadout(document, 2), "Harmonic 2: wavelength 2.0000 mm, amplitude 0.5000 \xB5m");
  EXPECT_EQ(SpectrumReadout(document, 3), "");
  EXPECT_TRUE(ProbabilityTexts(document).empty());
  document.results.probability = ProbabilityFit{.plateau = ProbabilityLine{-0.25, 1.0}};
  EXPECT_EQ(ProbabilityTexts(document), std::vector<std::string>{"Rpq = 0.2500 \xB5m"});
  document.results.probability->valley = ProbabilityLine{-1.5, 2.0};
  document.results.probability->crossingPercent = 81.25;
  EXPECT_EQ(ProbabilityTexts(document),
            (std::vector<std::string>{"Rpq = 0.2500 \xB5m", "Rvq = 1.5000 \xB5m", "Rmq = 81.25 %"}));
  EXPECT_EQ(MotifReadout(document), "");
  document.profiles.primaryRange = IndexRange{};
  document.profiles.residualSpacingUM = 10.0;
  document.profiles.roughnessMotifs = {{100, 110, 130}, {130, 150, 160}};
  EXPECT_EQ(MotifReadout(document), "2 roughness motifs, mean length 0.3000 mm    0 waviness motifs");
  document.settings.analysis.MotifWProfile = true;
  EXPECT_EQ(MotifReadout(document), "0 waviness motifs");
}

/// A record of hills of 1 um, ten points each, with one high peak and one deep dale.
Document Hills(std::int32_t count) {
  Document document = MakeDocument();
  std::vector<double> heights(static_cast<std::size_t>(count) * 10 + 1);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = i % 10 == 0 ? 1.0 : i % 10 == 5 ? 0.0 : 0.5;
  heights[heights.size() / 3 / 10 * 10] = 7.0;
  heights[heights.size() / 2 / 10 * 10 + 5] = -7.0;
  document.profiles = MakeProfileSet(heights, 100.0);
  document.profiles.primary = heights;
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
  struct Case {
    const MotifPlot::Line& line;
    double lowest, highest;
  };
  for (const Case& c : {Case{plot.profile, -7.0, 7.0}, {plot.roughness, -7.0, 7.0}, {plot.envelope, 1.0, 7.0}}) {
    EXPECT_LE(c.line.size(), 602U);
    double lowest = 0.5;
    double highest = 0.5;
    for (std::size_t i = 0; i < c.line.size(); ++i) {
      lowest = i == 0 ? c.line[i].zUM : std::min(lowest, c.line[i].zUM);
      highest = std::max(highest, c.line[i].zUM);
      ASSERT_LE(c.line[i == 0 ? 0 : i - 1].xMM, c.line[i].xMM);
    }
    EXPECT_EQ(lowest, c.lowest);
    EXPECT_EQ(highest, c.highest);
    EXPECT_EQ(c.line.front().xMM, 0.0);
    EXPECT_NEAR(c.line.back().xMM, 10'000.0, 1e-9);
  }
}

TEST(MotifPlot, AStretchHoldsTheMotifsThatReachIntoIt) {
  const MotifPlot plot = MotifPlotOf(Hills(10'000), 100.25, 103.75, 300);
  EXPECT_FALSE(plot.isThinned);
  ASSERT_EQ(plot.profile.size(), 37U) << "samples 1002 to 1038";
  EXPECT_NEAR(plot.profile.front().xMM, 100.2, 1e-9);
  ASSERT_EQ(plot.roughness.size(), 9U) << "four motifs";
  EXPECT_NEAR(plot.roughness[0].xMM, 100.0, 1e-9);
  EXPECT_NEAR(plot.roughness[1].xMM, 100.5, 1e-9);
  EXPECT_EQ(plot.roughness[1].zUM, 0.0);
  EXPECT_EQ(plot.envelope.size(), 5U);
  EXPECT_TRUE(plot.waviness.empty());
  EXPECT_TRUE(MotifPlotOf(MakeDocument(), 0.0, 1.0, 300).profile.empty());
}

}  // namespace
}  // namespace texturon
