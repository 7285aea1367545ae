// SPDX-License-Identifier: Apache-2.0

#include "analysis/file_analysis.h"

#include <cmath>
#include <exception>
#include <new>
#include <span>
#include <string_view>

#include "analysis/analysis_run.h"
#include "analysis/cautions.h"
#include "analysis/decision.h"
#include "analysis/ratio_row_list.h"
#include "analysis/verdict_trials.h"
#include "base/date_text.h"
#include "platform/platform.h"
#include "platform/prompts.h"

namespace texturon {
namespace {

/// `place` is that of the row among ShownRows.
ColumnValue ColumnOf(const Document& document, const ParameterDef& row, std::size_t place) {
  const bool metric = document.settings.display.Metric;
  ColumnValue column{.name = row.NameWithEdition(), .text = ShownValue(row, metric)};
  column.unit = PrintedUnit(row.quantity.Unit(metric));
  const auto decision = Decide(document, row, place);
  column.outOfTolerance = decision && decision->verdict == Acceptance::kFail;
  column.undecided = decision && decision->verdict == Acceptance::kUndecided;
  if (row.valid && std::isfinite(row.value)) column.value = row.quantity.Shown(row.value, metric);
  const LimitsInForce limits = LimitsOf(row.tolerance);
  if (limits.lower) column.limits.lower = row.quantity.Shown(*limits.lower, metric);
  if (limits.upper) column.limits.upper = row.quantity.Shown(*limits.upper, metric);
  return column;
}

std::vector<ColumnValue> ColumnsOf(const Document& document) {
  std::vector<ColumnValue> columns;
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.selected) columns.push_back(ColumnOf(document, row, columns.size()));
  }
  const auto add = [&](const std::vector<RatioRowEntry>& entries) {
    for (const RatioRowEntry& entry : entries) {
      columns.push_back(ColumnOf(document, entry.row, columns.size()));
      columns.back().name += entry.label;
    }
  };
  add(SelectedMaterialRatios(document));
  add(SelectedHtps(document));
  return columns;
}

constexpr std::string_view kWrittenProfiles[] = {"primary", "waviness", "roughness"};

std::filesystem::path ProfileFile(const std::filesystem::path& path, const std::filesystem::path& folder,
                                  std::string_view kind) {
  std::filesystem::path target = folder / path.filename();
  return target += "." + std::string(kind) + ".csv";
}

/// The reason where a profile could not be written.
std::string WriteProfiles(const Document& document, const std::filesystem::path& path,
                          const FileAnalysisOptions& options) {
  SilentPrompts nobody;
  for (const std::string_view name : kWrittenProfiles) {
    const ExportResult result = FindExportKind(name)->make(document, nobody);
    if (!result.ok()) continue;
    const std::filesystem::path target = ProfileFile(path, options.profilesTo, name);
    if (options.announces) options.announces(target, result.text);
    const FileOutcome outcome = ReplaceSideFile(target, result.text, FlushFile::kNo);
    if (!outcome.ok()) return FileSentence(target, outcome.reason);
  }
  return {};
}

}  // namespace

FileAnalysis ResultsOf(const Document& document, const Environment& environment) {
  return {.reason = {},
          .text = ParameterFileTextOf(document, DateText(environment.localTime())),
          .columns = ColumnsOf(document),
          .qdas = QdasTextOf(document, environment.localTime()),
          .input = document.profiles.input};
}

std::vector<std::filesystem::path> ProfileFilesOf(const std::filesystem::path& path,
                                                  const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const std::string_view kind : kWrittenProfiles) files.push_back(ProfileFile(path, folder, kind));
  return files;
}

FileAnalysis AnalyseFile(const std::filesystem::path& path, const FileAnalysisOptions& options,
                         const Environment& environment) {
  FileAnalysis analysis;
  try {
    Document document = options.start;
    document.quietMode = true;
    document.writesTraceFile = false;
    document.wanted = kNoCurves;
    CollectingPrompts prompts;
    const RunStep run =
        RunAnalysis(document, {.path = path, .import = options.import, .invert = options.invert}, prompts, environment);
    if (!run.ok()) return {.reason = FileSentence(path, run.Reason()), .outOfMemory = run.cause == kNoMemory};
    const std::string undecided =
        options.uncertainty != nullptr ? TryForVerdicts(document, options.uncertainty, 1) : std::string();
    analysis = ResultsOf(document, environment);
    analysis.remarks = prompts.notices();
    for (const Caution& caution : CautionsOf(document)) analysis.remarks.push_back(caution.sentence);
    if (!undecided.empty()) analysis.remarks.push_back("no uncertainty, " + undecided + ".");
    if (!options.profilesTo.empty()) analysis.reason = WriteProfiles(document, path, options);
  } catch (const std::bad_alloc&) {
    return {.reason = FileSentence(path, kNoMemory), .outOfMemory = true};
  } catch (const std::exception& error) {
    analysis.reason = FileSentence(path, std::string("is not analysed: ") + error.what());
  }
  return analysis;
}

}  // namespace texturon
