// SPDX-License-Identifier: Apache-2.0

#include "settings/setting_entry.h"

#include <limits>
#include <utility>

#include "base/number_text.h"
#include "base/quantity.h"
#include "base/text.h"
#include "settings/settings_value.h"

namespace texturon {
namespace {

constexpr double kNoEnd = std::numeric_limits<double>::infinity();
/// Digits of a converted number: more would only show the conversion.
constexpr int kConvertedDecimals = 8;

/// What the units of the table are shown in.
constexpr std::pair<std::string_view, Quantity> kQuantities[] = {
    {"mm", kLengthMM}, {"um", kHeightUM}, {"1/mm", kCurvaturePerMM}, {"deg", kAngleDegrees}};

/// A unit of its own for any other text, the same in both systems.
Quantity QuantityOf(const SettingKey& key) {
  for (const auto& [unit, quantity] : kQuantities) {
    if (unit == key.unit) return quantity;
  }
  return {key.unit, key.unit};
}

std::string FaultOfLimits(const SettingKey& key, double value, bool metric) {
  const SettingLimits& limits = key.entry.limits;
  const Quantity quantity = QuantityOf(key);
  if (limits.Hold(value)) return {};
  if (!limits.isBelow(value) && !limits.isAbove(value)) return "Must not be 0";
  const std::string least = ShortestText(quantity.Shown(limits.least, metric));
  if (limits.most == kNoEnd) return (limits.excludesLeast ? "Must be above " : "Must not be below ") + least;
  return (limits.excludesLeast ? "Must be above " + least + " and at most " : "Must be from " + least + " to ") +
         ShortestText(quantity.Shown(limits.most, metric));
}

}  // namespace

std::string EntryUnit(const SettingKey& key, bool metric) {
  return std::string(QuantityOf(key).Unit(metric));
}

std::string EntryText(const SettingKey& key, const SettingValue& value, bool metric) {
  const Quantity quantity = QuantityOf(key);
  const double* const number = std::get_if<double>(&value);
  if (number == nullptr || quantity.Factor(metric) == 1.0) return ShowSetting(key.binding.type, value);
  return ShortestText(ParseDouble(ScientificText(quantity.Shown(*number, metric), kConvertedDecimals)).value);
}

EntryReading ReadEntry(const SettingKey& key, std::string_view text, bool metric) {
  const SettingBinding& binding = key.binding;
  const ReadSettingResult read =
      ReadSetting(binding.type, binding.type == SettingType::kText ? text : TrimBlanks(text));
  EntryReading entry{read.value, FaultOfSetting(key, read)};
  if (!entry.ok()) {
    entry.fault = Quoted(text) + " " + entry.fault;
    return entry;
  }
  if (auto* const number = std::get_if<double>(&entry.value)) {
    *number = QuantityOf(key).FromShown(*number, metric);
    entry.fault = FaultOfLimits(key, *number, metric);
  } else if (const auto* integer = std::get_if<std::int32_t>(&entry.value)) {
    entry.fault = FaultOfLimits(key, *integer, metric);
  }
  return entry;
}

}  // namespace texturon
