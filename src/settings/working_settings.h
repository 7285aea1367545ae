// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "settings/settings.h"

namespace texturon {

/// The settings that the window starts from: those of the file beside the program, which belong to the site, and over
/// them those of the user's own file.
class WorkingSettings {
public:
  WorkingSettings(const std::filesystem::path& programFolder, const std::filesystem::path& userFolder);

  /// Reads what there is over `settings`. Returns a sentence on a file that could not be read or fully understood;
  /// empty: all well.
  std::string Load(Settings& settings);
  /// The file whose settings count after Load; empty: there is none.
  const std::filesystem::path& Loaded() const { return loaded_; }
  /// Makes these the settings of the next start: writes them beside the program, or where that may not be into the
  /// user's own file. The file written, or a sentence in `reason` and no file.
  std::filesystem::path Save(const Settings& settings, std::string& reason);
  /// Keeps in the user's own file how the window looks, where that has changed since Load. Nothing else of that file is
  /// touched, nor is the one beside the program: runs without a window go by it. A sentence; empty: done.
  std::string KeepDisplay(const DisplaySettings& display);

private:
  std::filesystem::path siteFile_;
  std::filesystem::path userFile_;
  std::filesystem::path loaded_;
  DisplaySettings kept_;
};

}  // namespace texturon
