// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/ini_file.h"

namespace texturon {

struct SettingsProblem {
  std::size_t line = 0;
  std::string text;
};

/// What a careful user would want to know about a settings file, by line: sections and keys that do not exist, occur
/// twice or lie beyond the count of their list, values that are not wholly understood or too long, stray lines.
/// `faultOfFeature` says what is wrong with the text of a feature parameter, a clause that goes on after it, or
/// nothing.
using TextCheck = std::string (*)(std::string_view text);
std::vector<SettingsProblem> CheckSettings(
    const IniFile& file, TextCheck faultOfFeature = [](std::string_view) { return std::string(); });

}  // namespace texturon
