// SPDX-License-Identifier: Apache-2.0

#include "unattended/folder_batch.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>

#include "base/charset.h"
#include "base/text.h"
#include "export/parameter_csv.h"
#include "export/parameter_file.h"
#include "platform/append_file.h"
#include "platform/platform.h"
#include "unattended/batch_outputs.h"

namespace texturon {
namespace {

/// The source of a line of the parameter file; nothing for a line that is no row.
std::optional<std::string> SourceOfRow(std::string_view line) {
  constexpr std::string_view kSeparator = "\", \"";
  const std::size_t first = line.find(kSeparator);
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t begin = first + kSeparator.size();
  const std::size_t length = line.substr(begin).find("    \", \"");
  if (length == std::string_view::npos) return std::nullopt;
  return std::string(line.substr(begin, length));
}

/// The whole rows of a parameter file by their source, and where the last whole line ends: at the start of a file that
/// has not even its header.
struct FormerRows {
  std::unordered_map<std::string, int> bySource;
  std::uint64_t wholeSize = 0;
};

FormerRows ReadFormerRows(const std::filesystem::path& parameterFile) {
  FormerRows rows;
  std::ifstream file(parameterFile, std::ios::binary);
  bool hasHalfAHeader = false;
  int lines = 0;
  for (std::string line; std::getline(file, line) && !file.eof(); ++lines) {
    rows.wholeSize += line.size() + 1;
    if (const auto source = SourceOfRow(line)) ++rows.bySource[*source];
    hasHalfAHeader = lines == 0 && line.starts_with("\"Time\", ");
  }
  if (hasHalfAHeader) rows.wholeSize = 0;
  return rows;
}

/// The files that have no row yet. Where several share a source text, as many as it has rows are taken as done.
std::vector<std::filesystem::path> WithoutRows(const std::vector<std::filesystem::path>& files, FormerRows rows) {
  std::vector<std::filesystem::path> left;
  for (const std::filesystem::path& file : files) {
    const auto found = rows.bySource.find(ParameterCsvSource(TextFromPath(file)));
    if (found != rows.bySource.end() && found->second > 0) {
      --found->second;
    } else {
      left.push_back(file);
    }
  }
  return left;
}

/// Takes a last line without an end off, which a run that was killed may have left. The reason where it cannot.
std::string CutTornRow(const std::filesystem::path& parameterFile, std::uint64_t wholeSize) {
  const auto file = WaitForAppendFile(parameterFile, std::chrono::seconds(10));
  if (file->state() == AppendFile::State::kInUse) return FileSentence(parameterFile, "is in use");
  if (file->state() == AppendFile::State::kFailed) return FileSentence(parameterFile, file->outcome().reason);
  const std::string objection = NoParameterFile(*file);
  if (!objection.empty()) return FileSentence(parameterFile, objection);
  const FileOutcome outcome = file->endsInsideLine() ? file->CutTo(wholeSize) : FileOutcome{};
  return outcome.ok() ? std::string() : FileSentence(parameterFile, outcome.reason);
}

/// Hands files out in order, takes results in any order and writes them in order again.
class OrderedBatch {
public:
  OrderedBatch(const FolderBatchOptions& options, std::vector<std::filesystem::path> files,
               const FileAnalysisOptions& analysis, const Environment& environment, const FolderBatchObserver& observer)
      : options_(options),
        files_(std::move(files)),
        analysis_(analysis),
        environment_(environment),
        observer_(observer) {}

  FolderBatchOutcome Run() {
    outcome_.total = files_.size();
    const auto jobs = static_cast<std::size_t>(std::max(options_.jobs, 1));
    std::vector<std::thread> workers;
    workers.reserve(std::min(jobs, files_.size()));
    try {
      for (std::size_t i = 1; i < std::min(jobs, files_.size()); ++i) workers.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
      // As many as the system grants do the work.
    }
    Work();
    for (std::thread& worker : workers) worker.join();
    FlushRows();
    if (written_ < files_.size()) outcome_.next = files_[written_];
    return std::move(outcome_);
  }

private:
  // Results that wait for a slow file before them are few, so that the memory stays flat.
  static constexpr std::size_t kMostWaiting = 256;

  void Work() {
    while (const auto index = Take()) {
      FileAnalysis result = AnalyseFile(files_[*index], analysis_, environment_);
      Put(*index, std::move(result));
    }
  }

  bool Stops() const { return !outcome_.reason.empty() || (observer_.stops && observer_.stops()); }

  std::optional<std::size_t> Take() {
    std::unique_lock lock(mutex_);
    moved_.wait(lock, [this] { return Stops() || taken_ < written_ + kMostWaiting; });
    if (Stops() || taken_ == files_.size()) return std::nullopt;
    return taken_++;
  }

  void Put(std::size_t index, FileAnalysis result) {
    const std::lock_guard lock(mutex_);
    waiting_.emplace(index, std::move(result));
    WriteWaiting();
    if (observer_.advanced) observer_.advanced(written_, files_.size());
    moved_.notify_all();
  }

  /// Writes what follows on the last row without a gap.
  void WriteWaiting() {
    std::string header;
    std::string rows;
    std::string failures;
    std::vector<const FileAnalysis*> analysed;
    std::size_t end = written_;
    for (auto result = waiting_.find(end); result != waiting_.end(); result = waiting_.find(++end)) {
      const FileAnalysis& analysis = result->second;
      if (analysis.ok()) {
        if (header.empty()) header = analysis.text.header;
        rows += analysis.text.row;
        analysed.push_back(&analysis);
      } else {
        failures += FailureLine(files_[end], analysis.reason);
      }
    }
    if (!outcome_.reason.empty() || !Append(header, rows) || !AppendFailures(failures)) return;
    for (const FileAnalysis* const analysis : analysed) {
      outcome_.summary.Add(analysis->columns);
      outcome_.summary.remarked += analysis->remarks.empty() ? 0 : 1;
    }
    for (; written_ < end; ++written_) {
      const auto result = waiting_.find(written_);
      if (!result->second.ok())
        Fail(result->second.reason);
      else
        Remark(files_[written_], result->second.remarks);
      if (observer_.fileDone) observer_.fileDone(files_[written_], result->second);
      waiting_.erase(result);
    }
  }

  void Fail(const std::string& sentence) {
    ++outcome_.summary.failed;
    if (observer_.fileFailed) observer_.fileFailed(sentence);
  }

  void Remark(const std::filesystem::path& file, const std::vector<std::string>& remarks) const {
    if (!observer_.fileRemarked) return;
    for (const std::string& remark : remarks) observer_.fileRemarked(TextFromPath(file) + ": " + remark);
  }

  bool Append(const std::string& header, const std::string& rows) {
    if (rows.empty()) return true;
    const AppendOutcome appended =
        AppendToParameterFile(options_.parameterFile, header, rows, InUse::kWait, observer_.stops);
    if (!appended.written) outcome_.reason = FileSentence(options_.parameterFile, appended.reason);
    return appended.written;
  }

  bool AppendFailures(const std::string& lines) {
    if (lines.empty() || options_.failuresFile.empty()) return true;
    const AppendOutcome appended = AppendToParameterFile(options_.failuresFile, {}, lines, InUse::kWait);
    if (!appended.written) outcome_.reason = FileSentence(options_.failuresFile, appended.reason);
    return appended.written;
  }

  void FlushRows() {
    if (outcome_.summary.analysed == 0) return;
    const auto file = WaitForAppendFile(options_.parameterFile, std::chrono::seconds(10));
    const FileOutcome outcome = file->state() == AppendFile::State::kHeld     ? file->Flush()
                                : file->state() == AppendFile::State::kFailed ? file->outcome()
                                                                              : FileOutcome{};
    if (outcome.ok() || !outcome_.reason.empty()) return;
    outcome_.reason = FileSentence(options_.parameterFile, outcome.reason);
  }

  const FolderBatchOptions& options_;
  std::vector<std::filesystem::path> files_;
  const FileAnalysisOptions& analysis_;
  const Environment& environment_;
  const FolderBatchObserver& observer_;

  std::mutex mutex_;
  std::condition_variable moved_;
  std::size_t taken_ = 0;
  std::size_t written_ = 0;
  std::map<std::size_t, FileAnalysis> waiting_;
  FolderBatchOutcome outcome_;
};

}  // namespace

FolderBatchOutcome RunFolderBatch(const FolderBatchOptions& options, const FileAnalysisOptions& analysis,
                                  const Environment& environment, const FolderBatchObserver& observer) {
  std::vector<std::filesystem::path> files = options.files;
  if (options.resume) {
    FormerRows rows = ReadFormerRows(options.parameterFile);
    const std::string reason = CutTornRow(options.parameterFile, rows.wholeSize);
    if (!reason.empty()) return {.total = files.size(), .next = files.empty() ? "" : files.front(), .reason = reason};
    files = WithoutRows(options.files, std::move(rows));
  }
  const std::size_t skipped = options.files.size() - files.size();
  FolderBatchOutcome outcome = OrderedBatch(options, std::move(files), analysis, environment, observer).Run();
  outcome.skipped = skipped;
  return outcome;
}

}  // namespace texturon
