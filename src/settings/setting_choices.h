// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "settings/settings_table.h"

namespace texturon {

/// A number with a name that a setting may have.
struct SettingChoice {
  std::int32_t value = 0;
  std::string name;
  bool isRest = false;  ///< also every number that no other choice has
};

/// The named numbers of a setting, taken from its `choices`. Empty: any number, or no number at all.
std::vector<SettingChoice> ChoicesOf(const SettingKey& key);

/// Index of the choice that a number falls under. Empty: none.
std::optional<std::size_t> ChoiceOf(const std::vector<SettingChoice>& choices, std::int32_t value);

/// A value as people read it, with its unit: "0.8 mm", "Spline Gaussian", "yes".
std::string DescribeValue(const SettingKey& key, const SettingValue& value);

}  // namespace texturon
