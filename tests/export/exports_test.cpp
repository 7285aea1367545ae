// SPDX-License-Identifier: Apache-2.0

// Byte-exact files of profiles, curves and aspheric tables.

#include <gtest/gtest.h>
#include <vector>

#include "export/asphere_export.h"
#include "export/curve_export.h"
#include "export/profile_export.h"

namespace texturon {
namespace {

const ExportSource kSource{"c:\\data\\S1.prf", "Shaft 1; left"};
constexpr const char* kHead = "\"File:\", \"c:\\data\\S1.prf\"\r\n\"Identification:\", \"Shaft 1; left\"\r\n\r\n";
const ProfileExportTexts kTexts{.description = "form / filter",
                                .formCaption = "form",
                                .filterText = "filter",
                                .shortCutoffMM = 0.0025,
                                .ballRadiusMM = 1500.0};

TEST(ProfileExport, WritesEachKindWithItsTitleAndSettings) {
  struct Case {
    ProfileKind kind;
    const char* beginning;
    const char* titles;
  };
  constexpr const char* kPlain = "\"X\", \"Height\"\r\n";
  const Case cases[] = {
      {ProfileKind::kRaw, "\"Raw Data\"\r\n\r\n", "\"X\", \"Raw Data Height\"\r\n"},
      {ProfileKind::kFormSuppressed, "\"Form Suppressed Data\"\r\n\r\n\"form / filter\"\r\n", kPlain},
      {ProfileKind::kPrimary, "\"Primary Profile\"\r\n\r\n\"form / filter\"\r\n\"Short Cutoff = 0.0025 mm\"\r\n",
       kPlain},
      {ProfileKind::kWaviness, "\"Waviness Profile\"\r\n\r\n\"form\"\r\n\"filter\"\r\n\r\n", kPlain},
      {ProfileKind::kRoughness, "\"Roughness Profile\"\r\n\r\n\"form / filter\"\r\n", kPlain},
      {ProfileKind::kClosing, "\"Morphological Closing Profile (Radius = 1.5 m)\"\r\n\r\n\"form / filter\"\r\n",
       kPlain},
      {ProfileKind::kOpening, "\"Morphological Opening Profile (Radius = 1.5 m)\"\r\n\r\n\"form / filter\"\r\n",
       kPlain},
  };
  const std::vector<double> heights = {9.0, 0.125, -1234.5678901, -0.0000004, 9.0};
  for (const Case& c : cases) {
    const Profile profile{c.kind, heights, IndexRange::FromCount(1, 3), 0.5};
    EXPECT_EQ(ProfileExport(profile, kSource, kTexts),
              std::string(kHead) + c.beginning + "\"Number of Points\", 3\r\n" + c.titles +
                  "\"mm\", \"um\"\r\n0.000500, 0.125000\r\n0.001000, -1234.567890\r\n0.001500, -0.000000\r\n");
  }
}

TEST(ProfileExport, LineBreaksOfANameStayOnItsLine) {
  EXPECT_EQ(ExportHead({"a\r\nb\tc.prf", "left\nright"}),
            "\"File:\", \"a  b\tc.prf\"\r\n\"Identification:\", \"left right\"\r\n\r\n");
}

TEST(CurveExport, WritesEachCurve) {
  const std::vector<double> sorted = {2.0, 1.0, 0.0, -2.0};
  const std::string head(kHead);
  EXPECT_EQ(BearingRatioExport(sorted, CurveProfile::kPrimary, kSource, "s"),
            head +
                "\"s\"\r\n\"Primary BRC\", \"Height\"\r\n\"%\", \"um\"\r\n0.000, 2.000\r\n25.000, 1.000\r\n"
                "50.000, 0.000\r\n75.000, -2.000\r\n");
  EXPECT_TRUE(BearingRatioExport(sorted, CurveProfile::kRoughness, kSource, "s")
                  .starts_with(head + "\"s\"\r\n\"Roughness BRC\", \"Height\"\r\n\"%\", \"um\"\r\n"));
  // Normal quantiles of 1/8, 3/8, 5/8 and 7/8: tables of the normal distribution.
  EXPECT_EQ(ProbabilityExport(sorted, kSource, "s"),
            head +
                "\"s\"\r\n\"Roughness BRC\", \"Roughness Probability\", \"Height\"\r\n\"%\", \"StdDev\", \"um\"\r\n"
                "12.500, -1.150, 2.000\r\n37.500, -0.319, 1.000\r\n62.500, 0.319, 0.000\r\n87.500, 1.150, -2.000\r\n");
  Spectrum spectrum;
  spectrum.amplitudeUM = {0.0, 0.25, 0.0000125};
  spectrum.wavelengthMM = {4.0, 4.0, 2.0};
  EXPECT_EQ(SpectrumExport(spectrum, kSource, "s"),
            head +
                "\"s\"\r\n\"Wavelengths\", \"Mean to Peak Amplitude\"\r\n\"mm\", \"um\"\r\n4.000000, 0.000000\r\n"
                "4.000000, 0.250000\r\n2.000000, 0.000013\r\n");
}

TEST(CurveExport, WritesAHundredAmplitudeClassesFromBelow) {
  // Heights 0 to 199 fill each class of width 1.99 with two points but the last border point.
  std::vector<double> sorted(200);
  for (std::size_t i = 0; i < sorted.size(); ++i) sorted[i] = 199.0 - static_cast<double>(i);
  const std::string text = AmplitudeDistributionExport(sorted, CurveProfile::kPrimary, kSource, "s");
  const std::string titles = "\"s\"\r\n\"Primary ADF\", \"Height\"\r\n\"scaled occurrences\", \"um\"\r\n";
  EXPECT_TRUE(text.starts_with(kHead + titles + "100.000, 0.995\r\n100.000, 2.985\r\n")) << text.substr(0, 300);
  EXPECT_TRUE(text.ends_with("100.000, 198.005\r\n"));
  EXPECT_NE(AmplitudeDistributionExport(sorted, CurveProfile::kRoughness, kSource, "s")
                .find("\"Roughness ADF\", \"Height\"\r\n\"scaled\", \"um\"\r\n"),
            std::string::npos);
}

TEST(AsphereTableExport, HasThreeLayouts) {
  const std::vector<TableRow> rows = {{-1.5, 0.0000314159265358}, {0.0, -0.25}};
  EXPECT_EQ(AsphereTableExport(rows, AsphereLayoutOf(0), "Residual"),
            "Residual\r\n-1.500000,0.000031\r\n0.000000,-0.250000\r\n");
  EXPECT_EQ(AsphereTableExport(rows, AsphereLayoutOf(1), "Residual"),
            "mm, mm\r\n-1.500000, 0.000031415927\r\n0.000000, -0.250000000000\r\n");
  EXPECT_EQ(AsphereTableExport(rows, AsphereLayoutOf(2), "Residual"),
            "X-01.50000Z000.00003\r\nX000.00000Z-00.25000\r\n");
}

}  // namespace
}  // namespace texturon
