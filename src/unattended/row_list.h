// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "unattended/file_mark.h"

namespace texturon {

// Whose the rows of a parameter file are. A source column cannot tell: letters outside Windows-1252, commas and
// spreadsheets make one text of several names. So each row of a batch has a line in a hidden list beside the parameter
// file, ".NAME.texturon-done": size, time and content mark of the measurement, mark of the row, path as it was given.
// Row and line are written with the parameter file held, the line first: a line without a row says nothing.

/// A measurement as it was analysed.
struct FileMark {
  std::filesystem::path path;
  FileStamp stamp;
  std::uint64_t content = 0;
};

/// Nothing where the file cannot be read.
std::optional<FileMark> MarkOf(const std::filesystem::path& path);

/// The line of a row, which ends in CR LF.
std::string RowLine(const FileMark& file, std::string_view row);

struct RowsNoted {
  bool keepsList = true;  ///< false: there can be none in this folder, or it is not this user's own
  FileOutcome outcome;
};

/// Adds lines to the list, which is begun anew with a new parameter file.
RowsNoted NoteRows(const std::filesystem::path& parameterFile, std::string_view lines, bool isNewFile);

/// What is left to do for a parameter file.
struct RowsLeft {
  std::vector<std::filesystem::path> files;
  std::vector<std::string> remarks;  ///< sentences, Windows-1252
  std::string reason;                ///< why it cannot be told; a sentence
};

/// The files without a row. A row is a file's by the list: the same content under the same name, in the same folder
/// before others; a row of which the list does not know by its source, where files that share a text take as many as
/// there are. Takes a torn last row off and drops the list's lines without a row. Waits for the parameter file.
RowsLeft FilesWithoutRow(const std::vector<std::filesystem::path>& files, const std::filesystem::path& parameterFile);

}  // namespace texturon
