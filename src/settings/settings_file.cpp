// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_file.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/charset.h"
#include "base/ini_file.h"
#include "base/number_text.h"
#include "platform/platform.h"
#include "settings/settings_table.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

constexpr double kFirstPresentVersion = 1.999;

bool IsOldLayout(const IniFile& file) {
  const std::string_view version = file.Find("TEXTURON", "IniVersion").value_or(std::string_view());
  return !(ParseDouble(version).value >= kFirstPresentVersion);
}

std::string UpgradeLine(std::string line, std::int64_t& nextReference) {
  constexpr std::string_view kUnnumbered = "SelectionRef=";
  if (line.find("IniVersion") != std::string::npos) return "IniVersion=2.00";
  const std::size_t at = line.find(kUnnumbered);
  if (at == std::string::npos) return line;
  return line.replace(at, kUnnumbered.size(), "SelectionRef" + IntegerText(nextReference++, 2, '0') + "=");
}

// A pipe or a device is left alone: writing to it would wait for a reader or go nowhere.
FileOutcome ReplaceRegularFile(const std::filesystem::path& path, std::string_view bytes) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {"is no regular file"};
  return ReplaceFile(path, bytes);
}

}  // namespace

bool HasKnownSection(const IniFile& file) {
  const std::vector<IniSectionHeader> sections = file.Sections();
  return std::any_of(sections.begin(), sections.end(),
                     [](const IniSectionHeader& section) { return IsSettingsSection(section.name); });
}

std::string UpgradeSettingsText(const std::string& text) {
  std::string upgraded;
  upgraded.reserve(text.size());
  std::int64_t nextReference = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    const std::size_t next = std::min(end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1), text.size());
    upgraded += UpgradeLine(text.substr(begin, end - begin), nextReference);
    upgraded.append(text, end, next - end);
    begin = next;
  }
  return upgraded;
}

FileBytes ReadIniFile(const std::filesystem::path& path) {
  FileBytes read = ReadWholeFile(path);
  std::string converted;
  PlainText(read.bytes, converted);
  // A text with letters that would be lost stays as it is: it may be written back.
  const auto marks = [](const std::string& text) { return std::count(text.begin(), text.end(), '?'); };
  const bool isWide = read.bytes.find('\0') != std::string::npos;
  if (!converted.empty() && (isWide || marks(converted) == marks(read.bytes))) read.bytes = std::move(converted);
  return read;
}

SettingsFileResult LoadSettings(const std::filesystem::path& path, Settings& settings, Prompts& prompts) {
  FileBytes read = ReadIniFile(path);
  if (read.missing) return {.found = false};
  if (!read.ok()) return {.reason = read.reason};

  IniFile file(read.bytes);
  if (IsOldLayout(file)) {
    std::string upgraded = UpgradeSettingsText(read.bytes);
    if (upgraded != read.bytes) {
      const FileOutcome written = ReplaceRegularFile(path, upgraded);
      if (!written.ok()) {
        prompts.Notice(FileSentence(path, written.reason) + " Its settings are used as of the present layout.");
      }
      file = IniFile(std::move(upgraded));
    }
  }
  std::vector<std::string> remarks = LoadSettingsText(file, settings);
  if (!read.bytes.empty() && !HasKnownSection(file)) remarks.emplace_back("no section of the settings stands in it.");
  for (const std::string& remark : remarks) prompts.Notice(TextFromPath(path) + ": " + remark);
  return {.understoodAll = remarks.empty()};
}

SettingsFileResult SaveSettings(const std::filesystem::path& path, const Settings& settings,
                                std::string_view onlySection) {
  FileBytes former = ReadIniFile(path);
  if (!former.ok() && !former.missing) return {.reason = former.reason};
  IniFile file(std::move(former.bytes));
  SaveSettingsText(file, settings, onlySection);
  const FileOutcome written = ReplaceFile(path, file.Bytes());
  return {.reason = written.reason};
}

}  // namespace texturon
