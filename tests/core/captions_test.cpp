#include "core/captions.h"

#include <gtest/gtest.h>

namespace texturon {
namespace {

TEST(Captions, NameTheGeometryInTheUnitsInForce) {
  Document document = MakeDocument();
  EXPECT_EQ(FormCaption(document), "");
  document.results.formRemoved = true;
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
  };
  for (const Case& c : cases) {
    document.results.formGeometry = c.geometry;
    document.settings.display.Metric = true;
    EXPECT_EQ(FormCaption(document), c.metric);
    document.settings.display.Metric = false;
    EXPECT_EQ(FormCaption(document), c.imperial);
  }
  EXPECT_EQ(FilterLabel(kFilterRobustGaussian), "Robust Gaussian (coef: 4.45)");
}

}  // namespace
}  // namespace texturon
