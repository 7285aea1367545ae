// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_check.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "settings/setting_bindings.h"
#include "settings/settings_table.h"
#include "settings/settings_value.h"

namespace texturon {
namespace {

using RowCounts = std::unordered_map<const SettingRows*, std::size_t>;

// The rows that a list has by the file's own count; the most, or as many as by default, where the file gives none or
// one that is not taken.
std::size_t RowsInFile(const IniFile& file, const SettingRows& rows) {
  for (const SettingKey& key : SettingsTable()) {
    if (key.binding.rows != &rows || key.binding.type != SettingType::kCount) continue;
    const std::string_view text = file.Find(key.binding.section, key.binding.key).value_or(std::string_view());
    const ReadSettingResult read = ReadSetting(SettingType::kCount, text);
    const bool isTaken = !text.empty() && CanHave(key, read.value);
    if (!isTaken) return key.binding.written == KeyWritten::kAlways ? rows.most : rows.count(Settings());
    return std::clamp(static_cast<std::size_t>(std::max(std::get<std::int32_t>(read.value), 0)), rows.least, rows.most);
  }
  return rows.most;
}

// What is wrong with one entry, going on after its name; empty: nothing.
std::string FaultOfEntry(const IniEntry& entry, const RowCounts& rowCounts, TextCheck faultOfFeature) {
  const std::optional<SettingPlace> place = FindSetting(entry.section, entry.key);
  if (!place) return " is no setting";
  if (entry.shadowed) return " occurs again; only the first one is read";
  const SettingBinding& binding = place->key->binding;
  if (binding.isRepeated() && place->row >= rowCounts.at(binding.rows)) {
    const auto rows = static_cast<std::int64_t>(rowCounts.at(binding.rows));
    return " lies beyond the list's " + IntegerText(rows) + " rows";
  }
  if (entry.value.size() > kIniValueLength) return " is longer than 63 characters and will be cut";
  if (entry.value.empty()) return {};
  std::string fault = FaultOfSetting(*place->key, ReadSetting(binding.type, entry.value));
  if (fault.empty() && binding.rows == &kFeatureRows && binding.isRepeated()) fault = faultOfFeature(entry.value);
  return fault.empty() ? fault : ": " + Quoted(entry.value) + " " + fault;
}

}  // namespace

std::vector<SettingsProblem> CheckSettings(const IniFile& file, TextCheck faultOfFeature) {
  RowCounts rowCounts;
  for (const SettingKey& key : SettingsTable()) {
    const SettingRows* rows = key.binding.rows;
    if (rows != nullptr && !rowCounts.contains(rows)) rowCounts.emplace(rows, RowsInFile(file, *rows));
  }

  std::vector<SettingsProblem> problems;
  std::unordered_set<std::string> unknownSections;
  for (const IniSectionHeader& header : file.Sections()) {
    if (!IsSettingsSection(header.name)) {
      problems.push_back({header.line, "there is no section " + Quoted(header.name) + " in the settings"});
      unknownSections.insert(std::string(header.name));
    } else if (header.shadowed) {
      problems.push_back({header.line, "the section " + Quoted(header.name) + " occurs again; only the first is read"});
    }
  }
  for (const IniEntry& entry : file.Entries()) {
    if (unknownSections.contains(std::string(entry.section))) continue;
    if (entry.section.empty()) {
      problems.push_back({entry.line, Quoted(entry.key) + " stands before any section"});
      continue;
    }
    const std::string fault = FaultOfEntry(entry, rowCounts, faultOfFeature);
    if (fault.empty()) continue;
    problems.push_back({entry.line, std::string(entry.section) + "." + std::string(entry.key) + fault});
  }
  for (const std::size_t line : file.StrayLines()) {
    problems.push_back({line, "the line is neither a section nor KEY=VALUE"});
  }
  std::stable_sort(problems.begin(), problems.end(),
                   [](const SettingsProblem& a, const SettingsProblem& b) { return a.line < b.line; });
  return problems;
}

}  // namespace texturon
