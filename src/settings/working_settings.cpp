// SPDX-License-Identifier: Apache-2.0

#include "settings/working_settings.h"

#include <system_error>

#include "platform/platform.h"
#include "platform/prompts.h"
#include "settings/settings_file.h"

namespace texturon {
namespace {

constexpr const char* kFileName = "Texturon.ini";

}  // namespace

WorkingSettings::WorkingSettings(const std::filesystem::path& programFolder, const std::filesystem::path& userFolder)
    : siteFile_(programFolder / kFileName), userFile_(userFolder / kFileName) {}

std::string WorkingSettings::Load(Settings& settings) {
  CollectingPrompts prompts;
  std::string failure;
  for (const std::filesystem::path& file : {siteFile_, userFile_}) {
    const SettingsFileResult result = LoadSettings(file, settings, prompts);
    if (result.ok() && result.found) loaded_ = file;
    if (!result.ok() && failure.empty()) failure = FileSentence(file, result.reason);
  }
  kept_ = settings.display;
  if (failure.empty() && !prompts.notices().empty()) failure = prompts.notices().front();
  return failure;
}

std::filesystem::path WorkingSettings::Save(const Settings& settings, std::string& reason) {
  const bool savedForSite = SaveSettings(siteFile_, settings).ok();
  std::error_code error;
  // What the user's own file says would hide what was just written.
  if (savedForSite && !std::filesystem::exists(userFile_, error)) return siteFile_;
  std::filesystem::create_directories(userFile_.parent_path(), error);
  const SettingsFileResult result = SaveSettings(userFile_, settings);
  if (!result.ok()) {
    reason = FileSentence(userFile_, result.reason);
    return {};
  }
  return savedForSite ? siteFile_ : userFile_;
}

std::string WorkingSettings::KeepDisplay(const DisplaySettings& display) {
  Settings settings;
  settings.display = display;
  // The name of what was measured last is nothing to start from.
  settings.display.Identification = kept_.Identification;
  if (settings.display == kept_) return {};
  std::error_code error;
  std::filesystem::create_directories(userFile_.parent_path(), error);
  const SettingsFileResult result = SaveSettings(userFile_, settings, "DISPLAY");
  if (!result.ok()) return FileSentence(userFile_, result.reason);
  kept_ = settings.display;
  return {};
}

}  // namespace texturon
