// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>
#include <system_error>
#include <thread>

#include "app/batch_progress.h"
#include "app/commands.h"
#include "app/provenance_companion.h"
#include "app/qdas_output.h"
#include "app/uncertainty_output.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "export/parameter_file.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/batch_outputs.h"
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
  // A file of that name that no batch has written is a measurement.
  Paths outputs;
  const auto add = [&outputs](const std::string& name, bool (*isFormerOutput)(const std::filesystem::path&)) {
    const std::filesystem::path path = PathFromSystemText(name);
    if (isFormerOutput(path)) outputs.push_back(path);
  };
  add(options.parameterFile, [](const std::filesystem::path& path) { return NoParameterFile(path).empty(); });
  add(options.failuresFile, IsFailuresFile);
  add(options.summaryFile, IsSummaryFile);
  add(options.qdas, IsQdasFile);
  add(SystemTextFromPath(ProvenanceFileOf(PathFromSystemText(options.parameterFile))), IsProvenanceFile);
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

/// Throws where a file of the call would destroy another.
void RefuseClashOf(const BatchOptions& options, const CommonOptions& common, const Paths& files) {
  RunFiles clashing{.reads = files, .writes = {}};
  clashing.reads.push_back(PathFromSystemText(options.filesFrom));
  for (auto& file : FilesOfBudget(PathFromSystemText(options.budget))) clashing.reads.push_back(std::move(file));
  for (const std::string& name : {options.parameterFile, options.failuresFile, options.summaryFile, options.qdas}) {
    clashing.writes.push_back(PathFromSystemText(name));
  }
  clashing.writes.push_back(ProvenanceFileOf(PathFromSystemText(options.parameterFile)));
  if (!options.profilesTo.empty()) {
    for (const std::filesystem::path& file : files) {
      for (std::filesystem::path& profile : ProfileFilesOf(file, PathFromSystemText(options.profilesTo))) {
        clashing.writes.push_back(std::move(profile));
      }
    }
  }
  RefuseClash(std::move(clashing), common);
}

/// Whether two files would write the same names into the folder for the profiles; then with a sentence on standard
/// error.
bool HasOneNameTwice(const std::string& folder, const Paths& files) {
  if (folder.empty()) return false;
  std::set<std::filesystem::path> names;
  for (const std::filesystem::path& file : files) {
    if (names.insert(file.filename()).second) continue;
    Complain("--profiles-to: two files are named " + SystemTextFromPath(file.filename()) + ".");
    return true;
  }
  return false;
}

/// Makes the folder for the profiles. False, with a sentence on standard error, when it cannot be had.
bool PrepareProfiles(const std::string& folder) {
  if (folder.empty()) return true;
  std::error_code error;
  std::filesystem::create_directories(PathFromSystemText(folder), error);
  if (error) Complain(folder + " cannot be made (" + error.message() + ").");
  return !error;
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
  if (summary.leavesUndecided) text += Padded("undecided", kWidth);
  text += "\n";
  for (const ColumnSummary& column : summary.columns) {
    const std::string name = Utf8FromWindows1252(column.name);
    text += name + std::string(name.size() < kNameWidth ? kNameWidth - name.size() : 1, ' ');
    text += Padded(CountText(column.count), kWidth);
    if (column.count > 0) {
      for (const double value : {column.mean, column.StandardDeviation(), column.minimum, column.maximum})
        text += Padded(SummaryFigure(value), kWidth);
      text += Padded(CountText(column.outOfTolerance), kWidth);
      if (summary.leavesUndecided) text += Padded(CountText(column.undecided), kWidth);
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
  if (options.jobs && *options.jobs < 1) throw UsageError{"batch: --jobs must be 1 or more."};
  ConsolePrompts prompts({.answersYes = false, .isQuiet = common.quiet});
  auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  setup->import.marksInput = true;
  std::optional<UncertaintyRequest> uncertainty;
  if (!TakeBudget(options, setup->document.settings.decision, uncertainty, common.quiet)) return kExitRefused;
  auto files = options.folder.empty() ? FilesOfList(options.filesFrom) : FilesOfFolder(options);
  if (!files) return kExitRefused;
  if (files->empty()) {
    Complain((options.folder.empty() ? options.filesFrom : options.folder) + ": there is no file to analyse.");
    return kExitRefused;
  }
  if (HasOneNameTwice(options.profilesTo, *files)) return kExitRefused;
  RefuseClashOf(options, common, *files);
  if (const std::string objection = NoParameterFile(PathFromSystemText(options.parameterFile)); !objection.empty()) {
    ComplainOf(options.parameterFile, objection);
    return kExitRefused;
  }
  const std::string header = ParameterFileTextOf(setup->document, {}).header;
  if (const std::string objection = OtherEdition(PathFromSystemText(options.parameterFile), header);
      !objection.empty()) {
    ComplainOf(options.parameterFile, objection);
    return kExitRefused;
  }
  const Environment environment = SystemEnvironment();
  if (!options.qdas.empty() && !QdasTextOf(setup->document, environment.localTime())) {
    ComplainOf(options.qdas, "gets nothing: no row has limits");
    return kExitRefused;
  }
  if (!PrepareProfiles(options.profilesTo)) return kExitRefused;
  if (!options.failuresFile.empty()) {
    const std::filesystem::path failures = PathFromSystemText(options.failuresFile);
    std::error_code ignored;
    if (std::filesystem::is_regular_file(failures, ignored)) std::filesystem::remove(failures, ignored);
  }

  CatchInterrupts();
  FolderBatchOutcome outcome;
  bool hasLostValues = false;
  ProvenanceCompanion companion(PathFromSystemText(options.parameterFile), setup->document, RequestOf(common, *setup),
                                environment, uncertainty ? &*uncertainty : nullptr);
  {
    BatchProgress progress(!common.quiet);
    const auto remark = [&progress, &common](const std::string& sentence) {
      if (common.quiet) return;
      progress.Clear();
      Complain(Utf8FromWindows1252(sentence));
    };
    outcome = RunFolderBatch(
        {.files = std::move(*files),
         .parameterFile = PathFromSystemText(options.parameterFile),
         .failuresFile = PathFromSystemText(options.failuresFile),
         .summaryFile = PathFromSystemText(options.summaryFile),
         .qdasFile = PathFromSystemText(options.qdas),
         .provenanceFile = companion.Path(),
         .jobs = options.jobs.value_or(static_cast<int>(std::max(1U, std::thread::hardware_concurrency()))),
         .resume = options.resume},
        {.start = setup->document,
         .import = setup->import,
         .invert = setup->invert,
         .profilesTo = PathFromSystemText(options.profilesTo),
         .uncertainty = uncertainty ? &*uncertainty : nullptr},
        environment,
        {.fileFailed =
             [&progress](const std::string& sentence) {
               progress.Clear();
               Complain(Utf8FromWindows1252(sentence));
             },
         .fileRemarked = remark,
         .remarked = remark,
         .fileDone =
             [&](const std::filesystem::path& path, const FileAnalysis& analysis) {
               if (analysis.ok()) companion.Add(path, analysis.input);
               if (analysis.ok() && !AppendQdas(analysis.qdas, options.qdas, InUse::kWait)) hasLostValues = true;
             },
         .advanced = [&progress](std::size_t done, std::size_t total) { progress.Show(done, total); },
         .stops = Interrupted});
  }
  const int status = Report(options, outcome);
  return setup->settingsHadProblems || hasLostValues || companion.HasFailed() ? static_cast<int>(kExitRefused) : status;
}

}  // namespace texturon
