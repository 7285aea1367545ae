// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "settings/settings_table.h"

namespace texturon {

/// The text of a value in the settings file. Text itself stays as it is.
std::string WriteSetting(SettingType type, const SettingValue& value);

/// The text of a value for people: as in the file, but numbers at full precision and as short as they can be.
std::string ShowSetting(SettingType type, const SettingValue& value);

struct ReadSettingResult {
  SettingValue value;
  /// Why the text is not quite a value ("is no number"), going on after it; empty where all of it was understood.
  std::string_view fault;
  /// False for a number that is infinite or NaN: then `value` must not be used.
  bool usable = true;
};

/// Reads a value as the file's rules have it: a number as far as its leading digits go, 0 without any; a flag is true
/// for "true" and "yes" in any case and for a number other than 0. What these rules pass over is named in `fault`.
ReadSettingResult ReadSetting(SettingType type, std::string_view text);

/// "1 to 1000" or "from 0 on"; empty: any number.
std::string RangeText(const SettingLimits& limits);

/// True for a value that the key can have: a text is one of its words, and a key that is written only where it was
/// changed keeps its limits. A file's other numbers are taken as they are.
bool CanHave(const SettingKey& key, const SettingValue& value);

/// What is wrong with a value for this key, going on after its text: the fault of reading it, a value that it cannot
/// have, or a count that its list cannot have ("is out of range: 0 to 128"). Empty: nothing.
std::string FaultOfSetting(const SettingKey& key, const ReadSettingResult& read);

}  // namespace texturon
