// SPDX-License-Identifier: Apache-2.0

#include "ui/window/autosave.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/platform.h"
#include "settings/settings_table.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr int kDelayMS = 1'000;
constexpr int kVersion = 1;

// Bytes that need not be any text.
QString Packed(const std::string& bytes) {
  return QString::fromLatin1(QByteArray::fromStdString(bytes).toBase64());
}

std::string Unpacked(const QJsonValue& value) {
  return QByteArray::fromBase64(value.toString().toLatin1()).toStdString();
}

QJsonValue JsonOf(const SettingValue& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return FromText(*text);
  if (const auto* const number = std::get_if<double>(&value)) return *number;
  if (const auto* const flag = std::get_if<bool>(&value)) return *flag;
  return std::get<std::int32_t>(value);
}

/// Of the same kind as `present`.
SettingValue ValueOf(const QJsonValue& json, const SettingValue& present) {
  if (std::holds_alternative<std::string>(present)) return ToText(json.toString());
  if (std::holds_alternative<double>(present)) return json.toDouble();
  if (std::holds_alternative<bool>(present)) return json.toBool();
  return static_cast<std::int32_t>(json.toInt());
}

QString NameOf(const SettingBinding& binding) {
  return FromText(binding.section) + '.' + FromText(binding.key);
}

/// To the last digit, which settings files are not.
QJsonObject ObjectOf(const Settings& settings) {
  QJsonObject object;
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    if (!binding.isRepeated()) {
      object[NameOf(binding)] = JsonOf(binding.get(settings, 0));
      continue;
    }
    QJsonArray rows;
    for (std::size_t row = 0; row < binding.rows->count(settings); ++row) rows << JsonOf(binding.get(settings, row));
    object[NameOf(binding)] = rows;
  }
  return object;
}

/// Counts stand before their rows in the table.
Settings SettingsOf(const QJsonObject& object) {
  Settings settings;
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    const QJsonValue value = object[NameOf(binding)];
    if (value.isUndefined()) continue;
    if (!binding.isRepeated()) {
      binding.set(settings, 0, ValueOf(value, binding.get(settings, 0)));
      continue;
    }
    const QJsonArray rows = value.toArray();
    const auto count = std::min(static_cast<std::size_t>(rows.size()), binding.rows->count(settings));
    for (std::size_t row = 0; row < count; ++row) {
      binding.set(settings, row, ValueOf(rows[static_cast<qsizetype>(row)], binding.get(settings, row)));
    }
  }
  return settings;
}

QJsonObject ObjectOf(const AnalysisScope& scope) {
  QJsonObject object{{"allDataForForm", scope.allDataForForm}};
  if (const auto& region = scope.region) {
    object["region"] = QJsonObject{{"mode", region->mode},
                                   {"startMM", region->startMM},
                                   {"endOffsetMM", region->endOffsetMM},
                                   {"lengthMM", region->lengthMM}};
  }
  if (scope.exclusion) {
    object["exclusion"] = QJsonObject{{"first", scope.exclusion->first}, {"last", scope.exclusion->last}};
  }
  if (scope.wholeCutoffs) {
    object["wholeCutoffs"] =
        QJsonObject{{"type", scope.wholeCutoffs->type}, {"lengthMM", scope.wholeCutoffs->lengthMM}};
  }
  return object;
}

AnalysisScope ScopeOf(const QJsonObject& object) {
  AnalysisScope scope;
  scope.allDataForForm = object["allDataForForm"].toBool();
  if (const QJsonObject region = object["region"].toObject(); !region.isEmpty()) {
    scope.region = RegionChoice{.mode = region["mode"].toInt(),
                                .startMM = region["startMM"].toDouble(),
                                .endOffsetMM = region["endOffsetMM"].toDouble(),
                                .lengthMM = region["lengthMM"].toDouble()};
  }
  if (const QJsonObject range = object["exclusion"].toObject(); !range.isEmpty()) {
    scope.exclusion = IndexRange::FromEnds(range["first"].toInt(), range["last"].toInt());
  }
  if (const QJsonObject discard = object["wholeCutoffs"].toObject(); !discard.isEmpty()) {
    scope.wholeCutoffs = DiscardSetting{discard["type"].toInt(), discard["lengthMM"].toDouble()};
  }
  return scope;
}

QString LockOf(const std::filesystem::path& state) {
  return FromPath(std::filesystem::path(state).replace_extension(".lock"));
}

std::unique_ptr<QLockFile> TryLock(const std::filesystem::path& state) {
  auto lock = std::make_unique<QLockFile>(LockOf(state));
  // However old: a window may be open for weeks. That of a process that is gone does not count.
  lock->setStaleLockTime(0);
  if (!lock->tryLock(0)) return nullptr;
  return lock;
}

}  // namespace

QByteArray TextOfState(const KeptState& state) {
  return QJsonDocument(QJsonObject{{"version", kVersion},
                                   {"file", Packed(SystemTextFromPath(state.file))},
                                   {"settings", ObjectOf(Settings{.analysis = state.work.request.settings,
                                                                  .decision = state.work.decision})},
                                   {"identification", FromText(state.work.identification)},
                                   {"inverted", state.work.inverted},
                                   {"scope", ObjectOf(state.work.request.scope)}})
      .toJson();
}

std::optional<KeptState> ReadState(const QByteArray& text) {
  const QJsonObject object = QJsonDocument::fromJson(text).object();
  if (object["version"].toInt() != kVersion) return std::nullopt;
  Settings settings = SettingsOf(object["settings"].toObject());
  KeptState state{.file = PathFromSystemText(Unpacked(object["file"]))};
  state.work.request = {.settings = std::move(settings.analysis), .scope = ScopeOf(object["scope"].toObject())};
  state.work.identification = ToText(object["identification"].toString());
  state.work.inverted = object["inverted"].toBool();
  state.work.decision = settings.decision;
  return state;
}

CAutosave::CAutosave(CTexturonDoc& doc, std::filesystem::path folder, QObject* parent)
    : QObject(parent), doc_(doc), folder_(std::move(folder)) {
  if (folder_.empty()) return;
  own_ = folder_ / (QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString() + ".json");
  if (MakePrivateFolder(folder_)) lock_ = TryLock(own_);
  delay_.setSingleShot(true);
  delay_.setInterval(kDelayMS);
  connect(&delay_, &QTimer::timeout, this, &CAutosave::SaveNow);
  connect(&doc_, &CTexturonDoc::Changed, this, [this] {
    if (!delay_.isActive()) delay_.start();
  });
}

CAutosave::~CAutosave() {
  if (!stays_) Remove();
}

void CAutosave::LeaveIt() {
  SaveNow();
  stays_ = true;
}

void CAutosave::SaveNow() {
  delay_.stop();
  const Document& document = doc_.document();
  if (!doc_.IsModified() && !doc_.HasUnsavedSettings()) return Remove();
  if (lock_ == nullptr) return Tell(FileSentence(folder_, "is no folder that this user alone can write to"));
  std::error_code error;
  const std::filesystem::path& file = document.profiles.sourceFile;
  const bool isThere = std::filesystem::exists(file, error);
  const QByteArray text =
      TextOfState({.file = isThere ? std::filesystem::absolute(file, error) : std::filesystem::path(),
                   .work = UndoPointOf(document)});
  // Not flushed: it is for a program that ends, not for a computer that does.
  const FileOutcome outcome = ReplaceSideFile(own_, text.toStdString(), FlushFile::kNo);
  isKept_ = outcome.ok();
  if (!isKept_) Tell(FileSentence(own_, outcome.reason));
}

void CAutosave::Tell(const std::string& reason) {
  if (std::exchange(isTold_, true)) return;
  doc_.prompts().Notice("What is not saved would be lost if the program broke off: " + reason);
}

void CAutosave::Remove() {
  if (!std::exchange(isKept_, false)) return;
  std::error_code error;
  std::filesystem::remove(own_, error);
}

std::optional<KeptState> CAutosave::TakeLeftOver() {
  // What lies in a folder of others may be theirs.
  if (lock_ == nullptr) return std::nullopt;
  const QDir folder(FromPath(folder_));
  for (const QString& name : folder.entryList({"*.json"}, QDir::Files, QDir::Time)) {
    const std::filesystem::path path = ToPath(folder.filePath(name));
    if (path == own_) continue;
    const auto lock = TryLock(path);
    if (lock == nullptr) continue;
    const FileBytes file = ReadOwnFile(path);
    std::error_code error;
    std::filesystem::remove(path, error);
    if (!file.ok()) continue;
    if (auto state = ReadState(QByteArray::fromStdString(file.bytes))) return state;
  }
  return std::nullopt;
}

}  // namespace texturon
