// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/presets.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "base/ini_file.h"
#include "platform/platform.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr const char* kBuiltIn = ":/presets";

QByteArray BytesOf(const QString& file) {
  QFile source(file);
  return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

/// The first two comment lines are title and remark.
Preset BuiltIn(const QString& file) {
  Preset preset{.file = file};
  QStringList lines = QString::fromLatin1(BytesOf(file)).split('\n').mid(0, 2);
  for (QString& line : lines) line = line.startsWith(';') ? line.mid(1).trimmed() : QString();
  preset.title = lines.value(0);
  preset.remark = lines.value(1);
  return preset;
}

}  // namespace

QString PresetFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + "/presets";
}

QList<Preset> ListPresets() {
  QList<Preset> presets;
  for (const QString& name : QDir(kBuiltIn).entryList({"*.ini"}, QDir::Files, QDir::Name)) {
    presets << BuiltIn(QString(kBuiltIn) + '/' + name);
  }
  const QDir own(PresetFolder());
  for (const QFileInfo& file : own.entryInfoList({"*.ini"}, QDir::Files, QDir::Name | QDir::IgnoreCase)) {
    presets << Preset{.title = file.completeBaseName(), .file = file.filePath(), .isOwn = true};
  }
  return presets;
}

bool ApplyPreset(const Preset& preset, Settings& settings) {
  const QByteArray bytes = BytesOf(preset.file);
  const IniFile file(bytes.toStdString());
  if (!HasKnownSection(file)) return false;
  const DisplaySettings display = settings.display;
  LoadSettingsText(file, settings);
  // How the window looks is no matter of a process.
  settings.display = display;
  return true;
}

QString SavePreset(const QString& title, const Settings& settings) {
  QString name = title.trimmed();
  name.replace('/', '-').replace('\\', '-');
  if (name.isEmpty() || name.startsWith('.')) return QObject::tr("A preset needs a name that a file can have.");
  QDir().mkpath(PresetFolder());
  const std::filesystem::path file = ToPath(PresetFolder() + '/' + name + ".ini");
  const SettingsFileResult result = SaveSettings(file, settings);
  return result.ok() ? QString() : EngineText(FileSentence(file, result.reason));
}

}  // namespace texturon
