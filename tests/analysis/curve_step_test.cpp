// SPDX-License-Identifier: Apache-2.0

// Curves that are made when somebody looks at them are those of a run that makes them all.

#include "analysis/curve_step.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/loaded_document.h"

namespace texturon {
namespace {

/// Plateaus with valleys on a slope, two hundred periods.
Document Honed(bool withRows) {
  std::vector<double> heights(20'000);
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const auto x = static_cast<double>(i);
    heights[i] = 0.3 * std::sin(x / 16.0) + 0.1 * std::sin(x * 0.9) + 1e-4 * x - (i % 97 < 5 ? 2.0 : 0.0);
  }
  return Loaded(std::move(heights), 0.5, [withRows](Settings& settings) {
    for (ParameterSelection& row : settings.analysis.parameters) row.selected = withRows;
  });
}

TEST(CurveStep, MakesWhatAWholeRunMakes) {
  Document whole = Honed(true);
  Analyse(whole);
  Document bare = Honed(false);
  bare.wanted = kNoCurves;
  Analyse(bare);
  EXPECT_TRUE(bare.profiles.spectrum.amplitudeUM.empty());
  EXPECT_TRUE(bare.results.roughnessCurve.IsEmpty());
  EXPECT_FALSE(bare.results.coreRoughness.valid || bare.results.probability);
  EXPECT_TRUE(bare.profiles.roughnessMotifs.empty());

  const Document made = WithAllCurves(bare);
  EXPECT_EQ(made.profiles.spectrum.amplitudeUM, whole.profiles.spectrum.amplitudeUM);
  EXPECT_EQ(made.results.primaryCurve.heightsUM, whole.results.primaryCurve.heightsUM);
  EXPECT_EQ(made.results.roughnessCurve.heightsUM, whole.results.roughnessCurve.heightsUM);
  ASSERT_TRUE(whole.results.coreRoughness.valid);
  EXPECT_EQ(made.results.coreRoughness.Rk, whole.results.coreRoughness.Rk);
  ASSERT_TRUE(made.results.probability && made.results.probability->crossingPercent);
  EXPECT_EQ(made.results.probability->crossingPercent, whole.results.probability->crossingPercent);
  ASSERT_FALSE(whole.profiles.wavinessMotifs.empty());
  EXPECT_EQ(made.profiles.roughnessMotifs, whole.profiles.roughnessMotifs);
  EXPECT_EQ(made.profiles.wavinessMotifs, whole.profiles.wavinessMotifs);
}

TEST(CurveStep, MakesOnlyWhatIsWanted) {
  Document document = Honed(false);
  document.wanted = kNoCurves;
  Analyse(document);
  document.wanted.probability = true;
  ComputeMissingCurves(document);
  EXPECT_TRUE(document.results.probability.has_value());
  EXPECT_TRUE(document.results.roughnessCurve.IsEmpty() && document.profiles.spectrum.amplitudeUM.empty());
  document.wanted = kNoCurves;
  Analyse(document);
  EXPECT_FALSE(document.results.probability.has_value()) << "a new run forgets what nobody wants any more";
}

}  // namespace
}  // namespace texturon
