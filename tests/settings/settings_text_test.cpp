// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_text.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "base/number_text.h"
#include "settings/settings_table.h"

namespace texturon {
namespace {

// A value of its own for the n-th key, which survives being written and differs from the default.
SettingValue DistinctValue(SettingType type, int n, const SettingValue& former) {
  switch (type) {
    case SettingType::kText:
      return "'text' " + IntegerText(n) + " \xB5 ";
    case SettingType::kInteger:
      return -1000 - n;
    case SettingType::kFlag:
      return !std::get<bool>(former);
    case SettingType::kCoefficient:
      return -0.25 * n;
    default:
      return 1000.0 * n + 0.015625;
  }
}

// Calls visit(binding, row) for each value of the settings but the counts and the version.
void VisitValues(const Settings& settings, const std::function<void(const SettingBinding&, std::size_t)>& visit) {
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    if (binding.type == SettingType::kCount || binding.type == SettingType::kVersion) continue;
    const std::size_t rows = binding.isRepeated() ? binding.rows->count(settings) : 1;
    for (std::size_t row = 0; row < rows; ++row) visit(binding, row);
  }
}

Settings WithRows() {
  Settings settings;
  settings.analysis.parameters.resize(107);
  settings.analysis.asphereCoefficients.resize(4);
  settings.analysis.freeFormPoints.resize(101);
  return settings;
}

Settings WithDistinctValues() {
  Settings settings = WithRows();
  int n = 0;
  VisitValues(settings, [&](const SettingBinding& binding, std::size_t row) {
    binding.set(settings, row, DistinctValue(binding.type, ++n, binding.get(settings, row)));
  });
  return settings;
}

TEST(SettingsText, EveryKeyStandsForAFieldOfItsOwnAndComesBack) {
  const Settings settings = WithDistinctValues();
  const Settings former = WithRows();
  int n = 0;
  VisitValues(settings, [&](const SettingBinding& binding, std::size_t row) {
    // Two keys of one field: the second would have overwritten the first, or turned a flag back.
    const SettingValue formerValue = binding.get(former, row);
    EXPECT_EQ(binding.get(settings, row), DistinctValue(binding.type, ++n, formerValue)) << binding.key << " " << row;
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
  IniFile file;
  SaveSettingsText(file, settings);
  const std::string bytes = file.Bytes();
  EXPECT_TRUE(bytes.starts_with("[TEXTURON]\r\nIniVersion=2.00\r\n[DISPLAY]\r\nIdentification=\r\nUpperIsSplit=0\r\n"));
  for (const std::string_view part : {
           "\r\n[ANALYSIS]\r\nCompTipRadiusWhenAvailble=1\r\nFormRemovalType=1\r\n",
           "\r\n[PARAMETERS]\r\nAvailableParameters=1\r\nName00=Ra\r\nSelected00=1\r\nHighlightIfOut00=1\r\n"
           "Toleranced00=1\r\nBilateralTol00=0\r\nMetricUpperTolLimit00=0.500000\r\n"
           "MetricLowerTolLimit00=-0.000000\r\nSelectionRef00=3\r\n"
           "[PRIMARY_BEARING_RATIOS]\r\nPrimaryAvailableBearingRatios=10\r\nPSelected00=0\r\n"
           "PMeanReferenced00=0\r\nPDepthUM00=0.500000\r\nPOffsetPercent00=2.000000\r\nHighlightIfOut00=1\r\n",
           "PDepthUM09=2.500000\r\nPOffsetPercent09=5.000000\r\n",
           "\r\n[ROUGHNESS_HTPS]\r\nRoughnessAvailableHtps=10\r\nSelected00=0\r\nUpperPercent00=50.000000\r\n"
           "LowerPercent00=10.000000\r\nHighlightIfOut00=1\r\nToleranced00=0\r\nBilateralTol00=0\r\n"
           "UpperTolLimitUM00=0.000000\r\nLowerTolLimitUM00=0.000000\r\nSelected01=0\r\n",
           "\r\nNumCoefficients=3\r\nA0=0.000000000000e+000\r\nA2=-1.500000000000e-007\r\n"
           "A4=2.000000000000e+000\r\nAsphereXFixed=0\r\n",
           "\r\nFreeFormPoints=100\r\nX000000(mm)=0.000000\r\nZ000000(um)=0.000000\r\nX000002(mm)=0.000000\r\n",
       }) {
    EXPECT_NE(bytes.find(part), std::string::npos) << part;
  }
  EXPECT_TRUE(bytes.ends_with("Z000198(um)=0.000000\r\n"));

  // What every file holds stays what it is; a newer key is written only where it was changed.
  const auto table = SettingsTable();
  EXPECT_EQ(std::count_if(table.begin(), table.end(),
                          [](const SettingKey& key) { return key.binding.written == KeyWritten::kAlways; }),
            186);
}

TEST(SettingsText, AFileChangesOnlyWhatItHolds) {
  Settings settings = WithDistinctValues();
  Settings expected = settings;
  expected.analysis.LcCutoffMM = 2.5;
  EXPECT_TRUE(LoadSettingsText(IniFile("[ANALYSIS]\nLcCutoffMM=2.5\nLsCutoffMM=\n"), settings).empty());
  EXPECT_EQ(settings, expected);
}

TEST(SettingsText, ReadingRules) {
  struct Case {
    std::string text;  // of the keys below
    bool flag;
    std::int32_t integer;
    double number;
    std::string name;
    std::size_t remarks;
  };
  const std::string longText = "0." + std::string(61, '1');
  const Case cases[] = {
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
  for (const Case& c : cases) {
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
  struct Case {
    std::string_view text;
    std::size_t parameters;
    std::size_t coefficients;
    std::size_t points;
  };
  const Case cases[] = {{"128", 128, 100, 128},
                        {"129", 128, 100, 129},
                        {"4294967295", 0, 0, 0},
                        {"-5", 0, 0, 0},
                        {"2147483647", 128, 100, 750'000},
                        {"3", 3, 3, 3}};
  for (const Case& c : cases) {
    Settings settings;
    const std::string count(c.text);
    LoadSettingsText(IniFile("[PARAMETERS]\nAvailableParameters=" + count + "\nName127=last\nName128=beyond\n" +
                             "[ASPHERIC_PARAMETERS]\nNumCoefficients=" + count + "\n[FREE_FORM]\nFreeFormPoints=" +
                             count + "\n[PRIMARY_HTPS]\nPrimaryAvailableHtps=" + count + "\nUpperPercent09=1\n"),
                     settings);
    EXPECT_EQ(settings.analysis.parameters.size(), c.parameters) << count;
    EXPECT_EQ(settings.analysis.asphereCoefficients.size(), c.coefficients) << count;
    EXPECT_EQ(settings.analysis.freeFormPoints.size(), c.points) << count;
    EXPECT_EQ(settings.analysis.primaryHtps[9].upperPercent, 1.0) << count;
    if (c.parameters != 128) continue;
    EXPECT_EQ(settings.analysis.parameters.back().name, "last") << count;
  }
  Settings settings;
  const auto remarks = LoadSettingsText(IniFile("[PARAMETERS]\nAvailableParameters=200"), settings);
  ASSERT_EQ(remarks.size(), 1U);
  EXPECT_EQ(remarks[0], "PARAMETERS.AvailableParameters: \"200\" is out of range: 0 to 128; it is read as 128.");
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
  struct Case {
    std::string_view name;
    std::string_view value;
    std::string_view error;
  };
  const Case cases[] = {
      {"LcCutoffMM", "1", "\"LcCutoffMM\" is not of the form SECTION.KEY"},
      {"FILTER.LcCutoffMM", "1", "there is no section \"FILTER\" in the settings"},
      {"ANALYSIS.Lc", "1", "there is no key \"Lc\" in the section \"ANALYSIS\""},
      {"DISPLAY.LcCutoffMM", "1", "there is no key \"LcCutoffMM\" in the section \"DISPLAY\""},
      {"ANALYSIS.LcCutoffMM", "0,8",
       "ANALYSIS.LcCutoffMM: \"0,8\" has a decimal comma, where numbers are written with a point"},
      {"analysis.lccutoffmm", "", "ANALYSIS.LcCutoffMM: \"\" is no number"},
      {"ANALYSIS.LcCutoffMM", "0.8 mm", "ANALYSIS.LcCutoffMM: \"0.8 mm\" goes on after the number"},
      {"ANALYSIS.LcCutoffMM", "inf", "ANALYSIS.LcCutoffMM: \"inf\" is no finite number"},
      {"ANALYSIS.FilterType", "1.5", "ANALYSIS.FilterType: \"1.5\" goes on after the number"},
      {"ANALYSIS.FilterType", "4294967295", "ANALYSIS.FilterType: \"4294967295\" is out of range"},
      {"DISPLAY.Metric", "ja", "DISPLAY.Metric: \"ja\" is neither 1 nor 0, true nor false, yes nor no"},
      {"PARAMETERS.AvailableParameters", "129", "PARAMETERS.AvailableParameters: \"129\" is out of range: 0 to 128"},
      {"PRIMARY_HTPS.PrimaryAvailableHtps", "9", "PRIMARY_HTPS.PrimaryAvailableHtps: \"9\" is out of range: always 10"},
      {"PARAMETERS.Name00", "Ra", "PARAMETERS.Name00 does not exist: the list has 0 rows"},
      {"PRIMARY_HTPS.Selected10", "1", "PRIMARY_HTPS.Selected10 does not exist: the list has 10 rows"},
      {"PRIMARY_HTPS.Selected1", "1", "there is no key \"Selected1\" in the section \"PRIMARY_HTPS\""},
      {"ASPHERIC_PARAMETERS.A3", "1", "there is no key \"A3\" in the section \"ASPHERIC_PARAMETERS\""},
      {"FREE_FORM.X99999999999999999999(mm)", "1",
       "there is no key \"X99999999999999999999(mm)\" in the section \"FREE_FORM\""},
      {"TEXTURON.IniVersion", "2", "TEXTURON.IniVersion cannot be set"},
  };
  for (const Case& c : cases) {
    Settings settings;
    EXPECT_EQ(SetOne(settings, c.name, c.value), c.error);
    EXPECT_EQ(settings, Settings()) << c.name;
  }
}

// Quadratic work would take hours; the limit leaves room for a slow machine and sanitizers.
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

TEST(SettingsText, TheLargestFreeFormTakesLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  Settings settings;
  settings.analysis.freeFormPoints.assign(kMostFreeFormPoints, {1.5, -0.25});
  IniFile file;
  SaveSettingsText(file, settings);
  Settings loaded;
  LoadSettingsText(IniFile(file.Bytes()), loaded);
  EXPECT_EQ(loaded.analysis.freeFormPoints, settings.analysis.freeFormPoints);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

}  // namespace
}  // namespace texturon
