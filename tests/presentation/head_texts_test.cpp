// SPDX-License-Identifier: Apache-2.0

#include "presentation/head_texts.h"

#include <gtest/gtest.h>

#include "presentation/value_place.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

TEST(HeadTexts, TellFormAndWhatIsALength) {
  std::vector<double> heights(2000);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = -0.0001 * static_cast<double>(i);
  Document document = Loaded(heights, 2.0, [](Settings& settings) {
    settings.analysis.FormRemovalType = kFormLine;
    settings.analysis.ResidualType = 1;
  });
  Analyse(document);
  EXPECT_EQ(EvaluatedForReaders(document), "length 4.0000 mm, 2000 points from 0.0000 mm to 3.9980 mm");
  EXPECT_TRUE(AnalysisForReaders(document).starts_with("Form: LS Line   (Slope: ")) << AnalysisForReaders(document);
}

// Value, U and ends by their common place; in units of their rows.
TEST(UncertaintyTexts, EndAtTheSecondFigureOfU) {
  const struct {
    double value;
    double standard;
    bool isScientific;
    const char* texts;
  } cases[] = {{0.4123, 0.015, false, "0.412 0.030 0.397 0.427 0.0012"},
               {0.4123, 0.0498, false, "0.41 0.10 0.36 0.46 0.0012"},
               {1234.56, 61.0, false, "1235 122 1174 1296 0.0012"},
               {0.00001, 0.0000012, false, "0.0000100 0.0000024 0.0000088 0.0000112 0.0012"},
               {0.01234, 0.0001, true, "1.234e-002 2.0e-004 1.224e-002 1.244e-002 0.0012"},
               {12.5, 1e-10, false, "12.5000 2e-10 12.5 12.5 0.0012"},
               {0.5, 0.0, false, "0.5000 0 0.5 0.5 0.0012"}};
  for (const auto& each : cases) {
    ParameterDef row;
    row.valid = true;
    row.value = each.value;
    row.format.decimals = {4, 2};
    row.format.scientific = each.isScientific;
    ParameterUncertainty uncertainty;
    uncertainty.standard = each.standard;
    uncertainty.low = each.value - each.standard;
    uncertainty.high = each.value + each.standard;
    uncertainty.bias = 0.0012;
    const UncertaintyTexts texts = TextsOf(row, uncertainty, true);
    EXPECT_EQ(texts.value + " " + texts.expanded + " " + texts.low + " " + texts.high + " " + texts.bias, each.texts);
  }
}

}  // namespace
}  // namespace texturon
