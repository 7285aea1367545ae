// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "settings/settings_table.h"

namespace texturon {

// Settings as people enter them: in the units shown, within limits that make sense. The file takes more.

/// Unit of an entry; empty: none. Windows-1252.
std::string EntryUnit(const SettingKey& key, bool metric);

/// The text with which an entry starts.
std::string EntryText(const SettingKey& key, const SettingValue& value, bool metric);

struct EntryReading {
  SettingValue value;  ///< in the setting's own unit
  std::string fault;   ///< a sentence without its full stop; empty: the value may be used

  bool ok() const { return fault.empty(); }
};

EntryReading ReadEntry(const SettingKey& key, std::string_view text, bool metric);

}  // namespace texturon
