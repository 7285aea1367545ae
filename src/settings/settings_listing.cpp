// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_listing.h"

#include <algorithm>

#include "settings/settings_table.h"
#include "settings/settings_value.h"

namespace texturon {
namespace {

std::string_view NameOfType(SettingType type) {
  switch (type) {
    case SettingType::kText:
      return "text";
    case SettingType::kInteger:
      return "integer";
    case SettingType::kFlag:
      return "flag";
    case SettingType::kNumber:
      return "number";
    case SettingType::kCoefficient:
      return "coefficient";
    case SettingType::kCount:
      return "count";
    case SettingType::kVersion:
      return "version";
  }
  return {};
}

std::string DefaultText(const SettingBinding& binding) {
  Settings settings;
  if (!binding.isRepeated()) return ShowSetting(binding.type, binding.get(settings, 0));
  // A list that starts empty shows what a new row starts with.
  if (binding.rows->count(settings) == 0) binding.rows->resize(settings, 1);
  std::vector<std::string> texts;
  for (std::size_t row = 0; row < binding.rows->count(settings); ++row) {
    texts.push_back(ShowSetting(binding.type, binding.get(settings, row)));
  }
  std::string all = texts.front();
  if (std::all_of(texts.begin(), texts.end(), [&](const std::string& text) { return text == all; })) return all;
  for (std::size_t row = 1; row < texts.size(); ++row) all += ", " + texts[row];
  return all;
}

}  // namespace

std::vector<SettingDescription> DescribeSettings() {
  std::vector<SettingDescription> rows;
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    const bool isWrittenAlways = binding.written == KeyWritten::kAlways;
    rows.push_back({binding.section, binding.key, NameOfType(binding.type), DefaultText(binding), key.unit, key.meaning,
                    key.choices, isWrittenAlways,
                    isWrittenAlways || !key.choices.empty() ? "" : RangeText(key.entry.limits)});
  }
  return rows;
}

std::string SettingsMarkdown() {
  std::string text;
  std::string_view section;
  for (const SettingDescription& row : DescribeSettings()) {
    if (row.section != section) {
      section = row.section;
      text.append(text.empty() ? "" : "\n").append("### ").append(section);
      text.append("\n\n| key | type | default | unit | meaning |\n|---|---|---|---|---|\n");
    }
    text.append("| `").append(row.key).append("` | ").append(row.type).append(" | ");
    if (!row.defaultText.empty()) text.append("`").append(row.defaultText).append("`");
    text.append(" | ").append(row.unit).append(" | ").append(row.meaning);
    if (!row.choices.empty()) text.append(": ").append(row.choices);
    if (!row.range.empty()) text.append("; ").append(row.range);
    if (!row.isWrittenAlways) text.append("; in the file only where it differs");
    text.append(" |\n");
  }
  return text;
}

}  // namespace texturon
