// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_text.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "base/number_text.h"
#include "platform/platform.h"
#include "settings/settings_changes.h"
#include "settings/settings_check.h"
#include "settings/settings_listing.h"
#include "settings/settings_table.h"
#include "support/golden.h"

namespace texturon {
namespace {

// A value of its own for the n-th key, which survives being written and differs from the default.
SettingValue DistinctValue(const SettingKey& key, int n, const SettingValue& former) {
  const SettingBinding& binding = key.binding;
  const SettingLimits& limits = key.entry.limits;
  const bool keepsLimits = binding.written == KeyWritten::kWhereChanged;
  if (!binding.words.empty()) {
    const std::string last(binding.words.substr(binding.words.rfind(' ') + 1));
    return SettingValue(last) != former ? last : std::string(binding.words.substr(0, binding.words.find(',')));
  }
  switch (binding.type) {
    case SettingType::kText:
      return "'text' " + IntegerText(n) + " \xB5 ";
    case SettingType::kInteger:
      if (keepsLimits) return static_cast<std::int32_t>(limits.least) + 1 + n % 2;
      return -1000 - n;
    case SettingType::kFlag:
      return !std::get<bool>(former);
    case SettingType::kCoefficient:
      return -0.25 * n;
    default:
      return keepsLimits ? limits.least + 0.001 * n : 1000.0 * n + 0.015625;
  }
}

// Calls visit(binding, row) for each value of the settings but the counts and the version.
void VisitValues(const Settings& settings, const std::function<void(const SettingKey&, std::size_t)>& visit) {
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    if (binding.type == SettingType::kCount || binding.type == SettingType::kVersion) continue;
    const std::size_t rows = binding.isRepeated() ? binding.rows->count(settings) : 1;
    for (std::size_t row = 0; row < rows; ++row) visit(key, row);
  }
}

Settings WithRows() {
  Settings settings;
  settings.analysis.parameters.resize(107);
  settings.analysis.asphereCoefficients.resize(4);
  settings.analysis.freeFormPoints.resize(101);
  settings.analysis.standard.features.resize(3);
  return settings;
}

Settings WithDistinctValues() {
  Settings settings = WithRows();
  int n = 0;
  VisitValues(settings, [&](const SettingKey& key, std::size_t row) {
    key.binding.set(settings, row, DistinctValue(key, ++n, key.binding.get(settings, row)));
  });
  return settings;
}

TEST(SettingsText, EveryKeyStandsForAFieldOfItsOwnAndComesBack) {
  const Settings settings = WithDistinctValues();
  const Settings former = WithRows();
  int n = 0;
  VisitValues(settings, [&](const SettingKey& key, std::size_t row) {
    const SettingBinding& binding = key.binding;
    // Two keys of one field: the second would have overwritten the first, or turned a flag back.
    const SettingValue formerValue = binding.get(former, row);
    EXPECT_EQ(binding.get(settings, row), DistinctValue(key, ++n, formerValue)) << binding.key << " " << row;
    EXPECT_NE(binding.get(settings, row), formerValue) << binding.key << " row " << row;
  });

  IniFile file;
  SaveSettingsText(file, settings);
  Settings loaded;
  const std::vector<std::string> remarks = LoadSettingsText(IniFile(file.Bytes()), loaded);
  EXPECT_EQ(loaded, settings);
  EXPECT_TRUE(remarks.empty()) << remarks.front();
}

// The layout of the file: what is written, in which order and with how many digits.
TEST(SettingsText, WrittenForm) {
  Settings settings;
  settings.analysis.asphereCoefficients = {0.0, -1.5e-7, 2.0};
  settings.analysis.parameters = {{"Ra", true, {true, false, true, 0.5, -1e-9}, 3}};
  settings.analysis.freeFormPoints.resize(2);
  IniFile file;
  SaveSettingsText(file, settings);
  EXPECT_TRUE(MatchesGolden("settings/written.ini", file.Bytes()));
  EXPECT_TRUE(CheckSettings(IniFile("; a comment\r\n\r\n" + file.Bytes())).empty());
}

TEST(SettingsText, AFileChangesOnlyWhatItHolds) {
  Settings settings = WithDistinctValues();
  Settings expected = settings;
  expected.analysis.LcCutoffMM = 2.5;
  expected.decision = {};  // in a file only where it was changed
  expected.display.ShowFeatures = false;
  expected.analysis.standard = {};  // written where it was changed: what is left out is the default
  EXPECT_TRUE(LoadSettingsText(IniFile("[ANALYSIS]\nLcCutoffMM=2.5\nLsCutoffMM=\n"), settings).empty());
  EXPECT_EQ(settings, expected);
}

TEST(SettingsText, ReadingRules) {
  const std::string longText = "0." + std::string(61, '1');
  const struct {
    std::string text;  // of the keys below
    bool flag;
    std::int32_t integer;
    double number;
    std::string name;
    std::size_t remarks;
  } cases[] = {
      {"TRUE", true, 0, 0.0, "TRUE", 2},
      {"yEs", true, 0, 0.0, "yEs", 2},
      {"no", false, 0, 0.0, "no", 2},
      {"-1", true, -1, -1.0, "-1", 0},
      {"0", false, 0, 0.0, "0", 0},
      {"abc", false, 0, 0.0, "abc", 3},
      {"12abc", true, 12, 12.0, "12abc", 3},
      {"0,8", false, 0, 0.0, "0,8", 3},
      {"4294967295", true, -1, 4294967295.0, "4294967295", 1},
      {"1.5e1", true, 1, 15.0, "1.5e1", 2},
      {"\" 2\"", true, 2, 2.0, " 2", 0},
      {"", true, 7, 7.0, "kept", 0},
      {"''", true, 7, 7.0, "kept", 0},
      {"inf", false, 0, 7.0, "inf", 3},
      {"nan", false, 0, 7.0, "nan", 3},
      {longText + "9", false, 0, 1.0 / 9.0, longText, 6},
  };
  for (const auto& c : cases) {
    Settings settings;
    settings.display.Metric = true;
    settings.analysis.FilterType = 7;
    settings.analysis.LcCutoffMM = 7.0;
    settings.display.CompanyName = "kept";
    const IniFile file("[display]\nMETRIC=" + c.text + "\ncompanyname = " + c.text +
                       "\n[Analysis]\nfiltertype=" + c.text + "\nlccutoffmm=" + c.text + "\n");
    EXPECT_EQ(LoadSettingsText(file, settings).size(), c.remarks) << c.text;
    EXPECT_EQ(settings.display.Metric, c.flag) << c.text;
    EXPECT_EQ(settings.analysis.FilterType, c.integer) << c.text;
    EXPECT_DOUBLE_EQ(settings.analysis.LcCutoffMM, c.number) << c.text;
    EXPECT_EQ(settings.display.CompanyName, c.name) << c.text;
  }
}

TEST(SettingsText, CountsAreNotTrusted) {
  const struct {
    std::string count;
    std::size_t parameters, coefficients, points;
  } cases[] = {{"128", 128, 100, 128},
               {"129", 128, 100, 129},
               {"4294967295", 0, 0, 0},
               {"-5", 0, 0, 0},
               {"2147483647", 128, 100, 750'000},
               {"3", 3, 3, 3}};
  for (const auto& [count, parameters, coefficients, points] : cases) {
    Settings settings;
    const auto remarks = LoadSettingsText(
        IniFile("[PARAMETERS]\nAvailableParameters=" + count + "\nName127=last\nName128=beyond\n" +
                "[ASPHERIC_PARAMETERS]\nNumCoefficients=" + count + "\n[FREE_FORM]\nFreeFormPoints=" + count +
                "\n[PRIMARY_HTPS]\nPrimaryAvailableHtps=" + count + "\nUpperPercent09=1\n"),
        settings);
    EXPECT_EQ(settings.analysis.parameters.size(), parameters) << count;
    EXPECT_EQ(settings.analysis.asphereCoefficients.size(), coefficients) << count;
    EXPECT_EQ(settings.analysis.freeFormPoints.size(), points) << count;
    EXPECT_EQ(settings.analysis.primaryHtps[9].upperPercent, 1.0) << count;
    EXPECT_TRUE(parameters != 128 || settings.analysis.parameters.back().name == "last") << count;
    if (count != "129") continue;
    EXPECT_EQ(remarks.at(0), "PARAMETERS.AvailableParameters: \"129\" is out of range: 0 to 128; it is read as 128.");
  }
}

TEST(SettingsText, SavingKeepsWhatItDoesNotKnow) {
  IniFile file("; mine\n[Notes]\nKey=1\n[analysis]\n lccutoffmm = 99 \n; between\nUnknown=x\n");
  SaveSettingsText(file, Settings());
  EXPECT_TRUE(file.Bytes().starts_with(
      "; mine\n[Notes]\nKey=1\n[analysis]\n lccutoffmm = 0.800000 \n; between\nUnknown=x\nCompTip"));
}

TEST(SettingsText, SettingOneKey) {
  Settings settings;
  settings.analysis.parameters.resize(4);
  EXPECT_EQ(SetOne(settings, "analysis.lccutoffmm", "2.5"), std::nullopt);
  EXPECT_EQ(SetOne(settings, "PARAMETERS.Selected03", "no"), std::nullopt);
  EXPECT_EQ(SetOne(settings, "ASPHERIC_PARAMETERS.A4", "-1e-9"), std::nullopt);
  EXPECT_EQ(SetOne(settings, "FREE_FORM.x000006(MM)", "3"), std::nullopt);
  EXPECT_EQ(SetOne(settings, "PRIMARY_BEARING_RATIOS.PDepthUM09", "1"), std::nullopt);
  EXPECT_EQ(SetOne(settings, "DISPLAY.CompanyName", ""), std::nullopt);
  EXPECT_EQ(SetOne(settings, "DISPLAY.Profile11AspectRatio", "False"), std::nullopt);
  EXPECT_EQ(SetOne(settings, "ASPHERIC_PARAMETERS.NumCoefficients", "3"), std::nullopt);
  Settings expected;
  expected.analysis.parameters.resize(4);
  expected.analysis.LcCutoffMM = 2.5;
  expected.analysis.parameters[3].selected = false;
  expected.analysis.asphereCoefficients = {0.0, 0.0, -1e-9};
  expected.analysis.freeFormPoints[3].xMM = 3.0;
  expected.analysis.primaryMaterialRatios[9].depthUM = 1.0;
  expected.display.Profile11AspectRatio = false;
  EXPECT_EQ(settings, expected);
}

TEST(SettingsText, SettingOneKeyIsRefused) {
  std::string text;
  for (const std::string_view call : {"LcCutoffMM=1",
                                      "FILTER.LcCutoffMM=1",
                                      "ANALYSIS.Lc=1",
                                      "DISPLAY.LcCutoffMM=1",
                                      "analysis.lccutoffmm=",
                                      "ANALYSIS.LcCutoffMM=0.8 mm",
                                      "ANALYSIS.LcCutoffMM=inf",
                                      "ANALYSIS.FilterType=1.5",
                                      "ANALYSIS.FilterType=4294967295",
                                      "DISPLAY.Metric=ja",
                                      "PARAMETERS.AvailableParameters=129",
                                      "PRIMARY_HTPS.PrimaryAvailableHtps=9",
                                      "PARAMETERS.Name00=Ra",
                                      "PRIMARY_HTPS.Selected10=1",
                                      "PRIMARY_HTPS.Selected1=1",
                                      "ASPHERIC_PARAMETERS.A3=1",
                                      "FREE_FORM.X99999999999999999999(mm)=1",
                                      "TEXTURON.IniVersion=2",
                                      "DECISION.DecisionRule=9",
                                      "STANDARD.Sections=0",
                                      "STANDARD.AutocorrelationLevel=-1.5",
                                      "STANDARD.MostSpacingUM=-1"}) {
    const std::size_t equals = call.find('=');
    Settings settings;
    text += SetOne(settings, call.substr(0, equals), call.substr(equals + 1)).value_or("taken") + "\n";
    EXPECT_EQ(settings, Settings()) << call;
  }
  EXPECT_TRUE(MatchesGolden("settings/refused.txt", text));
}

// No key of the table is of this kind; one of it is made here.
TEST(SettingsText, AKeyMayStandInAFileOnlyWhereItWasChanged) {
  SettingKey key = *FindSetting("ANALYSIS", "PolynomialOrder")->key;
  key.binding.written = KeyWritten::kWhereChanged;
  const std::span<const SettingKey> table(&key, 1);
  Settings settings;
  IniFile file;
  SaveSettingsText(file, settings, {}, table);
  EXPECT_EQ(file.Bytes(), "");
  settings.analysis.PolynomialOrder = 7;
  LoadSettingsText(file, settings, table);
  EXPECT_EQ(settings, Settings()) << "left out, so it is the default";
  settings.analysis.PolynomialOrder = 7;
  SaveSettingsText(file, settings, {}, table);
  EXPECT_EQ(file.Find("ANALYSIS", "PolynomialOrder"), "7");
  SaveSettingsText(file, Settings(), {}, table);
  EXPECT_EQ(file.Find("ANALYSIS", "PolynomialOrder"), "1") << "what stands there already follows";
}

// What a newer key cannot have is told and leaves its default; numbers of older ones are taken as they stand.
TEST(SettingsText, ANewerKeyKeepsItsLimits) {
  Settings settings;
  const IniFile file(
      "[ANALYSIS]\nFilterType=9\n[DECISION]\nDecisionRule=9\n[STANDARD]\nSections=0\nPruningPercent=7\nFeatures=101\n");
  const std::vector<std::string> remarks = LoadSettingsText(file, settings);
  const std::vector<std::string> expected = {"DECISION.DecisionRule: \"9\" is out of range: 0 to 2; it is read as 0.",
                                             "STANDARD.Sections: \"0\" is out of range: 1 to 1000; it is read as 5.",
                                             "STANDARD.Features: \"101\" is out of range: 0 to 100; it is read as 0."};
  EXPECT_EQ(remarks, expected);
  EXPECT_EQ(settings.analysis.FilterType, 9);
  EXPECT_EQ(settings.analysis.standard.PruningPercent, 7.0);
}

// The page is written by hand around the listing.
TEST(SettingsListing, TheManualHoldsTheWholeListing) {
  const std::string page = ReadWholeFile(std::string(TEXTURON_SOURCE_DIR) + "/docs/settings.md").bytes;
  EXPECT_NE(page.find(SettingsMarkdown()), std::string::npos) << "docs/settings.md is to hold:\n" << SettingsMarkdown();
}

TEST(SettingsChanges, OnlyWhatHasChangedIsCarried) {
  Settings before;
  before.analysis.parameters = {{.name = "Ra"}, {.name = "Rq"}};
  Settings after = before;
  after.analysis.LcCutoffMM = 2.5;
  after.display.Metric = false;
  after.autoLoading.AutoExport = true;
  after.analysis.parameters[1].tolerance.upperLimit = 4.0;
  Settings target = before;
  target.analysis.LsCutoffMM = 0.008;
  target.analysis.parameters[0].tolerance.upperLimit = 3.0;
  Settings expected = after;
  expected.analysis.LsCutoffMM = 0.008;
  expected.analysis.parameters[0].tolerance.upperLimit = 3.0;
  RepeatChanges(before, after, target);
  EXPECT_EQ(target, expected);
}

TEST(SettingsChanges, AListOfAnotherLengthIsTakenWhole) {
  Settings before;
  Settings after;
  after.analysis.freeFormPoints = {{1.0, 2.0}, {3.0, 4.0}};
  Settings target;
  target.analysis.freeFormPoints[0].xMM = 7.0;
  RepeatChanges(before, after, target);
  EXPECT_EQ(target, after);
  // A target with fewer rows keeps them.
  before = after;
  after.analysis.freeFormPoints[1].zUM = 5.0;
  target.analysis.freeFormPoints.resize(1);
  RepeatChanges(before, after, target);
  EXPECT_EQ(target.analysis.freeFormPoints, (std::vector<FreeFormPoint>{{1.0, 2.0}}));
}

}  // namespace
}  // namespace texturon
