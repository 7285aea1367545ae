// SPDX-License-Identifier: Apache-2.0

#include "settings/setting_entry.h"

#include <gtest/gtest.h>
#include <string>

#include "base/number_text.h"
#include "settings/cutoff_choices.h"
#include "support/golden.h"

namespace texturon {
namespace {

const SettingKey& Key(std::string_view section, std::string_view key) {
  return *FindSetting(section, key)->key;
}

TEST(SettingEntry, RefusesWithTheReason) {
  std::string text;
  for (const std::string_view call :
       {"ANALYSIS.LcCutoffMM= 2.5 ", "ANALYSIS.LcCutoffMM=", "ANALYSIS.LcCutoffMM=2,5", "ANALYSIS.LcCutoffMM=0",
        "ANALYSIS.LcCutoffMM=nan", "ANALYSIS.PolynomialOrder=101", "ANALYSIS.PolynomialOrder=-1",
        "ANALYSIS.FixedRadiusMM=0", "ANALYSIS.FixedRadiusMM=-3", "ANALYSIS.UserLsCutoffMM=-0.1",
        "RXQ_PARAMETERS.LPLPercent=100.1", "PRIMARY_HTPS.UpperPercent03=-1", "DISPLAY.ExtremeSlopePlotDegrees=0"}) {
    const std::size_t dot = call.find('.'), equals = call.find('=');
    const SettingKey& key = Key(call.substr(0, dot), call.substr(dot + 1, equals - dot - 1));
    const std::string fault = ReadEntry(key, call.substr(equals + 1), true).fault;
    text.append(call).append(": ").append(fault.empty() ? "taken" : fault) += '\n';
  }
  EXPECT_TRUE(MatchesGolden("settings/entries.txt", text));
}

TEST(SettingEntry, InchesGoInAndComeBack) {
  const struct {
    const char* key;
    double value;
    const char *text, *unit;
  } cases[] = {{"LcCutoffMM", 25.4, "1", "in"},
               {"RoughnessPcLevel", 0.0254, "1", "\xB5in"},
               {"LcCutoffMM", 0.8, "0.031496063", "in"},
               {"RcRzPercent", 10.0, "10", "%"}};
  for (const auto& c : cases) {
    const SettingKey& key = Key("ANALYSIS", c.key);
    EXPECT_EQ(EntryText(key, c.value, false), c.text);
    EXPECT_EQ(EntryUnit(key, false), c.unit);
    EXPECT_NEAR(std::get<double>(ReadEntry(key, c.text, false).value), c.value, 1e-9) << c.key;
    EXPECT_EQ(ShortestText(c.value), EntryText(key, c.value, true));
  }
}

TEST(CutoffChoices, StandardAndOwn) {
  AnalysisSettings settings;
  const std::size_t own = StandardCutoffsMM(Cutoff::kLong).size();
  EXPECT_EQ(StandardCutoffsMM(Cutoff::kLong)[ChosenCutoff(settings, Cutoff::kLong)], 0.8);
  ChooseCutoff(settings, Cutoff::kLong, own);
  settings.UserLcCutoffMM = 1.5;
  FollowOwnCutoffs(settings);
  EXPECT_EQ(settings.LcCutoffMM, 1.5);
  EXPECT_EQ(settings.LsCutoffMM, 0.0025) << "a standard one stays";
  EXPECT_EQ(ChosenCutoff(settings, Cutoff::kLong), own);
  ChooseCutoff(settings, Cutoff::kLong, 0);
  EXPECT_EQ(settings.LcCutoffMM, 0.08);
  EXPECT_EQ(settings.UserLcCutoffMM, 1.5) << "kept for the next time";
  ChooseCutoff(settings, Cutoff::kShort, 0);
  EXPECT_EQ(settings.LsCutoffMM, 0.0);
  settings.LcCutoffMM = 0.9;
  EXPECT_EQ(ChosenCutoff(settings, Cutoff::kLong), own) << "called standard, but it is none";
  SettleOwnCutoffs(settings);
  EXPECT_EQ(settings.UserLcCutoffMM, 0.9);
}

}  // namespace
}  // namespace texturon
