// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "settings/setting_groups.h"
#include "settings/settings.h"

namespace texturon {

/// How a value is written and read.
enum class SettingType {
  kText,
  kInteger,
  kFlag,
  kNumber,       // fixed, six decimals
  kCoefficient,  // scientific, twelve decimals
  kCount,        // an integer that says how many rows follow
  kVersion,      // a number with two decimals that every written file carries
};

/// When a key stands in a file. One that is written where it was changed has its default in a file that leaves it out.
enum class KeyWritten : std::uint8_t { kAlways, kWhereChanged };

/// kText holds a string, kFlag a bool, kInteger and kCount an int32, the other types a double.
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
  KeyWritten written = KeyWritten::kAlways;
  std::string_view words = {};  // what a text may be, separated by commas; empty: any text

  bool isRepeated() const { return rows != nullptr && type != SettingType::kCount; }
};

/// What may be entered, in the setting's own unit; a file may hold more of a key that always stands there.
struct SettingLimits {
  double least = -std::numeric_limits<double>::infinity();
  double most = std::numeric_limits<double>::infinity();
  bool excludesLeast = false;
  bool excludesZero = false;

  bool isBelow(double value) const { return value < least || (excludesLeast && value == least); }
  bool isAbove(double value) const { return value > most; }
  bool Hold(double value) const { return !isBelow(value) && !isAbove(value) && !(excludesZero && value == 0.0); }
};

/// The number or flag that another setting must have.
struct SettingCondition {
  SettingBinding binding;
  std::int32_t value;
};

/// How a setting is entered.
struct SettingEntry {
  SettingGroup group = SettingGroup::kNone;
  int rank = 0;  // places in the group, those of one rank in the table's order
  SettingLimits limits = {};
  std::optional<SettingCondition> needs = {};  // it has an effect, and can be entered, only then
  const char* columnTitle = "";                // of a list shown as a table

  constexpr SettingEntry Behind(int wantedRank) const {
    SettingEntry entry = *this;
    entry.rank = wantedRank;
    return entry;
  }
  constexpr SettingEntry While(const SettingBinding& binding, std::int32_t value) const {
    SettingEntry entry = *this;
    entry.needs = {binding, value};
    return entry;
  }
};

struct SettingKey {
  SettingBinding binding;
  std::string_view unit = {};
  std::string_view meaning = {};
  std::string_view choices = {};  // "0 none, 1 line" where the numbers have names
  SettingEntry entry = {};
};

/// Every key of the settings file in the file's order; keys of the same rows stand together. To add a setting is a
/// field in settings.h and a row here: reading, writing, --set, the listing, the documentation and the window's sheets
/// go by this table.
std::span<const SettingKey> SettingsTable();

/// The words that a text may be, the empty one first where it may be left out; none: any text.
std::vector<std::string_view> WordsOf(const SettingBinding& binding);

/// The key of a row as it stands in a file: Name03, X000006(mm); the key itself where it does not repeat.
std::string KeyOfRow(const SettingBinding& binding, std::size_t row);

struct SettingPlace {
  const SettingKey* key = nullptr;
  std::size_t row = 0;
};

/// Finds a key as it stands in a file, in any case. Any row is found, also one beyond the count.
std::optional<SettingPlace> FindSetting(std::string_view section, std::string_view key);

/// True where the condition of a setting is met, or where it has none.
bool HasEffect(const SettingKey& key, const Settings& settings);

bool IsSettingsSection(std::string_view section);

}  // namespace texturon
