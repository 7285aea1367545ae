// SPDX-License-Identifier: Apache-2.0

#include "presentation/shown_rows.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>

#include "parameters/ratio_rows.h"
#include "parameters/row_settings.h"
#include "support/loaded_document.h"
#include "support/row_value.h"

namespace texturon {
namespace {

using Keys = std::set<const SettingKey*>;

/// Every row of the catalogue over one rough record with a Gaussian filter.
Document Measured(std::int32_t fittingMethod) {
  std::vector<double> z = RandomSurface(9000, 7);
  for (std::size_t i = 0; i < z.size(); ++i) {
    z[i] -= z[i] < -1.0 ? (z[i] + 1.0) * -3.0 : 0.0;  // plateaus with grooves
    z[i] += 2.0 * std::sin(0.004 * static_cast<double>(i));
  }
  return Loaded(z, 1.0, [&](Settings& settings) {
    AnalysisSettings& s = settings.analysis;
    s.FilterType = kFilterGaussian;
    s.UserDiscardType = 3;
    s.UserDiscardLengthMM = 0.5;
    s.RqFittingMethod = fittingMethod;
    s.RxqMinimumValleyCount = 1;
    s.RxqLowerValleyCountPercent = 0.0;
    s.RxqUpperValleyCountPercent = 100.0;
    s.ClosingRadiusForWvoid = s.OpeningRadiusForWcvx = 2.0;
  });
}

bool ChangeOf(SettingValue& value, int how) {
  constexpr double kFactors[] = {0.5, 3.0, 100.0};
  if (double* const number = std::get_if<double>(&value))
    return *number = *number == 0.0 ? 98.0 : *number * kFactors[how], true;
  if (bool* const flag = std::get_if<bool>(&value)) return *flag = !*flag, how == 0;
  if (auto* const integer = std::get_if<std::int32_t>(&value)) {
    *integer = *integer * 1000 * how + (*integer == 0 ? 1 : 0);
    return true;
  }
  return false;
}

// The lists against what the values do when each setting in turn is changed.
TEST(ExplainRow, NamesTheSettingsThatAValueFollowsAndNoOthers) {
  std::set<std::pair<std::string, const SettingKey*>> followed;
  for (const std::int32_t method : {0, 1}) {
    Document start = Measured(method);
    Document before = start;
    Analyse(before);
    for (const SettingKey& key : SettingsTable()) {
      const SettingBinding& binding = key.binding;
      const bool isOfAnalysis =
          binding.section == "ANALYSIS" || binding.section == "RXQ_PARAMETERS" || binding.section == "MOTIF_PARAMETERS";
      if (!isOfAnalysis || binding.rows != nullptr || binding.key == "FormRemovalType") continue;
      for (int how = 0; how < 3; ++how) {
        Settings settings = start.settings;
        SettingValue value = binding.get(settings, 0);
        if (!ChangeOf(value, how)) continue;
        binding.set(settings, 0, value);
        Document after = start;
        ApplySettings(after, settings);
        Analyse(after);
        for (std::size_t i = 0; i < after.catalogue.rows.size(); ++i) {
          const ParameterDef& row = after.catalogue.rows[i];
          const ParameterDef& former = before.catalogue.rows[i];
          const bool isSame = row.valid == former.valid && (row.value == former.value || !row.valid);
          if (!isSame) followed.emplace(row.name, &key);
        }
      }
    }
    if (method == 0) continue;
    for (const MasterRow& row : MasterCatalogue()) {
      const auto own = SettingsOfRow(row.name);
      const auto ofProfile = SettingsOfProfile(row.name, start.settings);
      Keys told(own.begin(), own.end());
      for (const SettingKey* key : own) {
        // The largest of few motifs may stay: one row of the same settings is enough.
        const auto rows = MasterCatalogue();
        EXPECT_TRUE(
            std::any_of(rows.begin(), rows.end(),
                        [&](const MasterRow& other) {
                          return SettingsOfRow(other.name) == own && followed.contains({std::string(other.name), key});
                        }))
            << row.name << " by " << key->binding.key;
      }
      told.insert(ofProfile.begin(), ofProfile.end());
      for (const auto& [name, key] : followed) {
        EXPECT_TRUE(name != row.name || told.contains(key)) << name << " follows " << key->binding.key;
      }
    }
  }
}

TEST(ExplainRow, SaysWhatARowIsWhoSaysSoAndWhatIsInForce) {
  const Document document = Loaded({}, 1.0, [](Settings& s) { s.analysis.RcRzPercent = 12.0; });
  const ParameterExplanation rsm = ExplainRow(document, "Rsm");
  EXPECT_EQ(rsm.source, "ISO 4287:1997");
  EXPECT_EQ(rsm.settings.front().second, "12 %");
  for (const char* name : {"Pmr", "RHtp", "Pdq", "aw"}) {
    const std::string text = ExplainRow(document, name).definition;
    EXPECT_TRUE(text.ends_with('.') && text.size() > 20) << name;
  }
  EXPECT_EQ(ExplainRow(document, "Xyz").definition, "");
  for (const MasterRow& row : MasterCatalogue()) {
    EXPECT_TRUE(row.definition.ends_with('.') && std::isupper(row.definition.front())) << row.name;
  }
}

}  // namespace
}  // namespace texturon
