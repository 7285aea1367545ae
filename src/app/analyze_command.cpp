// SPDX-License-Identifier: Apache-2.0

#include <iostream>
#include <utility>
#include <vector>

#include "analysis/analysis_json.h"
#include "analysis/analysis_run.h"
#include "analysis/document_export.h"
#include "analysis/pipeline.h"
#include "app/analysis_table.h"
#include "app/commands.h"
#include "app/provenance_output.h"
#include "app/qdas_output.h"
#include "app/repeat_command.h"
#include "app/statistics_output.h"
#include "app/uncertainty_output.h"
#include "base/charset.h"
#include "base/date_text.h"
#include "export/parameter_file.h"
#include "platform/interrupt.h"
#include "platform/platform.h"

namespace texturon {
namespace {

/// What all files of a call are asked for, and what came of them.
struct Call {
  const AnalyzeOptions& analyze;
  RunRequest request;
  std::optional<UncertaintyRequest> uncertainty;
  SeveralResults several = {};
  std::vector<UncertaintyResult> uncertainties = {};  ///< of the files that have one
};

void Print(const Document& document, const std::string& file, const ConsolePrompts& prompts, const Call& call,
           const UncertaintyResult* uncertainty, bool isFirst) {
  const AnalyzeOptions& analyze = call.analyze;
  switch (analyze.form) {
    case OutputForm::kTable:
      if (analyze.statistics) break;  // one table for all
      if (!isFirst) std::cout << "\n\n";
      std::cout << AnalysisTable(document, file, analyze.besideInstrument);
      if (uncertainty != nullptr) std::cout << UncertaintyTable(document, *call.uncertainty, *uncertainty);
      break;
    case OutputForm::kCsv:
      std::cout << CsvRow(document, file);
      break;
    case OutputForm::kJson:
      WriteAnalysisJson(std::cout, document, file, prompts.Messages(),
                        {.layout = analyze.files.size() > 1 || analyze.statistics ? JsonWriter::Layout::kOneLine
                                                                                  : JsonWriter::Layout::kIndented,
                         .withProfiles = analyze.withProfiles,
                         .request = &call.request,
                         .uncertaintyRequest = uncertainty != nullptr ? &*call.uncertainty : nullptr,
                         .uncertainty = uncertainty});
      std::cout << "\n";
      break;
  }
}

/// Adds the row of an analysis to the parameter file. False, with a sentence on standard error, when it is lost.
bool AppendRow(const Document& document, const std::string& appendTo, const Environment& environment) {
  const ParameterFileText text = ParameterFileTextOf(document, DateText(environment.localTime()));
  CollectingPrompts prompts;
  if (AppendParameters(PathFromSystemText(appendTo), text.header, text.row, prompts).written) return true;
  for (const std::string& message : prompts.messages()) Complain(Utf8FromWindows1252(message));
  return false;
}

/// What all files come to, after them.
void PrintStatistics(const Call& call, const Settings& settings) {
  const AnalyzeOptions& analyze = call.analyze;
  const bool metric = settings.display.Metric;
  const std::vector<SeveralRow> rows = call.several.Rows(
      analyze.acceptance.value_or(AcceptanceRuleOf(settings.decision.AcceptanceRule)), settings.decision.DecisionRule);
  std::vector<std::optional<MeanUncertainty>> means;
  for (std::size_t i = 0; i < rows.size() && call.uncertainty; ++i) {
    means.push_back(UncertaintyOfMean(rows[i], call.uncertainties, i));
  }
  switch (analyze.form) {
    case OutputForm::kTable:
      std::cout << StatisticsTable(rows, analyze.files, metric) << MeanUncertaintyTable(rows, means, metric);
      break;
    case OutputForm::kCsv:
      std::cout << StatisticsCsv(rows, metric);
      break;
    case OutputForm::kJson:
      WriteStatisticsJson(std::cout, rows, means);
      std::cout << "\n";
      break;
  }
}

/// Analyses one file into `document`, complains and adds its results to files; `status` tells of a refusal.
RunStep AnalyseOne(Document& document, const InputFile& file, const RunSetup& setup, const AnalyzeOptions& analyze,
                   ConsolePrompts& prompts, int& status) {
  const Environment environment = SystemEnvironment();
  const int formerStatus = std::exchange(status, kExitRefused);
  if (!LoadInto(document, file, setup, prompts, environment)) return {.loaded = false, .cause = "not loaded"};
  RunStep run = AnalyseRecord(document, prompts, environment);
  if (!run.loaded) {
    ComplainOf(file.name, run.cause);
    return run;
  }
  if (!run.ok()) Complain(file.name + ": not analysed, " + run.cause + ".");
  const bool isAppended = run.ok() && (analyze.appendTo.empty() || AppendRow(document, analyze.appendTo, environment));
  const bool isPassedOn = run.ok() && (analyze.qdas.empty() || AppendQdas(QdasTextOf(document, environment.localTime()),
                                                                          analyze.qdas, InUse::kRetryOnce));
  if (isAppended && isPassedOn) status = formerStatus;
  return run;
}

}  // namespace

int RunAnalyze(const AnalyzeOptions& analyze, const CommonOptions& common) {
  if (!analyze.again.empty()) return RunAgain(analyze, common);
  if (!analyze.indication.empty()) return RunIndicatedAnalysis(analyze, common);
  const std::vector<InputFile> files = InputFiles(analyze.files, common);
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  ApplyDecisionRule(analyze, setup->document.settings.decision);
  // What the output shows.
  setup->document.wanted = {.form = !analyze.budget.empty(),
                            .envelopes = analyze.withProfiles,
                            .spectrum = analyze.withProfiles,
                            .heightCurves = false,
                            .coreRoughness = analyze.form == OutputForm::kJson};
  setup->import.marksInput = analyze.form == OutputForm::kJson;
  const Environment environment = SystemEnvironment();
  RunFiles clashing{.reads = PathsOf(files),
                    .writes = {PathFromSystemText(analyze.appendTo), PathFromSystemText(analyze.qdas)}};
  for (auto& file : FilesOfBudget(PathFromSystemText(analyze.budget))) clashing.reads.push_back(std::move(file));
  if (WritesTraceFile(setup->document, environment)) clashing.writes.push_back(environment.traceFile);
  RefuseClash(std::move(clashing), common);
  Call call{.analyze = analyze, .request = RequestOf(common, *setup), .uncertainty = {}};
  if (!analyze.budget.empty()) {
    call.uncertainty = UncertaintyRequestOf(analyze);
    if (!call.uncertainty) return kExitRefused;
    CatchInterrupts();
  }
  int status = setup->settingsHadProblems ? kExitRefused : kExitDone;
  if (analyze.form == OutputForm::kCsv) std::cout << CsvHeader(setup->document);
  bool isFirst = true;
  for (const InputFile& file : files) {
    Document document = setup->document;
    prompts.BeginFile(file.name);
    const RunStep run = AnalyseOne(document, file, *setup, analyze, prompts, status);
    std::optional<UncertaintyResult> uncertainty;
    if (call.uncertainty && run.ok()) {
      uncertainty = FindUncertainty(document, *call.uncertainty, file.name, prompts);
      if (!uncertainty) return FinishOutput(kExitRefused);
      call.uncertainties.push_back(*uncertainty);
    }
    run.ok() ? call.several.Add(document) : call.several.AddFailed();
    if (!run.loaded) continue;
    Print(document, file.name, prompts, call, uncertainty ? &*uncertainty : nullptr, isFirst);
    isFirst = false;
  }
  if (analyze.statistics) PrintStatistics(call, setup->document.settings);
  return FinishOutput(status);
}

}  // namespace texturon
