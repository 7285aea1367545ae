// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_changes.h"

#include <cstddef>

#include "settings/settings_table.h"

namespace texturon {
namespace {

void Take(const SettingBinding& binding, std::size_t row, const Settings& after, Settings& target) {
  binding.set(target, row, binding.get(after, row));
}

void RepeatInRows(const SettingBinding& binding, const Settings& before, const Settings& after, Settings& target) {
  const std::size_t count = binding.rows->count(after);
  const bool isWhole = binding.rows->count(before) != count;
  if (isWhole) binding.rows->resize(target, count);
  for (std::size_t row = 0; row < count && row < binding.rows->count(target); ++row) {
    if (isWhole || binding.get(before, row) != binding.get(after, row)) Take(binding, row, after, target);
  }
}

}  // namespace

void RepeatChanges(const Settings& before, const Settings& after, Settings& target) {
  if (before == after) return;
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    if (binding.type == SettingType::kCount || binding.type == SettingType::kVersion) continue;
    if (binding.rows != nullptr) {
      RepeatInRows(binding, before, after, target);
    } else if (binding.get(before, 0) != binding.get(after, 0)) {
      Take(binding, 0, after, target);
    }
  }
}

}  // namespace texturon
