#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "core/environment.h"
#include "core/file_analysis.h"

namespace texturon {

inline constexpr std::chrono::milliseconds kWatchPoll(2000);

struct FolderWatchOptions {
  std::filesystem::path folder;
  std::string mask = "*.*";             ///< Windows-1252
  std::string singleFile;               ///< only the file of this name, which is never deleted; empty: by the mask
  std::filesystem::path parameterFile;  ///< gets a row a file; empty: none
  std::filesystem::path holdFolder;     ///< gets a copy of each file; empty: none
  bool deletes = false;                 ///< analysed files are removed; else they are remembered
  bool logsEvents = false;
  std::chrono::milliseconds poll = kWatchPoll;
};

/// What happens, as it happens. Texts are Windows-1252 sentences.
struct FolderWatchObserver {
  std::function<void(const std::string& file, const FileAnalysis& analysis)> analysed;
  std::function<void(const std::string& sentence)> failed;
  std::function<bool()> stops;
};

/// Polls a folder and analyses what arrives, until `stops` returns true. A file is taken once size and time have stood
/// still for a poll; an empty one waits for its content. Then, in this order, each safely on the disk before the next:
/// its row, its copy in the hold folder, its removal. A file that cannot be analysed goes into the subfolder
/// "texturon-failed" with its reason beside it, or, where files are not deleted, is remembered as failed.
///
/// Book-keeping lies in the watched folder, in files that begin with ".texturon-watch": a run that was killed at any
/// moment is completed by the next one, without a file lost and without a row twice. One run a folder at a time.
///
/// Returns why it could not start or go on, a sentence; empty: it was stopped.
std::string WatchFolder(const FolderWatchOptions& options, const FileAnalysisOptions& analysis,
                        const Environment& environment, const FolderWatchObserver& observer);

}  // namespace texturon
