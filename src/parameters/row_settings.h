// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>
#include <vector>

#include "settings/settings_table.h"

namespace texturon {

/// The settings that a row's value depends on besides its profile, in the order of the settings table: discrimination
/// of elements, levels, windows, radii. Empty for a name that no routine computes.
std::vector<const SettingKey*> SettingsOfRow(std::string_view name);

/// The settings that make the profile of a row's letter (that of the primary profile for a motif row) and have an
/// effect with these settings: form, filters, ends. The numbers of an asphere or a free form are told by
/// FormRemovalType.
std::vector<const SettingKey*> SettingsOfProfile(std::string_view name, const Settings& settings);

}  // namespace texturon
