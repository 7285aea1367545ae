// SPDX-License-Identifier: Apache-2.0

#include "analysis/captions.h"

#include <gtest/gtest.h>

#include "base/charset.h"
#include "settings/setting_choices.h"
#include "support/golden.h"

namespace texturon {
namespace {

TEST(Captions, NameTheGeometryInTheUnitsInForce) {
  Document document = MakeDocument();
  EXPECT_EQ(FormCaption(document), "");
  document.profiles.computeRange = IndexRange{};
  document.profiles.shortCutoffMM = 0.0254;
  const FormGeometry geometries[] = {MeanFit{.meanUM = 0.1234},
                                     LineFit{.slope = -0.5, .interceptUM = 2.0},
                                     ArcFit{.radiusUM = 25'400.0},
                                     PolynomialFit{.coefficients = {7.0}},
                                     PolynomialFit{.coefficients = {2.0, -0.5}},
                                     PolynomialFit{.coefficients = {1, 2, 3}},
                                     PolynomialFit{.coefficients = {1, 2, 3, 4}},
                                     FilterFormFit{},
                                     AsphereFit{.slope = 1.0, .curvaturePerMM = -0.02},
                                     AsphereFit{.curvaturePerMM = 1e-101},
                                     FreeFormFit{.shiftXMM = 2.54, .shiftYMM = -0.5, .thetaDegrees = 1.25},
                                     FreeFormFit{.shiftYMM = 25.4, .hasFixedStart = true, .allowsTilt = false}};
  std::string text;
  for (const bool metric : {true, false}) {
    document.settings.display.Metric = metric;
    for (const FormGeometry& geometry : geometries) {
      document.results.formGeometry = geometry;
      text += FormCaption(document) + "\n";
    }
    text += FilterDescription(document) + "\n";
  }
  EXPECT_TRUE(MatchesGolden("analysis/captions.txt", Utf8FromWindows1252(text)));
}

TEST(FormTable, HoldsTheFormsThatTheSettingsOffer) {
  const std::vector<SettingChoice> offered = ChoicesOf(*FindSetting("ANALYSIS", "FormRemovalType")->key);
  EXPECT_EQ(offered.size(), FormTable().size());
  for (const SettingChoice& choice : offered) EXPECT_NE(FindForm(choice.value), nullptr) << choice.name;
}

}  // namespace
}  // namespace texturon
