// SPDX-License-Identifier: Apache-2.0

#include "settings/setting_entry.h"

#include <algorithm>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "settings/settings_value.h"

namespace texturon {
namespace {

constexpr double kNoEnd = std::numeric_limits<double>::infinity();
/// Digits of a converted number: more would only show the conversion.
constexpr int kConvertedDecimals = 8;

struct UnitPair {
  std::string_view unit;
  std::string_view metric;
  std::string_view imperial;
  double factor;
};

constexpr UnitPair kUnits[] = {
    {"mm", "mm", "in", kInchesPerMillimetre},
    {"um", "\xB5m", "\xB5in", kMicroinchesPerMicrometre},
    {"1/mm", "1/mm", "1/in", kMillimetresPerInch},
    {"deg", "\xB0", "\xB0", 1.0},
};

const UnitPair* FindUnit(std::string_view unit) {
  const auto* const found =
      std::find_if(std::begin(kUnits), std::end(kUnits), [&](const UnitPair& pair) { return pair.unit == unit; });
  return found == std::end(kUnits) ? nullptr : found;
}

/// The same in the units shown.
std::string Shown(double value, const UnitPair* unit, bool metric) {
  return ShortestText(metric || unit == nullptr ? value : value * unit->factor);
}

std::string FaultOfLimits(const SettingKey& key, double value, bool metric) {
  const SettingLimits& limits = key.entry.limits;
  const UnitPair* const unit = FindUnit(key.unit);
  const bool isTooSmall = value < limits.least || (limits.excludesLeast && value == limits.least);
  if (!isTooSmall && value <= limits.most) return limits.excludesZero && value == 0.0 ? "Must not be 0" : "";
  const std::string least = Shown(limits.least, unit, metric);
  if (limits.most == kNoEnd) return (limits.excludesLeast ? "Must be above " : "Must not be below ") + least;
  return (limits.excludesLeast ? "Must be above " + least + " and at most " : "Must be from " + least + " to ") +
         Shown(limits.most, unit, metric);
}

}  // namespace

std::string EntryUnit(const SettingKey& key, bool metric) {
  const UnitPair* const unit = FindUnit(key.unit);
  return std::string(unit == nullptr ? key.unit : metric ? unit->metric : unit->imperial);
}

std::string EntryText(const SettingKey& key, const SettingValue& value, bool metric) {
  const UnitPair* const unit = FindUnit(key.unit);
  const double* const number = std::get_if<double>(&value);
  if (metric || unit == nullptr || number == nullptr) return ShowSetting(key.binding.type, value);
  return ShortestText(ParseDouble(ScientificText(*number * unit->factor, kConvertedDecimals)).value);
}

EntryReading ReadEntry(const SettingKey& key, std::string_view text, bool metric) {
  const SettingBinding& binding = key.binding;
  const ReadSettingResult read =
      ReadSetting(binding.type, binding.type == SettingType::kText ? text : TrimBlanks(text));
  EntryReading entry{read.value, FaultOfSetting(binding, read)};
  if (!entry.ok()) {
    entry.fault = Quoted(text) + " " + entry.fault;
    return entry;
  }
  if (auto* const number = std::get_if<double>(&entry.value)) {
    const UnitPair* const unit = FindUnit(key.unit);
    if (!metric && unit != nullptr) *number /= unit->factor;
    entry.fault = FaultOfLimits(key, *number, metric);
  } else if (const auto* integer = std::get_if<std::int32_t>(&entry.value)) {
    entry.fault = FaultOfLimits(key, *integer, metric);
  }
  return entry;
}

}  // namespace texturon
