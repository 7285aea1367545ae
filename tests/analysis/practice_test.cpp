// SPDX-License-Identifier: Apache-2.0

#include "analysis/practice.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <numbers>
#include <set>
#include <string>
#include <vector>

#include "settings/settings_in_force.h"
#include "settings/settings_text.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

ProfileSet Record() {
  std::vector<double> heights(8000);
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const auto x = static_cast<double>(i);
    heights[i] = std::sin(x / 30.0) + 0.4 * std::sin(x / 7.3) + 2.0 * std::sin(x / 1900.0) + 1e-8 * x * x;
  }
  return MakeProfileSet(heights, 1.0);
}

Practice Base() {
  Practice practice{.settings = MakeDocument().settings};
  practice.settings.analysis.ResidualType = kResidualVertical;
  practice.settings.analysis.parameters = {{.name = "Ra"}, {.name = "RzDIN"}, {.name = "Rsm"}, {.name = "Rpc"}};
  return practice;
}

// The whole way, one step of each kind: the changes add up, and a step that is the only one is alone what it changes.
TEST(Practices, StepsAddUpToTheDifference) {
  const Practice a = Base();
  Practice b = Base();
  b.settings.analysis.FormRemovalType = kFormArc;
  b.settings.analysis.LsCutoffMM = 0.008;
  b.settings.analysis.FilterType = kFilterGaussian;
  b.settings.analysis.LcCutoffMM = 2.5;
  b.settings.analysis.UserDiscardType = kDiscardHalfCutoff;
  b.settings.analysis.RcRzPercent = 25.0;
  b.settings.analysis.RoughnessPcLevel = 5.0;
  for (const auto& [key, value] : {std::pair("Region", "1,0.5,0,6"), {"SpacingUM", "1.25"}, {"HeightFactor", "1.1"}}) {
    EXPECT_EQ(SetScope(b, key, value), "");
  }
  const std::vector<ComparedRow> rows = ComparePractices(Record(), a, b);
  ASSERT_EQ(rows.size(), 4u);
  for (const ComparedRow& row : rows) {
    ASSERT_EQ(row.steps.size(), PracticeSteps().size() - 1) << row.name;  // all but the edition
    double sum = 0.0, alone = 0.0;
    for (const StepChange& step : row.steps) {
      sum += *step.change;
      alone += *step.alone;
    }
    EXPECT_NEAR(sum, *row.Difference(), 1e-12 * (1.0 + std::abs(*row.a))) << row.name;
    EXPECT_NEAR(*row.Interaction(), *row.Difference() - alone, 1e-12 * (1.0 + std::abs(*row.a)));
    EXPECT_EQ(row.steps.front().change, row.steps.front().alone);
  }
  EXPECT_EQ(rows[0].steps.back().step, "parameter definition");
  EXPECT_EQ(*rows[0].steps.back().change, 0.0) << "Ra does not know the level of peaks";
  EXPECT_NE(*rows[3].steps.back().change, 0.0);
  // Alone, heights by a tenth more are Ra by a tenth more, and spacing goes through the filters.
  Practice taller = Base();
  taller.heightFactor = 1.1;
  const ComparedRow ra = ComparePractices(Record(), a, taller).front();
  EXPECT_NEAR(*ra.b, 1.1 * *ra.a, 1e-12);
  EXPECT_EQ(ra.steps.size(), 1u);
  EXPECT_TRUE(ComparePractices(Record(), a, a).front().steps.empty());
  // Another edition has other rows, some under the same name.
  Practice edition = Base();
  edition.settings.analysis.standard.Edition = "2021";
  const std::vector<ComparedRow> editions = ComparePractices(Record(), a, edition);
  EXPECT_EQ(editions[0].steps.size(), 1u);
  EXPECT_EQ(editions[0].steps.front().step, "edition");
  EXPECT_TRUE(editions[0].a && editions[0].b) << "Ra";
  EXPECT_FALSE(editions[1].b || editions[1].steps.front().change) << "RzDIN";
  // Where a side has no value, nothing is told of the way.
  Practice none = Base();
  none.scope.region = RegionChoice{.mode = kStartAndLength, .lengthMM = 0.01};
  const ComparedRow missing = ComparePractices(Record(), a, none).front();
  EXPECT_FALSE(missing.b || missing.steps.front().change || missing.Interaction());
}

TEST(Practices, EverySettingBelongsToOneStep) {
  std::map<std::string_view, std::size_t> counts;
  Settings settings = MakeDocument().settings;
  for (const FormType form : {kFormAsphere, kFormFree}) {
    settings.analysis.FormRemovalType = form;
    for (const SettingKey& key : SettingsTable()) {
      const PracticeStep* const step = StepOf(key);
      if (step != nullptr) ++counts[step->name];
      const bool isSelection = key.binding.section == "PARAMETERS" || key.binding.section == "DECISION";
      EXPECT_TRUE(step != nullptr || isSelection || !ResultsDependOn(key, settings)) << key.binding.key;
    }
  }
  for (const PracticeStep& step : PracticeSteps()) {
    EXPECT_TRUE(counts.contains(step.name) || step.takeScope != nullptr) << step.name;
  }
  EXPECT_EQ(counts["cut-off"], 2u);
}

TEST(Practices, TheirFilesAreUnderstood) {
  std::set<std::string> titles;
  for (const EmbeddedFile& file : PracticeFiles()) {
    const IniFile ini{std::string(file.text)};
    Practice practice = Base();
    practice.settings.analysis.standard.Sections = 3;
    EXPECT_EQ(TakePractice(file, practice), "") << file.name;
    EXPECT_EQ(practice.settings.analysis.standard.Sections, 3) << "only what it is about";
    for (const IniEntry& entry : ini.Entries()) {
      EXPECT_TRUE(entry.section == kScopeSection || FindSetting(entry.section, entry.key)) << file.name << entry.key;
    }
    EXPECT_FALSE(TitleOf(file).remark.empty());
    titles.insert(TitleOf(file).title);
  }
  EXPECT_EQ(titles.size(), PracticeFiles().size());
  Practice practice = Base();
  for (const auto& [key, value] : {std::pair("Region", "1,2,3"),
                                   {"Region", "1e300,0,0,1"},
                                   {"Region", "0.5,0,0,1"},
                                   {"Exclude", "1e30,5"},
                                   {"SpacingUM", "0"},
                                   {"WholeCutoffs", "maybe"},
                                   {"X", "1"}}) {
    EXPECT_NE(SetScope(practice, key, value), "") << key;
  }
}

}  // namespace
}  // namespace texturon
