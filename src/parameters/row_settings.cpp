// SPDX-License-Identifier: Apache-2.0

#include "parameters/row_settings.h"

#include <algorithm>

#include "base/text.h"
#include "parameters/suffix_table.h"

namespace texturon {
namespace {

bool IsListed(std::string_view list, std::string_view word) {
  for (std::size_t at = list.find(word); at != std::string_view::npos; at = list.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    if ((at == 0 || list[at - 1] == ' ') && (end == list.size() || list[end] == ' ')) return true;
  }
  return false;
}

/// True for the key of a field: its value is another where the field is.
bool IsKeyOf(const SettingBinding& binding, LetterSettings::Field field) {
  if (binding.rows != nullptr || binding.type != SettingType::kNumber) return false;
  const Settings before;
  Settings after;
  after.analysis.*field += 1.0;
  return binding.get(before, 0) != binding.get(after, 0);
}

const RowSettings* FindRowSettings(std::string_view name) {
  if (const WholeNameRow* const whole = FindWholeNameRow(name)) return &whole->settings;
  const SuffixRow* const suffix = name.empty() ? nullptr : FindSuffix(name.substr(1));
  return suffix != nullptr ? &suffix->settings : nullptr;
}

/// Settings that go into profiles of these letters: a key, or a whole box of the settings sheet.
struct ProfileSettings {
  std::string_view letters;
  std::string_view key;
  SettingGroup group = SettingGroup::kNone;
};

constexpr ProfileSettings kProfileSettings[] = {
    {"FPWR", {}, SettingGroup::kForm},
    {"FPWR", {}, SettingGroup::kFitPoints},
    {"PWR", "LsCutoffMM"},
    {"WR", {}, SettingGroup::kFilter},
    {"WR", "LcCutoffMM"},
    {"WR", {}, SettingGroup::kEnds},
};

}  // namespace

std::vector<const SettingKey*> SettingsOfRow(std::string_view name) {
  std::vector<const SettingKey*> keys;
  const RowSettings* const row = FindRowSettings(name);
  if (row == nullptr) return keys;
  const LetterSettings& letter = SettingsOfLetter(UpperAscii(name.front()));
  std::vector<LetterSettings::Field> fields;
  if (row->discrimination != nullptr) {
    const auto& [height, width] = letter.*(row->discrimination);
    fields = {height, width};
  }
  if (row->level != nullptr) fields.push_back(letter.*(row->level));
  for (const SettingKey& key : SettingsTable()) {
    const bool isField = std::any_of(fields.begin(), fields.end(),
                                     [&key](LetterSettings::Field field) { return IsKeyOf(key.binding, field); });
    if (isField || IsListed(row->keys, key.binding.key)) keys.push_back(&key);
  }
  return keys;
}

std::vector<const SettingKey*> SettingsOfProfile(std::string_view name, const Settings& settings) {
  std::vector<const SettingKey*> keys;
  if (name.empty()) return keys;
  const char letter = FindWholeName(name) != nullptr ? 'P' : UpperAscii(name.front());
  for (const SettingKey& key : SettingsTable()) {
    const bool goesIn =
        std::any_of(std::begin(kProfileSettings), std::end(kProfileSettings), [&](const ProfileSettings& row) {
          return row.letters.find(letter) != std::string_view::npos &&
                 (row.key.empty() ? row.group == key.entry.group : row.key == key.binding.key);
        });
    if (goesIn && HasEffect(key, settings)) keys.push_back(&key);
  }
  return keys;
}

}  // namespace texturon
