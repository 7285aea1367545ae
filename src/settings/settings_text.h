// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/ini_file.h"
#include "settings/settings_table.h"

namespace texturon {

/// Whether a text of the settings has the length at which LoadSettingsText cuts: what it names may be something else.
bool MayBeCut(std::string_view text);

/// Takes every value of the file into the settings. A key that is absent or empty leaves its field, or puts the default
/// into one that is written only where it was changed; a value is cut to
/// 63 characters and a malformed number read as far as its leading digits go. Departures from what the file's author
/// may have meant come back as remarks, at most some twenty of them: a value that was cut or not fully understood, an
/// infinite number or NaN (the field then keeps its value), a count above the most that a list holds (taken as the
/// most; a negative one as none). The lists of ten rows are ten whatever their count says. New rows of a list start
/// with the defaults of a row.
std::vector<std::string> LoadSettingsText(const IniFile& file, Settings& settings,
                                          std::span<const SettingKey> table = SettingsTable());

/// Sets every key of the table, or of one section and the version, in the table's order; other keys, sections and
/// comments of the file stay. What is written only where it was changed is added only there.
void SaveSettingsText(IniFile& file, const Settings& settings, std::string_view onlySection = {},
                      std::span<const SettingKey> table = SettingsTable());

/// Sets the one setting that `name` ("ANALYSIS.LcCutoffMM", "PARAMETERS.Selected03", in any case) stands for. Stricter
/// than the file: what is not wholly a value of the key's type, a row beyond the count and a count beyond the limits
/// are refused. Returns why, as a sentence without the full stop; empty: done. A refusal leaves the settings alone.
std::optional<std::string> SetOne(Settings& settings, std::string_view name, std::string_view value);

}  // namespace texturon
