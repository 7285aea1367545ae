// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <filesystem>
#include <optional>
#include <vector>

class QWidget;

namespace texturon {

inline constexpr const char* kCsvFilters = "Comma Separated Values (*.csv)|*.csv|All Files (*.*)|*.*||";

/// What a file dialog asks for.
struct FileQuestion {
  QString title;
  QString filters;                 ///< name and pattern in turn, each followed by a bar, and a bar at the end
  QString extension;               ///< added to a name typed without one, unless the filter in force has its own
  std::filesystem::path proposal;  ///< a name alone stands in the folder used last
  bool confirmsOverwrite = true;
};

/// The filters as Qt's dialogs take them. "*.*" is every file, with or without a dot.
QString QtFilters(const QString& filters);
/// The filter for every file that has a reader, and one for all others.
QString ProfileFilters();
/// The formats in which profiles are saved.
QString SaveFilters();

/// Nothing where the user has cancelled. The folder is remembered over the end of the program.
std::optional<std::filesystem::path> AskFileToOpen(QWidget* parent, const FileQuestion& question);
/// Several at once; none where the user has cancelled.
std::vector<std::filesystem::path> AskFilesToOpen(QWidget* parent, const FileQuestion& question);
std::optional<std::filesystem::path> AskFileToSave(QWidget* parent, const FileQuestion& question);
std::optional<std::filesystem::path> AskFolder(QWidget* parent, const QString& title,
                                               const std::filesystem::path& proposal);

/// A file to which rows are added; one that exists goes on to be used.
std::optional<std::filesystem::path> AskParameterFile(QWidget* parent, const std::filesystem::path& proposal);

}  // namespace texturon
