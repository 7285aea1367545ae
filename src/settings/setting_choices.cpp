// SPDX-License-Identifier: Apache-2.0

#include "settings/setting_choices.h"

#include <algorithm>
#include <string_view>

#include "base/number_text.h"
#include "base/text.h"
#include "settings/settings_value.h"

namespace texturon {
namespace {

/// The smallest number from 0 on that no choice has.
std::int32_t FreeNumber(const std::vector<SettingChoice>& choices) {
  std::int32_t number = 0;
  while (std::any_of(choices.begin(), choices.end(), [&](const auto& choice) { return choice.value == number; })) {
    ++number;
  }
  return number;
}

/// What stands behind one of the words that open the rest: "any other number vertical" gives "vertical".
std::optional<std::string_view> NameOfRest(std::string_view text) {
  for (const std::string_view opening : {"any other number ", "any other "}) {
    if (text.starts_with(opening)) return text.substr(opening.size());
  }
  constexpr std::string_view kAbove = "above ";
  if (!text.starts_with(kAbove)) return std::nullopt;
  text.remove_prefix(kAbove.size());
  return TrimBlanks(text.substr(ParseInt32(text).length));
}

}  // namespace

std::vector<SettingChoice> ChoicesOf(const SettingKey& key) {
  std::vector<SettingChoice> choices;
  std::string_view rest = key.choices;
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(", "), rest.size());
    const std::string_view piece = rest.substr(0, comma);
    rest.remove_prefix(std::min(comma + 2, rest.size()));
    if (const auto name = NameOfRest(piece)) {
      choices.push_back({FreeNumber(choices), std::string(*name), true});
    } else if (const ParsedInt32 number = ParseInt32(piece); number.found()) {
      choices.push_back({number.value, std::string(TrimBlanks(piece.substr(number.length)))});
    }
  }
  return choices;
}

std::optional<std::size_t> ChoiceOf(const std::vector<SettingChoice>& choices, std::int32_t value) {
  const auto named =
      std::find_if(choices.begin(), choices.end(), [&](const SettingChoice& choice) { return choice.value == value; });
  const auto found = named != choices.end()
                         ? named
                         : std::find_if(choices.begin(), choices.end(), [](const auto& c) { return c.isRest; });
  if (found == choices.end()) return std::nullopt;
  return static_cast<std::size_t>(found - choices.begin());
}

std::string DescribeValue(const SettingKey& key, const SettingValue& value) {
  if (const auto* number = std::get_if<std::int32_t>(&value)) {
    const std::vector<SettingChoice> choices = ChoicesOf(key);
    if (const auto index = ChoiceOf(choices, *number)) return choices[*index].name;
  }
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "yes" : "no";
  std::string text = ShowSetting(key.binding.type, value);
  if (!key.unit.empty()) text.append(" ").append(key.unit == "um" ? "\xB5m" : key.unit == "deg" ? "\xB0" : key.unit);
  return text;
}

}  // namespace texturon
