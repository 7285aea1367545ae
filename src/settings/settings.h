// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "settings/analysis_settings.h"
#include "settings/decision_settings.h"
#include "settings/display_settings.h"

namespace texturon {

struct AutoLoadingSettings {
  bool IsAutoLoading = false;
  bool AutoLoadFromGroup = false;
  bool DeleteAfterAutoLoadFromGroup = false;
  bool TopmostAfterAutoLoad = false;
  std::string StorageFolderAfterAutoLoad;
  std::string AutoLoadFolder;
  std::string AutoLoadMask = "*.*";
  std::string AutoLoadFile;
  bool AutoExport = false;
  bool LogEventsWhenAutoLoading = false;

  friend bool operator==(const AutoLoadingSettings&, const AutoLoadingSettings&) = default;
};

struct Settings {
  AnalysisSettings analysis;
  DisplaySettings display;
  AutoLoadingSettings autoLoading;
  DecisionSettings decision;

  friend bool operator==(const Settings&, const Settings&) = default;
};

}  // namespace texturon
