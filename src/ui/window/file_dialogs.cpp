// SPDX-License-Identifier: Apache-2.0

#include "ui/window/file_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <system_error>

#include "formats/extension_table.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr const char* kFolderKey = "lastFolder";

/// "lmt" of "Native (*.lmt)"; empty where a filter lets more than one extension through.
QString OnlyExtension(const QString& filter) {
  static const QRegularExpression pattern("\\(\\*\\.(\\w+)\\)$");
  return pattern.match(filter).captured(1);
}

/// The proposal's own folder where it has one that exists, else the one used last.
QString StartFolder(const std::filesystem::path& proposal) {
  std::error_code error;
  if (proposal.has_parent_path() && std::filesystem::is_directory(proposal.parent_path(), error))
    return FromPath(proposal.parent_path());
  const QString lastUsed = QSettings().value(kFolderKey).toString();
  if (QFileInfo(lastUsed).isDir()) return lastUsed;
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QStringList AskAll(QFileDialog& dialog, const FileQuestion& question) {
  const QStringList filters = QtFilters(question.filters).split(";;");
  dialog.setNameFilters(filters);
  const auto follow = [&dialog, &question](const QString& filter) {
    const QString own = OnlyExtension(filter);
    dialog.setDefaultSuffix(own.isEmpty() ? question.extension : own);
  };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
  const QString extension = FromPath(question.proposal.extension()).mid(1);
  for (const QString& filter : filters) {
    if (!extension.isEmpty() && OnlyExtension(filter).compare(extension, Qt::CaseInsensitive) == 0) {
      dialog.selectNameFilter(filter);
      break;
    }
  }
  follow(dialog.selectedNameFilter());
  dialog.setDirectory(StartFolder(question.proposal));
  if (question.proposal.has_filename()) dialog.selectFile(FromPath(question.proposal.filename()));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  // Not the dialog's folder: a name may be typed with another.
  QSettings().setValue(kFolderKey, QFileInfo(dialog.selectedFiles().constFirst()).absolutePath());
  return dialog.selectedFiles();
}

std::optional<std::filesystem::path> Ask(QFileDialog& dialog, const FileQuestion& question) {
  const QStringList files = AskAll(dialog, question);
  return files.isEmpty() ? std::nullopt : std::optional(ToPath(files.constFirst()));
}

}  // namespace

QString QtFilters(const QString& filters) {
  const QStringList parts = filters.split('|', Qt::SkipEmptyParts);
  QStringList names;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) names << EngineText(ToText(parts[i])).replace("(*.*)", "(*)");
  return names.join(";;");
}

QString ProfileFilters() {
  QStringList patterns;
  for (const ExtensionEntry& entry : ExtensionTable()) patterns << "*" + FromText(entry.extension).toLower();
  return QObject::tr("Profiles") + " (" + patterns.join(' ') + ")|-|" + QObject::tr("All Files") + " (*.*)|*.*||";
}

QString SaveFilters() {
  QString filters;
  for (const WriterEntry& writer : WriterTable()) {
    if (writer.dialogName.empty()) continue;
    filters += QString("%1 Files (*%2)|*%2|").arg(FromText(writer.dialogName), FromText(writer.extension));
  }
  return filters + "All Files (*.*)|*.*||";
}

std::optional<std::filesystem::path> AskFileToOpen(QWidget* parent, const FileQuestion& question) {
  QFileDialog dialog(parent, question.title);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFile);
  return Ask(dialog, question);
}

std::vector<std::filesystem::path> AskFilesToOpen(QWidget* parent, const FileQuestion& question) {
  QFileDialog dialog(parent, question.title);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::ExistingFiles);
  std::vector<std::filesystem::path> files;
  for (const QString& file : AskAll(dialog, question)) files.push_back(ToPath(file));
  return files;
}

std::optional<std::filesystem::path> AskFileToSave(QWidget* parent, const FileQuestion& question) {
  QFileDialog dialog(parent, question.title);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, !question.confirmsOverwrite);
  return Ask(dialog, question);
}

std::optional<std::filesystem::path> AskParameterFile(QWidget* parent, const std::filesystem::path& proposal) {
  return AskFileToSave(parent, {.title = QObject::tr("Parameter file"),
                                .filters = kCsvFilters,
                                .extension = "csv",
                                .proposal = proposal,
                                .confirmsOverwrite = false});
}

std::optional<std::filesystem::path> AskFolder(QWidget* parent, const QString& title,
                                               const std::filesystem::path& proposal) {
  std::error_code error;
  const bool exists = std::filesystem::is_directory(proposal, error);
  const QString start = exists ? FromPath(proposal) : QSettings().value(kFolderKey).toString();
  const QString folder = QFileDialog::getExistingDirectory(parent, title, start);
  if (folder.isEmpty()) return std::nullopt;
  QSettings().setValue(kFolderKey, folder);
  return ToPath(folder);
}

}  // namespace texturon
