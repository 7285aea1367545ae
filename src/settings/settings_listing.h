// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// One key as people want to see it.
struct SettingDescription {
  std::string_view section;
  std::string_view key;     // Name%02d where it repeats
  std::string_view type;    // text, integer, flag, number, coefficient, count, version
  std::string defaultText;  // where ten rows start with different values, all ten
  std::string_view unit;
  std::string_view meaning;
  std::string_view choices;
  bool isWrittenAlways = true;
  std::string range = {};  // what it can only be: "1 to 1000"; empty where anything is taken
};

/// Every key in the file's order.
std::vector<SettingDescription> DescribeSettings();

/// The same as Markdown, one table a section.
std::string SettingsMarkdown();

}  // namespace texturon
