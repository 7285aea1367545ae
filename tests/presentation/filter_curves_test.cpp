// SPDX-License-Identifier: Apache-2.0

#include "presentation/filter_curves.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <span>

#include "settings/filter_table.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

/// A sine of 1 um over 20 mm at 1 um spacing, analysed without form.
Document Analysed(double wavelengthMM, std::int32_t filter) {
  std::vector<double> heights(20'000);
  for (std::size_t i = 0; i < heights.size(); ++i) {
    heights[i] = std::sin(2.0 * std::numbers::pi * static_cast<double>(i) * 0.001 / wavelengthMM);
  }
  Document document = Loaded(std::move(heights), 1.0, [&](Settings& settings) {
    settings.analysis.FormRemovalType = kFormNone;
    settings.analysis.FilterType = filter;
    settings.analysis.LsCutoffMM = 0.008;
    settings.analysis.parameters.clear();
  });
  Analyse(document);
  return document;
}

/// Amplitude of the middle half, which holds whole waves.
double Amplitude(std::span<const double> heights) {
  double squares = 0.0;
  for (std::size_t i = 5000; i < 15'000; ++i) squares += heights[i] * heights[i];
  return std::sqrt(squares / 5000.0);
}

TEST(FilterCurves, SayWhatTheAnalysisLetsThrough) {
  for (const FilterRow& filter : kFilterTable) {
    if (!filter.number || !filter.transmissionRemark.empty()) continue;
    for (const double wavelengthMM : {0.005, 0.008, 0.2, 0.8, 2.5}) {
      const Document document = Analysed(wavelengthMM, *filter.number);
      const auto curves = FilterCurvesOf(document);
      ASSERT_TRUE(curves);
      std::size_t i = 0;
      while (curves->wavelengthMM[i + 1] < wavelengthMM) ++i;
      const double share = std::log(wavelengthMM / curves->wavelengthMM[i]) /
                           std::log(curves->wavelengthMM[i + 1] / curves->wavelengthMM[i]);
      const auto at = [&](const std::vector<double>& percent) {
        return 0.01 * (percent[i] * (1.0 - share) + percent[i + 1] * share);
      };
      // Straight lines between the points of the curves are good for half a percent.
      EXPECT_NEAR(at(curves->primary), Amplitude(document.profiles.primary), 0.005) << wavelengthMM;
      EXPECT_NEAR(at(curves->waviness), Amplitude(document.profiles.waviness), 0.005) << wavelengthMM;
      EXPECT_NEAR(at(curves->roughness), Amplitude(document.profiles.roughness), 0.005) << wavelengthMM;
    }
  }
}

TEST(FilterCurves, EndAtTheCutoffsThatCanBe) {
  Document document = Analysed(0.8, kFilterRobustGaussian);
  EXPECT_EQ(FilterCurvesOf(document)->cutoffsMM, (std::vector<double>{0.8, 0.008}));
  document.results.request->settings.LcCutoffMM = 0.0029;
  EXPECT_FALSE(FilterCurvesOf(document)) << "sampled too coarsely for it";
  EXPECT_FALSE(FilterCurvesOf(MakeDocument()));
}

}  // namespace
}  // namespace texturon
