// SPDX-License-Identifier: Apache-2.0

// Byte-exact files of profiles, curves and aspheric tables.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "export/asphere_export.h"
#include "export/curve_export.h"
#include "export/profile_export.h"
#include "support/golden.h"

namespace texturon {
namespace {

const ExportSource kSource{"c:\\data\\S1.prf", "Shaft 1; left"};
// All files one behind the other; the numbers are those handed in, rounded.
TEST(Exports, WriteEveryKindToTheByte) {
  const ProfileExportTexts texts{.description = "form / filter",
                                 .formCaption = "form",
                                 .filterText = "filter",
                                 .shortCutoffMM = 0.0025,
                                 .ballRadiusMM = 1500.0};
  const std::vector<double> heights = {9.0, 0.125, -1234.5678901, -0.0000004, 9.0};
  std::string text;
  for (const auto kind :
       {ProfileKind::kRaw, ProfileKind::kFormSuppressed, ProfileKind::kPrimary, ProfileKind::kWaviness,
        ProfileKind::kRoughness, ProfileKind::kClosing, ProfileKind::kOpening}) {
    text += ProfileExport({kind, heights, IndexRange::FromCount(1, 3), 0.5}, kSource, texts);
  }
  const std::vector<double> sorted = {2.0, 1.0, 0.0, -2.0};
  text += BearingRatioExport(sorted, CurveProfile::kPrimary, kSource, "s");
  text += BearingRatioExport(sorted, CurveProfile::kRoughness, kSource, "s");
  // Normal quantiles of 1/8, 3/8, 5/8 and 7/8: tables of the normal distribution.
  text += ProbabilityExport(sorted, kSource, "s");
  text += SpectrumExport({.amplitudeUM = {0.0, 0.25, 0.0000125}, .wavelengthMM = {4.0, 4.0, 2.0}}, kSource, "s");
  // Heights 0 to 199 fill each class of width 1.99 with two points but the last border point.
  std::vector<double> even(200);
  for (std::size_t i = 0; i < even.size(); ++i) even[i] = 199.0 - static_cast<double>(i);
  text += AmplitudeDistributionExport(even, CurveProfile::kPrimary, kSource, "s");
  text += AmplitudeDistributionExport(even, CurveProfile::kRoughness, kSource, "s");
  const std::vector<TableRow> rows = {{-1.5, 0.0000314159265358}, {0.0, -0.25}};
  for (const int layout : {0, 1, 2}) text += AsphereTableExport(rows, AsphereLayoutOf(layout), "Residual");
  // Line breaks of a name stay on its line.
  text += ExportHead({"a\r\nb\tc.prf", "left\nright"});
  EXPECT_TRUE(MatchesGolden("export/exports.txt", text));
}

}  // namespace
}  // namespace texturon
