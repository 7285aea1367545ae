// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_value.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

constexpr int kNumberDecimals = 6;
constexpr int kCoefficientDecimals = 12;
constexpr int kVersionDecimals = 2;

std::string_view FaultOfNumber(std::string_view text, std::size_t length) {
  if (length == 0) return "is no number";
  if (length == text.size()) return {};
  if (text[length] == ',') return "has a decimal comma, where numbers are written with a point";
  return "goes on after the number";
}

ReadSettingResult ReadInteger(std::string_view text) {
  const ParsedInt32 parsed = ParseUnsigned32(text);
  ReadSettingResult result{parsed.value, FaultOfNumber(text, parsed.length)};
  if (result.fault.empty() && ParseDouble(text).value != parsed.value) result.fault = "is out of range";
  return result;
}

ReadSettingResult ReadFlag(std::string_view text) {
  if (EqualIgnoringCase(text, "true") || EqualIgnoringCase(text, "yes")) return {true, {}};
  if (EqualIgnoringCase(text, "false") || EqualIgnoringCase(text, "no")) return {false, {}};
  const ParsedInt32 parsed = ParseInt32(text);
  const bool understood = parsed.length == text.size() && !text.empty();
  return {parsed.value != 0, understood ? std::string_view() : "is neither 1 nor 0, true nor false, yes nor no"};
}

ReadSettingResult ReadNumber(std::string_view text) {
  const ParsedDouble parsed = ParseDouble(text);
  if (!std::isfinite(parsed.value)) return {parsed.value, "is no finite number", false};
  return {parsed.value, FaultOfNumber(text, parsed.length)};
}

bool IsInList(const SettingRows& rows, std::int32_t count) {
  return count >= static_cast<std::int64_t>(rows.least) && count <= static_cast<std::int64_t>(rows.most);
}

}  // namespace

std::string WriteSetting(SettingType type, const SettingValue& value) {
  switch (type) {
    case SettingType::kText:
      return std::get<std::string>(value);
    case SettingType::kInteger:
    case SettingType::kCount:
      return IntegerText(std::get<std::int32_t>(value));
    case SettingType::kFlag:
      return std::get<bool>(value) ? "1" : "0";
    case SettingType::kNumber:
      return FixedText(std::get<double>(value), kNumberDecimals);
    case SettingType::kCoefficient:
      return ScientificText(std::get<double>(value), kCoefficientDecimals);
    case SettingType::kVersion:
      return FixedText(std::get<double>(value), kVersionDecimals);
  }
  return {};
}

std::string ShowSetting(SettingType type, const SettingValue& value) {
  const bool isReal = type == SettingType::kNumber || type == SettingType::kCoefficient;
  return isReal ? ShortestText(std::get<double>(value)) : WriteSetting(type, value);
}

ReadSettingResult ReadSetting(SettingType type, std::string_view text) {
  switch (type) {
    case SettingType::kText:
      return {std::string(text), {}};
    case SettingType::kInteger:
    case SettingType::kCount:
      return ReadInteger(text);
    case SettingType::kFlag:
      return ReadFlag(text);
    case SettingType::kNumber:
    case SettingType::kCoefficient:
    case SettingType::kVersion:
      return ReadNumber(text);
  }
  return {};
}

std::string RangeText(const SettingLimits& limits) {
  if (!std::isfinite(limits.least)) return {};
  const std::string least = ShortestText(limits.least);
  return std::isfinite(limits.most) ? least + " to " + ShortestText(limits.most) : "from " + least + " on";
}

bool CanHave(const SettingKey& key, const SettingValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    const std::vector<std::string_view> words = WordsOf(key.binding);
    return words.empty() || text->empty() || std::any_of(words.begin(), words.end(), [text](std::string_view word) {
             return EqualIgnoringCase(word, *text);
           });
  }
  if (key.binding.written == KeyWritten::kAlways) return true;
  if (key.binding.type == SettingType::kCount) return IsInList(*key.binding.rows, std::get<std::int32_t>(value));
  if (const auto* number = std::get_if<double>(&value)) return key.entry.limits.Hold(*number);
  if (const auto* integer = std::get_if<std::int32_t>(&value)) return key.entry.limits.Hold(*integer);
  return true;
}

std::string FaultOfSetting(const SettingKey& key, const ReadSettingResult& read) {
  const SettingBinding& binding = key.binding;
  if (!read.fault.empty()) return std::string(read.fault);
  if (binding.type == SettingType::kCount) {
    const SettingRows& rows = *binding.rows;
    if (IsInList(rows, std::get<std::int32_t>(read.value))) return {};
    const std::string most = IntegerText(static_cast<std::int64_t>(rows.most));
    const std::string least = IntegerText(static_cast<std::int64_t>(rows.least));
    return "is out of range: " + (rows.least == rows.most ? "always " + least : least + " to " + most);
  }
  if (CanHave(key, read.value)) return {};
  if (!binding.words.empty()) return "is none of " + std::string(binding.words);
  return "is out of range: " + RangeText(key.entry.limits);
}

}  // namespace texturon
