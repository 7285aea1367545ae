// SPDX-License-Identifier: Apache-2.0

#include "formats/mod_writer.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "formats/mod_format.h"
#include "formats/reading.h"
#include "formats/sample_texts.h"
#include "support/near.h"

namespace texturon {
namespace {

const std::vector<double> kHeights = {1.5, -0.25, 0.0};

TEST(ModWriter, WritesWavinessInExactlyTheseBytes) {
  WavinessMod record{.points = {kHeights, 0.5, 1000, 0.2}, .isArc = true, .assessmentLengthMM = 0.001};
  const std::string text = WavinessModText(record).bytes;
  EXPECT_EQ(text, Lines({"1 2", "TXRN_  0.000000e+000 MOD", "CX A 3.000000e+000 MM 1.000000e+000 D",
                         "CZ A 3.000000e+000 MM 1.000000e+000 D", "EOR", "FILTER_MODE NO_FILTER", "FORM LS_ARC",
                         "ASSESSMENT_LENGTH 1.000000e-003 MM", "NUMBER_MOD_POINTS 3.000000e+000", "EOR",
                         "3.000000e-001", "3.005000e-001", "3.010000e-001", "1.500000e-003", "-2.500000e-004",
                         "0.000000e+000", "EOR", "EOF"}));
  record.isArc = false;
  const std::string line = WavinessModText(record).bytes;
  EXPECT_NE(line.find("FORM LS_LINE\r\n"), std::string::npos);
  EXPECT_NE(line.find("EOR\r\n5.000000e-001\r\n"), std::string::npos) << "no offset without an arc";
  const Reading reading = Read(ReadModProfile, text);
  EXPECT_EQ(reading.profile.identification, "TXRN_ _0");
  EXPECT_TRUE(AllNear(reading.profile.heightsUM, kHeights, 1e-9));
  EXPECT_TRUE(Near(reading.profile.spacingUM, 0.5, 1e-9));
}

TEST(ModWriter, WritesAsphereResidualsInExactlyTheseBytes) {
  const std::vector<ModCoefficient> coefficients = {{4.0, 1e-6}, {6.0, -2e-9}};
  const AsphereMod record{.points = {kHeights, 0.5, 0, 0.0005},
                          .identification = "A.B",
                          .version = 2.0,
                          .assessmentLengthMM = 0.001,
                          .coefficients = coefficients,
                          .radiusMM = -40.0,
                          .conic = -0.8,
                          .comment = "two\r\nlines"};
  const std::string text = AsphereModText(record).bytes;
  EXPECT_EQ(text, Lines({"1 2",
                         "A_B    2.000000e+000 MOD",
                         "CX A 3.000000e+000 MM 1.000000e+000 D",
                         "CZ A 3.000000e+000 MM 1.000000e+000 D",
                         "EOR",
                         "FILTER_MODE WAVINESS",
                         "FORM ASPHERIC",
                         "ASSESSMENT_LENGTH 1.000000e-003 MM",
                         "NUMBER_MOD_POINTS 3.000000e+000",
                         "ASPHERIC_COEFF 1.000000e-006 MM 4.000000e+000",
                         "ASPHERIC_COEFF -2.000000e-009 MM 6.000000e+000",
                         "ASPHERIC_RADIUS -4.000000e+001 MM",
                         "ASPHERIC_K -8.000000e-001",
                         "COMMENT two  lines",
                         "EOR",
                         "-5.000000e-004",
                         "0.000000e+000",
                         "5.000000e-004",
                         "1.500000e-003",
                         "-2.500000e-004",
                         "0.000000e+000",
                         "EOR",
                         "EOF"}));
  EXPECT_EQ(Read(ReadModProfile, text).profile.identification, "A_B   _2");
}

TEST(ModWriter, RefusesWhatNobodyCouldRead) {
  const std::vector<double> odd = {1.0, std::numeric_limits<double>::quiet_NaN()};
  const std::vector<ModCoefficient> many(21);
  EXPECT_FALSE(WavinessModText({.points = {{}, 0.5}}).ok());
  EXPECT_FALSE(WavinessModText({.points = {kHeights, 0.0}}).ok());
  EXPECT_FALSE(WavinessModText({.points = {odd, 0.5}}).ok());
  EXPECT_FALSE(AsphereModText({.points = {kHeights, 0.5}, .radiusMM = odd[1]}).ok());
  EXPECT_FALSE(AsphereModText({.points = {kHeights, 0.5}, .coefficients = many}).ok());
}

}  // namespace
}  // namespace texturon
