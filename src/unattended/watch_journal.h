// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/append_file.h"
#include "platform/platform.h"
#include "unattended/file_mark.h"

namespace texturon {

/// What is about to be done with one file of a watched folder, written down beforehand so that it is done once whatever
/// happens in between.
struct WatchEntry {
  std::string file;  ///< name in the watched folder, in the system's own bytes
  FileStamp stamp;
  std::uint64_t contentHash = 0;  ///< of what was analysed
  std::string holdFile;           ///< where the copy goes; empty: none
  std::string parameterFile;      ///< empty: no row
  std::uint64_t rowAt = 0;        ///< size of the parameter file before the row
  std::string rowText;            ///< all that is added there; the row is its last line
  std::string header;             ///< for a parameter file that was begun anew in the meantime
};

/// Tells a file from another that took its name, size and time.
std::uint64_t ContentHash(std::string_view bytes);

std::string WatchEntryText(const WatchEntry& entry);
/// Nothing for a text that WatchEntryText did not make.
std::optional<WatchEntry> ParseWatchEntry(std::string_view text);

/// Makes sure that the entry's row stands in the parameter file, once and whole: adds it where it is missing, completes
/// one that was torn. `file` is that parameter file, held. Flushed to the disk when it returns without a reason.
FileOutcome EnsureRow(const WatchEntry& entry, AppendFile& file);

}  // namespace texturon
