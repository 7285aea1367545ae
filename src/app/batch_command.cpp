// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <system_error>
#include <thread>

#include "app/batch_progress.h"
#include "app/commands.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/folder_batch.h"
#include "unattended/folder_files.h"

namespace texturon {
namespace {

using Paths = std::vector<std::filesystem::path>;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string CountText(std::size_t count) {
  return IntegerText(static_cast<std::int64_t>(count));
}

std::optional<Paths> FilesOfFolder(const BatchOptions& options) {
  const Paths outputs = {PathFromSystemText(options.parameterFile), PathFromSystemText(options.failuresFile),
                         PathFromSystemText(options.summaryFile)};
  FolderFiles listed = FilesToAnalyse(PathFromSystemText(options.folder), Windows1252FromUtf8(options.mask), outputs);
  if (!listed.reason.empty()) {
    Complain(options.folder + " " + listed.reason + ".");
    return std::nullopt;
  }
  return std::move(listed.files);
}

std::optional<Paths> FilesOfList(const std::string& list) {
  const FileBytes content = ReadWholeFile(PathFromSystemText(list));
  if (!content.ok()) {
    Complain(list + " " + content.reason + ".");
    return std::nullopt;
  }
  Paths files;
  std::string_view rest = content.bytes;
  if (rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty()) files.push_back(PathFromSystemText(line));
  }
  return files;
}

/// Throws where two files of the call are one: either would destroy the other.
void RefuseOneNameForTwo(const BatchOptions& options) {
  struct NamedFile {
    const char* option;
    const std::string& name;
  };
  const NamedFile files[] = {{"--files-from", options.filesFrom},
                             {"--parameter-file", options.parameterFile},
                             {"--failures", options.failuresFile},
                             {"--summary", options.summaryFile}};
  std::map<std::filesystem::path, const char*> places;
  for (const NamedFile& file : files) {
    if (file.name.empty()) continue;
    std::error_code ignored;
    const auto [place, isNew] =
        places.emplace(std::filesystem::weakly_canonical(PathFromSystemText(file.name), ignored), file.option);
    if (!isNew) throw UsageError{std::string("batch: ") + place->second + " and " + file.option + " are one file."};
  }
}

/// Makes the folder for the profiles. False, with a sentence on standard error, when it cannot be had or two files
/// would write the same names into it.
bool PrepareProfiles(const std::string& folder, const Paths& files) {
  if (folder.empty()) return true;
  std::error_code error;
  std::filesystem::create_directories(PathFromSystemText(folder), error);
  if (error) {
    Complain(folder + " cannot be made (" + error.message() + ").");
    return false;
  }
  std::set<std::filesystem::path> names;
  for (const std::filesystem::path& file : files) {
    if (names.insert(file.filename()).second) continue;
    Complain("--profiles-to: two files are named " + SystemTextFromPath(file.filename()) + ".");
    return false;
  }
  return true;
}

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

/// The statistics for people.
std::string SummaryTable(const BatchSummary& summary) {
  constexpr std::size_t kNameWidth = 10;
  constexpr std::size_t kWidth = 14;
  std::string text = std::string(kNameWidth, ' ');
  for (const char* title : {"files", "mean", "std dev", "minimum", "maximum", "out of tol."})
    text += Padded(title, kWidth);
  text += "\n";
  for (const ColumnSummary& column : summary.columns) {
    const std::string name = Utf8FromWindows1252(column.name);
    text += name + std::string(name.size() < kNameWidth ? kNameWidth - name.size() : 1, ' ');
    text += Padded(CountText(column.count), kWidth);
    if (column.count > 0) {
      for (const double value : {column.mean, column.StandardDeviation(), column.minimum, column.maximum})
        text += Padded(SummaryFigure(value), kWidth);
      text += Padded(CountText(column.outOfTolerance), kWidth);
    }
    text += "\n";
  }
  return text;
}

/// Says how it went. Returns the exit status.
int Report(const BatchOptions& options, const FolderBatchOutcome& outcome) {
  const BatchSummary& summary = outcome.summary;
  std::cout << CountText(summary.analysed) << " analysed, " << CountText(summary.failed) << " failed";
  if (summary.remarked > 0) std::cout << ", " << CountText(summary.remarked) << " with remarks";
  if (outcome.skipped > 0) std::cout << ", " << CountText(outcome.skipped) << " left out because they have rows";
  std::cout << "\n";
  if (summary.analysed > 0) std::cout << "\n" << SummaryTable(summary);
  if (!outcome.reason.empty()) Complain(Utf8FromWindows1252(outcome.reason));
  if (!outcome.next.empty()) {
    Complain("stopped before " + SystemTextFromPath(outcome.next) + "; --resume goes on from there.");
  }
  bool allWell = outcome.complete() && summary.failed == 0;
  if (!options.summaryFile.empty()) {
    const FileOutcome written = ReplaceFile(PathFromSystemText(options.summaryFile), SummaryCsv(summary));
    if (!written.ok()) Complain(options.summaryFile + " " + written.reason + ".");
    allWell = allWell && written.ok();
  }
  return FinishOutput(allWell ? kExitDone : kExitRefused);
}

}  // namespace

int RunBatch(const BatchOptions& options, const CommonOptions& common) {
  if (options.folder.empty() == options.filesFrom.empty()) throw UsageError{"batch: give a folder or --files-from."};
  RefuseOneNameForTwo(options);
  ConsolePrompts prompts({.answersYes = false, .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  auto files = options.folder.empty() ? FilesOfList(options.filesFrom) : FilesOfFolder(options);
  if (!files) return kExitRefused;
  if (files->empty()) {
    Complain((options.folder.empty() ? options.filesFrom : options.folder) + ": there is no file to analyse.");
    return kExitRefused;
  }
  if (!PrepareProfiles(options.profilesTo, *files)) return kExitRefused;
  if (!options.failuresFile.empty()) {
    const std::filesystem::path failures = PathFromSystemText(options.failuresFile);
    std::error_code ignored;
    if (std::filesystem::is_regular_file(failures, ignored)) std::filesystem::remove(failures, ignored);
  }

  CatchInterrupts();
  FolderBatchOutcome outcome;
  {
    BatchProgress progress(!common.quiet);
    outcome = RunFolderBatch(
        {.files = std::move(*files),
         .parameterFile = PathFromSystemText(options.parameterFile),
         .failuresFile = PathFromSystemText(options.failuresFile),
         .jobs = options.jobs > 0 ? options.jobs : static_cast<int>(std::max(1U, std::thread::hardware_concurrency())),
         .resume = options.resume},
        {.start = setup->document,
         .import = setup->import,
         .invert = setup->invert,
         .profilesTo = PathFromSystemText(options.profilesTo)},
        SystemEnvironment(),
        {.fileFailed =
             [&progress](const std::string& sentence) {
               progress.Clear();
               Complain(Utf8FromWindows1252(sentence));
             },
         .fileRemarked =
             [&progress, &common](const std::string& sentence) {
               if (common.quiet) return;
               progress.Clear();
               Complain(Utf8FromWindows1252(sentence));
             },
         .advanced = [&progress](std::size_t done, std::size_t total) { progress.Show(done, total); },
         .stops = Interrupted});
  }
  const int status = Report(options, outcome);
  return setup->settingsHadProblems ? static_cast<int>(kExitRefused) : status;
}

}  // namespace texturon
