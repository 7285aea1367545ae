// SPDX-License-Identifier: Apache-2.0

#include "presentation/nominal_preview.h"

#include <cmath>
#include <gtest/gtest.h>

namespace texturon {
namespace {

/// A paraboloid of 10 mm radius: the sag is x^2 / 20 mm exactly.
Settings Paraboloid() {
  Settings settings;
  settings.analysis.C_CurvatureMM = 0.1;
  settings.analysis.E_ConicConstant = -1.0;
  return settings;
}

TEST(NominalPreview, ShowsTheSagAndEveryPower) {
  AnalysisSettings settings = Paraboloid().analysis;
  const auto points = AspherePreview(settings, -3.0, 5.0, 9);
  ASSERT_EQ(points.size(), 9U);
  for (const FreeFormPoint& point : points) EXPECT_NEAR(point.zUM, 50.0 * point.xMM * point.xMM, 1e-9);
  EXPECT_DOUBLE_EQ(points[1].xMM, -2.0);
  EXPECT_TRUE(AspherePreview(settings, 1.0, 1.0, 9).empty());
  settings.C_CurvatureMM = 0.0;
  for (const bool even : {true, false}) {
    settings.EvenTermsOnly = even;
    settings.asphereCoefficients = {0.0, 0.0, 0.0, 1e-3};
    EXPECT_NEAR(AspherePreview(settings, 0.0, 2.0, 2).back().zUM, even ? 64.0 : 16.0, 1e-12);
  }
}

TEST(NominalPreview, LimitsHoldTheAsphere) {
  const struct {
    bool aperture;
    double recordMM, halfMM;
  } cases[] = {{false, 8.0, 4.0}, {true, 8.0, 2.5}, {false, 0.0, 25.0}};
  for (const auto& c : cases) {
    Settings settings = Paraboloid();
    settings.analysis.AsphereUseClearAperture = c.aperture;
    FitAspherePreview(settings, c.recordMM);
    EXPECT_DOUBLE_EQ(settings.display.AspherePreviewMinXMM, -c.halfMM);
    EXPECT_DOUBLE_EQ(settings.display.AspherePreviewMaxXMM, c.halfMM);
    const double sag = 50.0 * c.halfMM * c.halfMM;
    EXPECT_NEAR(settings.display.AspherePreviewMaxYUM, 1.055 * sag, 0.0055 * sag);
    EXPECT_NEAR(settings.display.AspherePreviewMinYUM, -0.055 * sag, 0.0055 * sag);
  }
}

TEST(NominalPreview, FreeFormFollowsItsPoints) {
  AnalysisSettings settings;
  EXPECT_TRUE(FreeFormPreview(settings, 5).empty()) << "a hundred points at the origin are no curve";
  settings.freeFormPoints.clear();
  for (const double x : {3.0, 1.0, 2.0, 5.0}) settings.freeFormPoints.push_back({x, x * x * x});
  const auto points = FreeFormPreview(settings, 9);
  ASSERT_EQ(points.size(), 9U);
  for (const FreeFormPoint& point : points) EXPECT_NEAR(point.zUM, std::pow(point.xMM, 3), 1e-9) << "cubics are exact";
  FitFreeFormPreview(settings);
  EXPECT_DOUBLE_EQ(settings.FreeFormPreviewMinXMM, 1.0);
  EXPECT_DOUBLE_EQ(settings.FreeFormPreviewMaxXMM, 5.0);
  EXPECT_DOUBLE_EQ(settings.FreeFormPreviewMinYUM, -6.0) << "1 less 6.2, to whole micrometres";
  EXPECT_DOUBLE_EQ(settings.FreeFormPreviewMaxYUM, 132.0);
}

}  // namespace
}  // namespace texturon
