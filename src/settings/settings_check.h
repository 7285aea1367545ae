// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/ini_file.h"

namespace texturon {

struct SettingsProblem {
  std::size_t line = 0;
  std::string text;
};

/// What a careful user would want to know about a settings file, by line: sections and keys that do not exist, occur
/// twice or lie beyond the count of their list, values that are not wholly understood or too long, stray lines.
std::vector<SettingsProblem> CheckSettings(const IniFile& file);

}  // namespace texturon
