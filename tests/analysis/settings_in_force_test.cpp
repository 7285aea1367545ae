// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_in_force.h"

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analysis/record_trial.h"
#include "base/number_text.h"
#include "settings/settings_text.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

std::vector<std::uint64_t> BitsOf(const Settings& settings) {
  std::vector<double> heights(4000);
  double walk = 0.0;
  for (std::size_t i = 0; i < heights.size(); ++i) {
    walk += static_cast<double>((i * 7919 + i * i * 31) % 1001) / 1000.0 - 0.5;
    heights[i] = walk + static_cast<double>(i % 83) / 40.0;
  }
  Document document = Loaded(heights, 1.0, [&](Settings& own) { own = settings; });
  Analyse(document);
  std::vector<std::uint64_t> bits;
  for (const double value : ValuesOf(document)) bits.push_back(std::bit_cast<std::uint64_t>(value));
  return bits;
}

SettingValue Another(const SettingValue& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return !*flag;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number + 1;
  if (const auto* number = std::get_if<double>(&value)) return *number * 1.5 + 0.1;
  return "another";
}

// What is left out of the settings in force moves no value, for a form of every kind that has settings of its own.
TEST(SettingsInForce, NoResultDependsOnWhatIsLeftOut) {
  for (const FormType form : {kFormLine, kFormPolynomial, kFormFilter}) {
    Settings settings = MakeDocument().settings;
    settings.analysis.FormRemovalType = form;
    settings.analysis.PolynomialOrder = 2;
    const auto bits = BitsOf(settings);
    std::size_t tried = 0;
    for (const SettingKey& key : SettingsTable()) {
      const std::string_view section = key.binding.section;
      if (ResultsDependOn(key, settings) || section == "DISPLAY" || section == "AUTO_LOADING") continue;
      if (key.binding.type == SettingType::kVersion) continue;
      Settings other = settings;
      key.binding.set(other, 0, Another(key.binding.get(settings, 0)));
      EXPECT_TRUE(BitsOf(other) == bits) << section << "." << key.binding.key;
      ++tried;
    }
    EXPECT_GT(tried, 40u);
  }
}

// Set one after the other they make the same settings, but for what does not matter.
TEST(SettingsInForce, AreEnough) {
  Settings settings = MakeDocument().settings;
  settings.analysis.parameters[3].selected = false;
  settings.analysis.parameters[4].tolerance = {.toleranced = true, .bilateral = true, .upperLimit = 2, .lowerLimit = 1};
  settings.analysis.roughnessHtps[9].selected = true;
  settings.analysis.FormRemovalType = kFormFree;
  settings.analysis.freeFormPoints = {{0, 0}, {1, 2}, {2, 0}};
  settings.decision.DecisionRule = kDecideGuarded;
  settings.analysis.standard.features = {"P: FC; D; None; All; HDh; Mean", "FC; V; None; All; Count; Sum"};
  Settings again;
  for (const SettingInForce& setting : SettingsInForce(settings)) {
    std::string text;
    if (const auto* number = std::get_if<double>(&setting.value)) text = ShortestText(*number);
    if (const auto* number = std::get_if<std::int32_t>(&setting.value)) text = IntegerText(*number);
    if (const auto* flag = std::get_if<bool>(&setting.value)) text = *flag ? "1" : "0";
    if (const auto* name = std::get_if<std::string>(&setting.value)) text = *name;
    EXPECT_FALSE(SetOne(again, setting.name, text)) << setting.name;
  }
  std::erase_if(settings.analysis.parameters, [](const ParameterSelection& row) { return !row.selected; });
  for (ParameterSelection& row : settings.analysis.parameters) row.selectionRef = 0;
  EXPECT_TRUE(again == settings);
}

}  // namespace
}  // namespace texturon
