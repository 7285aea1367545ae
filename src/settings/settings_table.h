// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "settings/settings.h"

namespace texturon {

/// How a value is written and read.
enum class SettingType {
  Text,
  Integer,
  Flag,
  Number,       // fixed, six decimals
  Coefficient,  // scientific, twelve decimals
  Count,        // an integer that says how many rows follow
  Version,      // a number with two decimals that every written file carries
};

/// Text holds a string, Flag a bool, Integer and Count an int32, the other types a double.
using SettingValue = std::variant<std::string, std::int32_t, bool, double>;

/// A list of rows in the settings, which holds `least` to `most` of them. Row i is written under the number
/// i * numberStep.
struct SettingRows {
  std::size_t least;
  std::size_t most;
  std::size_t numberStep;
  std::size_t (*count)(const Settings&);
  void (*resize)(Settings&, std::size_t);
};

/// Which value of the settings a key stands for. `row` counts where the key repeats and is ignored elsewhere; it must
/// be below the count of `rows`.
struct SettingBinding {
  std::string_view section;
  std::string_view key;  // "Name%02d" where it repeats: a number of at least so many digits
  SettingType type;
  SettingValue (*get)(const Settings&, std::size_t row);
  void (*set)(Settings&, std::size_t row, const SettingValue& value);
  const SettingRows* rows = nullptr;  // of a count and of the keys that repeat by it

  bool isRepeated() const { return rows != nullptr && type != SettingType::Count; }
};

struct SettingKey {
  SettingBinding binding;
  std::string_view unit = {};
  std::string_view meaning = {};
  std::string_view choices = {};  // "0 none, 1 line" where the numbers have names
};

/// Every key of the settings file in the file's order; keys of the same rows stand together. To add a setting is a
/// field in settings.h and a row here: reading, writing, --set, the listing and the documentation go by this table.
std::span<const SettingKey> SettingsTable();

/// The key of a row as it stands in a file: Name03, X000006(mm); the key itself where it does not repeat.
std::string KeyOfRow(const SettingBinding& binding, std::size_t row);

struct SettingPlace {
  const SettingKey* key = nullptr;
  std::size_t row = 0;
};

/// Finds a key as it stands in a file, in any case. Any row is found, also one beyond the count.
std::optional<SettingPlace> FindSetting(std::string_view section, std::string_view key);
bool IsSettingsSection(std::string_view section);

}  // namespace texturon
