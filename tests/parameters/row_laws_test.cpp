// SPDX-License-Identifier: Apache-2.0

// Laws that hold for every row: scales, directions, hostile profiles; and that each one is documented.

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "parameters/catalogue.h"
#include "support/near.h"
#include "support/row_value.h"

namespace texturon {
namespace {

/// How a row's value follows the profile.
struct Law {
  int heightPower = 0;
  int lengthPower = 0;
  bool scalesByHeightAlone = true;  // an angle or a ball sees no stretching of heights alone
  int reversed = 1;                 // 1: same, -1: turned, 0: position or one-way scan
};

bool IsListed(std::string_view list, std::string_view suffix) {
  return (" " + std::string(list) + " ").find(" " + std::string(suffix) + " ") != std::string::npos;
}

/// What the unit says, but for numbers whose unit does not show what they are made of.
Law LawOf(std::string_view suffix) {
  struct UnitPowers {
    std::string_view unit;
    int height, length;
  };
  constexpr UnitPowers kUnits[] = {{"\xB5m", 1, 0}, {"mm", 0, 1},       {"mm2", 1, 1},   {"\xB5m2", 2, 0},
                                   {"\xB0", 1, -1}, {"min", 1, -1},     {"1/cm", 0, -1}, {"#/cm", 0, -1},
                                   {"%%", 0, 0},    {"\xB5m-2", 2, -4}, {"", 0, 0}};
  const MasterRow* const row = FindMasterRow("?" + std::string(suffix));
  if (row == nullptr) ADD_FAILURE() << suffix << " is a row of no catalogue";
  const std::string_view unit = row != nullptr ? row->quantity.metricUnit : "";
  const auto* const powers =
      std::find_if(std::begin(kUnits), std::end(kUnits), [&](const UnitPowers& u) { return u.unit == unit; });
  if (powers == std::end(kUnits)) ADD_FAILURE() << suffix << ": what is " << unit << " made of?";
  Law law;
  if (powers != std::end(kUnits)) law = {powers->height, powers->length};
  if (suffix == "m2") law = {2, -2};
  if (suffix == "vdas") law = {1, -1};
  law.scalesByHeightAlone = !IsListed("dq dmd dmn lslp eslp vddl cvxl vdmp void vdd vdm cvx cvxm vdc vda vdas", suffix);
  // Elements are cut by a scan from one side, and an incomplete void at one end alone keeps vdm, vdas from their law.
  if (IsListed("pl pr sm dsm c tc cl a1l a7l pm7l segl lslpl eslpl vddl cvxl vdmp pc hsc vc vda vdm vdas cvxm",
               suffix)) {
    law.reversed = 0;
  }
  if (suffix == "dsk") law.reversed = -1;
  return law;
}

/// Everything in the settings that is a height or a length, times a factor.
void Scale(AnalysisSettings& s, double height, double length) {
  for (double* h : {&s.PrimaryHSCHeight, &s.RoughnessHSCHeight, &s.PrimaryVCHeight, &s.RoughnessVCHeight,
                    &s.PrimaryPcLevel, &s.RoughnessPcLevel, &s.WavinessPcLevel, &s.RxqValleyCountHeightUm}) {
    *h *= height;
  }
  for (double* l : {&s.ClosingRadiusForWvoid, &s.OpeningRadiusForWcvx, &s.WindowWidthForWseg, &s.WxpEndRegionsMM,
                    &s.AsphereSlopeWindowMM, &s.MotifAMM, &s.MotifBMM}) {
    *l *= length;
  }
}

RowCase Base() {
  RowCase row{.heights = RandomSurface(6000, 44), .spacingMM = 0.001, .samplingLengthMM = 0.5};
  row.settings.ClosingRadiusForWvoid = row.settings.OpeningRadiusForWcvx = 0.5;
  row.settings.RxqMinimumValleyCount = 1;
  for (double& z : row.heights) z -= z < -1.5 ? (z + 1.5) * -2.0 : 0.0;
  return row;
}

TEST(RowLaws, FollowHeightsAndLengths) {
  const RowCase base = Base();
  RowCase taller = base;
  for (double& z : taller.heights) z *= 2.0;
  RowCase larger = taller;
  larger.spacingMM *= 2.0;
  larger.samplingLengthMM *= 2.0;
  Scale(taller.settings, 2.0, 1.0);
  Scale(larger.settings, 2.0, 2.0);
  for (const SuffixRow& row : SuffixTable()) {
    const std::string_view suffix = row.suffix;
    const Law law = LawOf(suffix);
    const auto value = RowValue(suffix, base);
    ASSERT_TRUE(value.has_value()) << suffix;
    EXPECT_NE(*value, 0.0) << suffix << " shows nothing";
    const double both = *value * std::exp2(law.heightPower + law.lengthPower);
    EXPECT_TRUE(Near(*RowValue(suffix, larger), both, 1e-12)) << suffix;
    if (law.scalesByHeightAlone) {
      EXPECT_TRUE(Near(*RowValue(suffix, taller), *value * std::exp2(law.heightPower), 1e-12)) << suffix;
    }
  }
}

TEST(RowLaws, FollowTheDirection) {
  const RowCase base = Base();
  RowCase reversed = base;
  reversed.heights.assign(base.heights.rbegin(), base.heights.rend());
  for (const SuffixRow& row : SuffixTable()) {
    const int sign = LawOf(row.suffix).reversed;
    if (sign == 0) continue;
    EXPECT_TRUE(Near(*RowValue(row.suffix, reversed), sign * *RowValue(row.suffix, base), 1e-9)) << row.suffix;
  }
}

TEST(RowLaws, KeepOutOfTroubleOnHostileProfiles) {
  std::vector<std::vector<double>> profiles = {
      {}, {1.0}, {1.0, -1.0}, {0.0, 0.0, 0.0}, std::vector<double>(200, 0.0), std::vector<double>(200, -7.0)};
  std::vector<double> ramp, twoValued, oneSided, huge, tiny, alternating;
  for (int i = 0; i < 300; ++i) {
    ramp.push_back(0.01 * i);
    twoValued.push_back(i / 7 % 2 == 0 ? 1.0 : -1.0);
    oneSided.push_back(1.0 + i % 5);
    huge.push_back(i % 3 == 0 ? std::numeric_limits<double>::max() : -1e308);
    tiny.push_back((i % 4 - 1.5) * std::numeric_limits<double>::denorm_min());
    alternating.push_back(i % 2 == 0 ? 5.0 : -5.0);
  }
  for (auto& profile : {ramp, twoValued, oneSided, huge, tiny, alternating}) profiles.push_back(profile);
  std::vector<AnalysisSettings> settings(3);
  settings[1].RqFittingMethod = 1;
  settings[1].RxqMinimumValleyCount = -5;
  settings[1].UseTHMotif = settings[1].UseTHShortMotifCombination = true;
  for (double AnalysisSettings::*length :
       {&AnalysisSettings::WindowWidthForWseg, &AnalysisSettings::AsphereSlopeWindowMM, &AnalysisSettings::MotifAMM,
        &AnalysisSettings::WxpEndRegionsMM, &AnalysisSettings::ClosingRadiusForWvoid, &AnalysisSettings::UPLPercent}) {
    settings[1].*length = 0.02;
    settings[2].*length = std::numeric_limits<double>::infinity();
  }
  std::size_t computed = 0;
  for (const auto& profile : profiles) {
    const bool hasNoShape = profile.size() < 3 || profile == ramp;
    for (const AnalysisSettings& setting : settings) {
      for (const double samplingLengthMM : {0.05, 0.01, 1e300, 0.0}) {
        const RowCase row{.heights = profile, .samplingLengthMM = samplingLengthMM, .settings = setting};
        for (const SuffixRow& suffix : SuffixTable()) {
          const RowResult result = RowValue(suffix.suffix, row);
          computed += result ? 1 : 0;
          EXPECT_TRUE(result || result.Reason().why > Why::kNotOfThisLetter) << suffix.suffix << " does not say why";
        }
        const ParameterProfile primary('P', row.heights, {row.spacingMM * 1000.0, samplingLengthMM, samplingLengthMM});
        for (const char* name : {"R", "Rx", "AR", "W", "Wx", "AW", "Wte"}) {
          const auto value = FindWholeName(name)({primary, setting});
          EXPECT_FALSE(value.has_value() && hasNoShape) << name;
        }
        for (const char* suffix : {"sm", "c", "dsm", "s", "k", "mq"}) {
          EXPECT_FALSE(hasNoShape && RowValue(suffix, row).has_value()) << suffix;
        }
      }
    }
  }
  EXPECT_GT(computed, 1000u);
}

TEST(Catalogue, IsDocumentedRowByRow) {
  std::ifstream file(TEXTURON_SOURCE_DIR "/docs/parameters.md");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  for (const MasterRow& row : MasterCatalogue()) {
    EXPECT_NE(text.find("`" + std::string(row.name) + "`"), std::string::npos) << row.name;
    EXPECT_FALSE(row.source.empty()) << row.name;
  }
}

}  // namespace
}  // namespace texturon
