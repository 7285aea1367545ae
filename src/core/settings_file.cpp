#include "core/settings_file.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "core/ini_file.h"
#include "core/number_text.h"
#include "core/platform.h"
#include "core/settings_text.h"

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

}  // namespace

std::string UpgradeSettingsText(const std::string& text) {
  std::string upgraded;
  upgraded.reserve(text.size());
  std::int64_t nextReference = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t lineFeed = std::min(text.find('\n', begin), text.size());
    const std::size_t end = lineFeed > begin && text[lineFeed - 1] == '\r' ? lineFeed - 1 : lineFeed;
    const std::size_t next = std::min(lineFeed + 1, text.size());
    upgraded += UpgradeLine(text.substr(begin, end - begin), nextReference);
    upgraded.append(text, end, next - end);
    begin = next;
  }
  return upgraded;
}

SettingsFileResult LoadSettings(const std::filesystem::path& path, Settings& settings, Prompts& prompts) {
  FileBytes read = ReadWholeFile(path);
  if (read.missing) return {"", false};
  if (!read.ok()) return {FileSentence(path, read.reason)};

  IniFile file(read.bytes);
  if (IsOldLayout(file)) {
    std::string upgraded = UpgradeSettingsText(read.bytes);
    if (upgraded != read.bytes) {
      const FileOutcome written = ReplaceFile(path, upgraded);
      if (!written.ok()) {
        prompts.Notice(FileSentence(path, written.reason) + " Its settings are used as of the present layout.");
      }
      file = IniFile(std::move(upgraded));
    }
  }
  const std::vector<std::string> remarks = LoadSettingsText(file, settings);
  for (const std::string& remark : remarks) prompts.Notice(TextFromPath(path) + ": " + remark);
  return {.understoodAll = remarks.empty()};
}

SettingsFileResult SaveSettings(const std::filesystem::path& path, const Settings& settings) {
  FileBytes former = ReadWholeFile(path);
  if (!former.ok() && !former.missing) return {FileSentence(path, former.reason)};
  IniFile file(std::move(former.bytes));
  SaveSettingsText(file, settings);
  const FileOutcome written = ReplaceFile(path, file.Bytes());
  if (!written.ok()) return {FileSentence(path, written.reason)};
  return {};
}

}  // namespace texturon
