// SPDX-License-Identifier: Apache-2.0

#include "analysis/captions.h"

#include <gtest/gtest.h>

#include "settings/setting_choices.h"

namespace texturon {
namespace {

TEST(Captions, NameTheGeometryInTheUnitsInForce) {
  Document document = MakeDocument();
  EXPECT_EQ(FormCaption(document), "");
  document.profiles.computeRange = IndexRange{};
  document.settings.analysis.FormFilterCutoffMM = 8.0;
  struct Case {
    FormGeometry geometry;
    std::string metric, imperial;
  };
  const Case cases[] = {
      {MeanFit{.meanUM = 0.1234}, "Form: Datum   (Mean: 0.123 \xB5m)", "Form: Datum   (Mean: 4.858 \xB5in)"},
      {LineFit{.slope = -0.5, .interceptUM = 2.0}, "Form: LS Line   (Slope: -0.500  Intercept: 2.000 \xB5m)",
       "Form: LS Line   (Slope: -0.500  Intercept: 78.740 \xB5in)"},
      {ArcFit{.radiusUM = 25'400.0}, "Form: LS Arc   (Radius: 25.400 mm)", "Form: LS Arc   (Radius: 1.000 in)"},
      {PolynomialFit{.coefficients = {7.0}}, "Form: Datum", "Form: Datum"},
      {PolynomialFit{.coefficients = {2.0, -0.5}}, "Form: LS Line   (Slope: -0.500  Intercept: 2.000 \xB5m)",
       "Form: LS Line   (Slope: -0.500  Intercept: 78.740 \xB5in)"},
      {PolynomialFit{.coefficients = {1, 2, 3}}, "Form: Parabola", "Form: Parabola"},
      {PolynomialFit{.coefficients = {1, 2, 3, 4}}, "Form: Polynomial   (Order: 3)", "Form: Polynomial   (Order: 3)"},
      {FilterFormFit{}, "Form: Spline Gaussian Filter (Cutoff: 8.000 mm)",
       "Form: Spline Gaussian Filter (Cutoff: 0.315 in)"},
      {AsphereFit{.slope = 1.0, .curvaturePerMM = -0.02}, "Form: Asphere   (Radius: -50.000 mm  Tilt: 45.000\xB0)",
       "Form: Asphere   (Radius: -1.969 in  Tilt: 45.000\xB0)"},
      {AsphereFit{.curvaturePerMM = 1e-101}, "Form: Asphere   (Radius: 0.000 mm  Tilt: 0.000\xB0)",
       "Form: Asphere   (Radius: 0.000 in  Tilt: 0.000\xB0)"},
      {FreeFormFit{.shiftXMM = 2.54, .shiftYMM = -0.5, .thetaDegrees = 1.25},
       "Free Form (dX: 2.540 mm  dY: -0.500 mm  Theta: 1.250\xB0)",
       "Free Form (dX: 0.100 in  dY: -0.020 in  Theta: 1.250\xB0)"},
      {FreeFormFit{.shiftYMM = 25.4, .hasFixedStart = true, .allowsTilt = false},
       "Free Form (Fixed Start  dY: 25.400 mm)", "Free Form (Fixed Start  dY: 1.000 in)"},
  };
  for (const Case& c : cases) {
    document.results.formGeometry = c.geometry;
    document.settings.display.Metric = true;
    EXPECT_EQ(FormCaption(document), c.metric);
    document.settings.display.Metric = false;
    EXPECT_EQ(FormCaption(document), c.imperial);
  }
  document.settings.analysis.FilterType = kFilterRobustGaussian;
  EXPECT_EQ(FilterLabel(document.settings.analysis), "Robust Gaussian (coef: 4.45)");
  document.settings.analysis.FilterType = kFilterGaussian;
  document.settings.analysis.LcCutoffMM = 2.54;
  EXPECT_EQ(FilterDescription(document), "Gaussian, Lc 0.10000 in");
  document.profiles.shortCutoffMM = 0.0254;
  EXPECT_EQ(FilterDescription(document), "Gaussian, Lc 0.10000 in, Ls 0.00100 in");
  document.settings.display.Metric = true;
  EXPECT_EQ(FilterDescription(document), "Gaussian, Lc 2.5400 mm, Ls 0.0254 mm");
}

TEST(FormTable, HoldsTheFormsThatTheSettingsOffer) {
  const std::vector<SettingChoice> offered = ChoicesOf(*FindSetting("ANALYSIS", "FormRemovalType")->key);
  EXPECT_EQ(offered.size(), FormTable().size());
  for (const SettingChoice& choice : offered) EXPECT_NE(FindForm(choice.value), nullptr) << choice.name;
}

}  // namespace
}  // namespace texturon
