// SPDX-License-Identifier: Apache-2.0

#include "unattended/folder_batch.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "base/number_text.h"
#include "export/parameter_file.h"
#include "platform/append_file.h"
#include "platform/file_identity.h"
#include "platform/platform.h"
#include "unattended/batch_outputs.h"
#include "unattended/job_limit.h"
#include "unattended/output_list.h"
#include "unattended/row_list.h"

namespace texturon {
namespace {

/// Hands files out in order, takes results in any order and writes them in order again.
class OrderedBatch {
public:
  OrderedBatch(const FolderBatchOptions& options, std::vector<std::filesystem::path> files,
               const FileAnalysisOptions& analysis, const Environment& environment, const FolderBatchObserver& observer)
      : options_(options),
        files_(std::move(files)),
        analysis_(analysis),
        environment_(environment),
        observer_(observer),
        limit_(static_cast<std::size_t>(std::max(options.jobs, 1))) {}

  FolderBatchOutcome Run() {
    outcome_.total = files_.size();
    outcome_.summary.leavesUndecided = analysis_.start.settings.decision.DecisionRule == kDecideGuarded;
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

  struct Result {
    FileAnalysis analysis;
    std::optional<FileMark> file;
  };

  void Work() {
    while (const auto index = Take()) Put(*index, Analyse(files_[*index]));
  }

  /// Where the memory does not hold all that are at work, fewer are, and the file has another turn.
  Result Analyse(const std::filesystem::path& file) {
    for (;;) {
      const std::size_t atOnce = limit_.Begin();
      Result result{.analysis = {}, .file = MarkOf(file)};
      result.analysis = AnalyseFile(file, analysis_, environment_);
      limit_.End();
      const std::size_t fewer = result.analysis.outOfMemory ? limit_.Shrink(atOnce) : 0;
      if (fewer == 0) return result;
      const std::lock_guard lock(mutex_);
      Remark(FileSentence(file, std::string(kNoMemory) + " beside others and is tried again, with at most " +
                                    IntegerText(static_cast<std::int64_t>(fewer)) + " at a time"));
    }
  }

  bool Stops() const { return !outcome_.reason.empty() || (observer_.stops && observer_.stops()); }

  std::optional<std::size_t> Take() {
    std::unique_lock lock(mutex_);
    moved_.wait(lock, [this] { return Stops() || taken_ < written_ + kMostWaiting; });
    if (Stops() || taken_ == files_.size()) return std::nullopt;
    return taken_++;
  }

  void Put(std::size_t index, Result result) {
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
    std::string lines;
    std::string failures;
    std::vector<const FileAnalysis*> analysed;
    std::size_t end = written_;
    for (auto result = waiting_.find(end); result != waiting_.end(); result = waiting_.find(++end)) {
      const auto& [analysis, file] = result->second;
      if (analysis.ok()) {
        if (header.empty()) header = analysis.text.header;
        rows += analysis.text.row;
        if (file) lines += RowLine(*file, analysis.text.row);
        analysed.push_back(&analysis);
      } else {
        failures += FailureLine(files_[end], analysis.reason);
      }
    }
    if (!outcome_.reason.empty() || !Append(header, rows, lines) || !AppendFailures(failures)) return;
    for (const FileAnalysis* const analysis : analysed) {
      outcome_.summary.Add(analysis->columns);
      outcome_.summary.remarked += analysis->remarks.empty() ? 0 : 1;
    }
    for (; written_ < end; ++written_) {
      const auto result = waiting_.find(written_);
      const FileAnalysis& analysis = result->second.analysis;
      if (!analysis.ok()) Fail(analysis.reason);
      RemarkOn(files_[written_], analysis.remarks);
      if (observer_.fileDone) observer_.fileDone(files_[written_], analysis);
      waiting_.erase(result);
    }
  }

  void Fail(const std::string& sentence) {
    ++outcome_.summary.failed;
    if (observer_.fileFailed) observer_.fileFailed(sentence);
  }

  void RemarkOn(const std::filesystem::path& file, const std::vector<std::string>& remarks) const {
    if (!observer_.fileRemarked) return;
    for (const std::string& remark : remarks) observer_.fileRemarked(TextFromPath(file) + ": " + remark);
  }

  void Remark(const std::string& sentence) const {
    if (observer_.remarked) observer_.remarked(sentence);
  }

  bool Append(const std::string& header, const std::string& rows, const std::string& lines) {
    if (rows.empty() || options_.parameterFile.empty()) return true;
    const auto note = [this, &lines](const AppendFile& file) {
      if (!listsRows_) return FileOutcome{};
      const RowsNoted noted = NoteRows(options_.parameterFile, lines, file.size() == 0);
      listsRows_ = noted.keepsList;
      if (noted.keepsList) return noted.outcome;
      Remark("the list of whose rows they are is not kept: the one beside " +
             FileSentence(options_.parameterFile, noted.outcome.reason + "; to go on, files are told by their source"));
      return FileOutcome{};
    };
    const AppendOutcome appended =
        AppendToParameterFile(options_.parameterFile, header, rows, InUse::kWait, observer_.stops, note);
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
    if (outcome_.summary.analysed == 0 || options_.parameterFile.empty()) return;
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

  JobLimit limit_;

  std::mutex mutex_;
  std::condition_variable moved_;
  std::size_t taken_ = 0;
  std::size_t written_ = 0;
  std::map<std::size_t, Result> waiting_;
  bool listsRows_ = true;
  FolderBatchOutcome outcome_;
};

/// Notes what the run will write among the measurements.
std::string NoteOutputs(const FolderBatchOptions& options) {
  if (options.files.empty()) return {};
  const std::filesystem::path folder = options.files.front().parent_path();
  const std::pair<const std::filesystem::path&, OutputList::Kind> outputs[] = {
      {options.parameterFile, OutputList::Kind::kRows},        {options.failuresFile, OutputList::Kind::kFailures},
      {options.summaryFile, OutputList::Kind::kSummary},       {options.qdasFile, OutputList::Kind::kQdas},
      {options.provenanceFile, OutputList::Kind::kProvenance},
  };
  std::string reason;
  for (const auto& [path, kind] : outputs) {
    const bool isThere = !path.empty() && IdentityOf(path.parent_path() / ".") == IdentityOf(folder / ".");
    if (isThere && reason.empty()) reason = OutputList(folder).NoteFile(path, kind);
  }
  return reason;
}

}  // namespace

FolderBatchOutcome RunFolderBatch(const FolderBatchOptions& options, const FileAnalysisOptions& analysis,
                                  const Environment& environment, const FolderBatchObserver& observer) {
  const auto remark = [&observer](const std::string& sentence) {
    if (observer.remarked && !sentence.empty()) observer.remarked(sentence);
  };
  std::vector<std::filesystem::path> files = options.files;
  if (options.resume) {
    RowsLeft left = FilesWithoutRow(files, options.parameterFile);
    for (const std::string& sentence : left.remarks) remark(sentence);
    if (!left.reason.empty()) {
      return {.total = files.size(), .next = files.empty() ? "" : files.front(), .reason = left.reason};
    }
    files = std::move(left.files);
  }
  const std::size_t skipped = options.files.size() - files.size();
  remark(NoteOutputs(options));
  FileAnalysisOptions noting = analysis;
  std::optional<OutputList> profiles;
  std::string complaint;
  if (!analysis.profilesTo.empty()) {
    profiles.emplace(analysis.profilesTo);
    noting.announces = [&](const std::filesystem::path& file, std::string_view text) {
      std::string reason = profiles->NoteProfile(file, text);
      if (!reason.empty()) complaint = std::move(reason);  // one thread gets it, once
    };
  }
  FolderBatchOutcome outcome = OrderedBatch(options, std::move(files), noting, environment, observer).Run();
  remark(complaint);
  outcome.skipped = skipped;
  return outcome;
}

}  // namespace texturon
