// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "analysis/file_analysis.h"
#include "platform/environment.h"
#include "unattended/batch_summary.h"

namespace texturon {

struct FolderBatchOptions {
  std::vector<std::filesystem::path> files;  ///< in the order of the rows
  std::filesystem::path parameterFile;       ///< empty: the rows go to the observer alone
  std::filesystem::path failuresFile;        ///< gets a line "path<tab>reason" a failed file; empty: none
  std::filesystem::path summaryFile;         ///< that the caller will write; empty: none
  std::filesystem::path qdasFile;            ///< the same, for statistics programs
  std::filesystem::path provenanceFile;      ///< the same, that tells where the rows come from
  int jobs = 1;                              ///< fewer where the memory does not hold so many
  bool resume = false;                       ///< leaves out files that the parameter file has rows of (row_list)
};

/// Called under one lock, from any thread.
struct FolderBatchObserver {
  std::function<void(const std::string& sentence)> fileFailed;    ///< Windows-1252
  std::function<void(const std::string& sentence)> fileRemarked;  ///< likewise, of a file that was analysed
  std::function<void(const std::string& sentence)> remarked;      ///< likewise, of the run
  /// In the order of the files, once a file's row or failure is written.
  std::function<void(const std::filesystem::path& path, const FileAnalysis& analysis)> fileDone;
  std::function<void(std::size_t done, std::size_t total)> advanced;
  std::function<bool()> stops;
};

struct FolderBatchOutcome {
  BatchSummary summary;
  std::size_t skipped = 0;     ///< left out because they have rows
  std::size_t total = 0;       ///< files that were to be analysed
  std::filesystem::path next;  ///< the first file without a row, when the run was stopped; empty: all are done
  std::string reason;          ///< why it ended early: a sentence, Windows-1252

  bool complete() const { return next.empty() && reason.empty(); }
};

/// Analyses files on several threads and adds a row each to the parameter file, in the order of the files whatever the
/// order of completion. A file that fails becomes a line of the failures file. A run that is stopped finishes the files
/// at hand and leaves whole rows without a gap. Waits for a parameter file that another program holds.
FolderBatchOutcome RunFolderBatch(const FolderBatchOptions& options, const FileAnalysisOptions& analysis,
                                  const Environment& environment, const FolderBatchObserver& observer);

}  // namespace texturon
