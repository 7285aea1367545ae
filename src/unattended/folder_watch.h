// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "analysis/file_analysis.h"
#include "platform/environment.h"

namespace texturon {

inline constexpr std::chrono::milliseconds kWatchPoll(2000);

struct FolderWatchOptions {
  std::filesystem::path folder;
  std::string mask = "*.*";             ///< Windows-1252
  std::string singleFile;               ///< only the file of this name, which is never deleted; empty: by the mask
  std::filesystem::path parameterFile;  ///< gets a row a file; empty: none
  std::filesystem::path qdasFile;       ///< for statistics programs, which is no measurement; empty: none
  std::filesystem::path holdFolder;     ///< gets a copy of each file; empty: none
  bool deletes = false;                 ///< analysed files are removed; else they are remembered
  bool logsEvents = false;
  std::chrono::milliseconds poll = kWatchPoll;
  /// How long a row waits for a parameter file that another program holds. After that the file has its turn again at
  /// the next poll.
  std::chrono::milliseconds rowPatience = std::chrono::hours(24 * 365);
};

/// What is to be watched, from several sources: an entry that is not empty goes before the settings'.
struct WatchChoice {
  std::filesystem::path folder;
  std::string mask;  ///< Windows-1252
  std::filesystem::path holdFolder;
  std::filesystem::path parameterFile;
};

struct WatchPlan {
  FolderWatchOptions options;
  std::string reason;  ///< why there is nothing to watch: a sentence without its full stop; empty: there is
};

WatchPlan PlanWatch(const Settings& settings, const WatchChoice& choice = {});

/// What happens, as it happens. Texts are Windows-1252 sentences.
struct FolderWatchObserver {
  std::function<void(const std::string& file, const FileAnalysis& analysis)> analysed;
  std::function<void(const std::string& sentence)> failed;
  std::function<bool()> stops;
};

/// The watch of one folder. A file is taken once size and time have stood still for a poll; an empty one waits for its
/// content. Then, in this order, each safely on the disk before the next: its row, its copy in the hold folder, its
/// removal. A file that cannot be analysed goes into the subfolder "texturon-failed" with its reason beside it, or,
/// where files are not deleted, is remembered as failed.
///
/// Book-keeping (watch_books) lies in the environment's state folder, lock and the file at hand in the watched one,
/// with names that begin with ".texturon-watch": a run that was killed at any moment is completed by the next one,
/// without a file lost and without a row twice. One run a folder at a time.
class FolderWatch {
public:
  using Analyse = std::function<FileAnalysis(const std::filesystem::path& path)>;

  FolderWatch(FolderWatchOptions options, Analyse analyse, const Environment& environment,
              FolderWatchObserver observer);
  ~FolderWatch();
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  /// Makes the hold folder. Why it cannot be one, a sentence; empty: it can.
  std::string PrepareHold() const;
  /// Locks the folder and takes up what a former run left in it. Why it cannot, a sentence; empty: it is taken.
  std::string TakeFolder();
  /// Looks through the folder once. One that is not taken or has vanished is taken first, at whatever poll it can be.
  void Poll();
  /// What stood in the way at the last poll, a sentence; empty: nothing.
  const std::string& Complaint() const;

private:
  class Work;
  std::unique_ptr<Work> work_;
};

/// Polls a folder until `stops` returns true. Returns why it could not start, a sentence; empty: it was stopped.
std::string WatchFolder(const FolderWatchOptions& options, const FileAnalysisOptions& analysis,
                        const Environment& environment, const FolderWatchObserver& observer);

}  // namespace texturon
