// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "base/ini_file.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "settings/settings.h"

namespace texturon {

struct SettingsFileResult {
  /// Why it failed; goes on where the file's name stops. Empty: it went well.
  std::string reason;
  /// False: there is no such file, and nothing was read. The settings stay as they were.
  bool found = true;
  /// False: values were cut or not fully understood; the remarks that were given say which.
  bool understoodAll = true;

  bool ok() const { return reason.empty(); }
};

/// Reads an INI file; one in UTF-16 as Windows-1252.
FileBytes ReadIniFile(const std::filesystem::path& path);

/// Whether a file has a section of the settings at all.
bool HasKnownSection(const IniFile& file);

/// Reads a settings file into the settings as LoadSettingsText does; its remarks go to `prompts` as notices. A file of
/// a layout before 2 is upgraded first, on the disk too where that changes its text; where it cannot be written, the
/// upgraded text is read all the same and a notice says so.
SettingsFileResult LoadSettings(const std::filesystem::path& path, Settings& settings, Prompts& prompts);

/// Writes every setting, or those of one section; what else an existing file holds stays. The file is never left half
/// written.
SettingsFileResult SaveSettings(const std::filesystem::path& path, const Settings& settings,
                                std::string_view onlySection = {});

/// The text of a file of the present layout: each line that holds "IniVersion" becomes "IniVersion=2.00", and the first
/// "SelectionRef=" of a line becomes "SelectionRef00=", "SelectionRef01=" ... in the order of the lines. Line ends and
/// all else stay.
std::string UpgradeSettingsText(const std::string& text);

}  // namespace texturon
