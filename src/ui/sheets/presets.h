// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>

#include "settings/settings.h"

namespace texturon {

/// Settings for a process, by name: those that come with the program, then the user's own files.
struct Preset {
  QString title;
  QString remark;  ///< when to use it; empty: not told
  QString file;
  bool isOwn = false;
};

/// The folder of the user's own, whether it is there or not.
QString PresetFolder();
QList<Preset> ListPresets();
/// Puts what the preset says over settings. False where it cannot be read.
bool ApplyPreset(const Preset& preset, Settings& settings);
/// Keeps settings as one of the user's own. A sentence that says why not; empty: it is kept.
QString SavePreset(const QString& title, const Settings& settings);

}  // namespace texturon
