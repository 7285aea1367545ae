// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_in_force.h"

#include <algorithm>

namespace texturon {
namespace {

/// Kept in the file, shown or exported, and read by no routine that makes a value.
constexpr std::string_view kWithoutEffect[] = {
    "StandardLcCutoff",
    "StandardLsCutoff",
    "UserLcCutoffMM",
    "UserLsCutoffMM",
    "RsmRzPercent",
    "RsmSamplingLengthPercent",
    "MotifRProfile",
    "MotifWProfile",
    "FreeFormPreviewMaxXMM",
    "FreeFormPreviewMinXMM",
    "FreeFormPreviewMaxYUM",
    "FreeFormPreviewMinYUM",
    "SelectionRef%02d",
    "HighlightIfOut%02d",
    "Class",
    "ClassTable",
    "MostSpacingUM",
    "MostTipRadiusUM",
    "Indication",
    "ShowFeatures",
};

bool IsForm(const Settings& settings, FormType form) {
  return settings.analysis.FormRemovalType == form;
}

/// The settings without what no result depends on: rows that are not selected.
Settings SelectedOnly(Settings settings) {
  std::erase_if(settings.analysis.parameters, [](const ParameterSelection& row) { return !row.selected; });
  const AnalysisSettings defaults;
  const auto reset = [](auto& rows, const auto& presets) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (!rows[i].selected) rows[i] = presets[i];
    }
  };
  reset(settings.analysis.primaryMaterialRatios, defaults.primaryMaterialRatios);
  reset(settings.analysis.roughnessMaterialRatios, defaults.roughnessMaterialRatios);
  reset(settings.analysis.primaryHtps, defaults.primaryHtps);
  reset(settings.analysis.roughnessHtps, defaults.roughnessHtps);
  return settings;
}

/// The count of a list without rows, which files leave out too.
bool IsListLeftOut(const SettingBinding& binding, const Settings& settings) {
  return binding.type == SettingType::kCount && binding.written == KeyWritten::kWhereChanged &&
         binding.rows->count(settings) == 0;
}

}  // namespace

bool ResultsDependOn(const SettingKey& key, const Settings& settings) {
  const SettingBinding& binding = key.binding;
  constexpr std::string_view kShownOnly[] = {"TEXTURON", "DISPLAY", "AUTO_LOADING"};
  const auto isOf = [](const auto& list, std::string_view word) {
    return std::find(std::begin(list), std::end(list), word) != std::end(list);
  };
  if (isOf(kShownOnly, binding.section) || isOf(kWithoutEffect, binding.key)) return false;
  switch (key.entry.group) {
    case SettingGroup::kStylus:
    case SettingGroup::kSagTable:
    case SettingGroup::kAsphericResidual:
    case SettingGroup::kModFiles:
      return false;
    case SettingGroup::kClearAperture:
      // Rows of slopes take their window from here, whatever the form.
      return IsForm(settings, kFormAsphere) || binding.key == "AsphereSlopeWindowMM";
    default:
      break;
  }
  const bool isOfRows2021 = key.entry.group == SettingGroup::kStandardRows || binding.key == "CoreFilter";
  if (isOfRows2021 && settings.analysis.standard.Edition == "1997") return false;
  if (binding.section == "ASPHERIC_PARAMETERS") return IsForm(settings, kFormAsphere);
  if (binding.section == "FREE_FORM") return IsForm(settings, kFormFree);
  return HasEffect(key, settings);
}

std::vector<SettingInForce> SettingsInForce(const Settings& settings) {
  const Settings selected = SelectedOnly(settings);
  Settings defaults;
  std::vector<SettingInForce> inForce;
  const std::span<const SettingKey> table = SettingsTable();
  for (std::size_t i = 0; i < table.size();) {
    const SettingBinding& first = table[i].binding;
    std::size_t end = i + 1;
    if (first.isRepeated()) {
      while (end < table.size() && table[end].binding.isRepeated() && table[end].binding.rows == first.rows) ++end;
      const std::size_t count = first.rows->count(selected);
      if (first.rows->count(defaults) < count) first.rows->resize(defaults, count);
      for (std::size_t row = 0; row < count; ++row) {
        for (std::size_t k = i; k < end; ++k) {
          const SettingBinding& binding = table[k].binding;
          if (!ResultsDependOn(table[k], selected)) continue;
          SettingValue value = binding.get(selected, row);
          if (value == binding.get(defaults, row)) continue;
          inForce.push_back({std::string(binding.section) + "." + KeyOfRow(binding, row), std::move(value)});
        }
      }
    } else if (ResultsDependOn(table[i], selected) && !IsListLeftOut(first, selected)) {
      inForce.push_back({std::string(first.section) + "." + std::string(first.key), first.get(selected, 0)});
    }
    i = end;
  }
  return inForce;
}

}  // namespace texturon
