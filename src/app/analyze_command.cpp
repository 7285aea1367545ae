// SPDX-License-Identifier: Apache-2.0

#include <iostream>
#include <utility>
#include <vector>

#include "analysis/analysis_run.h"
#include "analysis/document_export.h"
#include "analysis/pipeline.h"
#include "app/analysis_json.h"
#include "app/analysis_table.h"
#include "app/commands.h"
#include "app/qdas_output.h"
#include "app/statistics_output.h"
#include "base/charset.h"
#include "base/date_text.h"
#include "export/parameter_file.h"
#include "platform/platform.h"

namespace texturon {
namespace {

void Print(const Document& document, const std::string& file, const ConsolePrompts& prompts,
           const AnalyzeOptions& analyze, bool isFirst) {
  switch (analyze.form) {
    case OutputForm::kTable:
      if (analyze.statistics) break;  // one table for all
      if (!isFirst) std::cout << "\n\n";
      std::cout << AnalysisTable(document, file, analyze.besideInstrument);
      break;
    case OutputForm::kCsv:
      std::cout << CsvRow(document, file);
      break;
    case OutputForm::kJson:
      WriteAnalysisJson(std::cout, document, file, prompts.Messages(),
                        {.layout = analyze.files.size() > 1 || analyze.statistics ? JsonWriter::Layout::kOneLine
                                                                                  : JsonWriter::Layout::kIndented,
                         .withProfiles = analyze.withProfiles});
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
void PrintStatistics(const SeveralResults& several, const AnalyzeOptions& analyze, bool metric) {
  const std::vector<SeveralRow> rows = several.Rows(*analyze.statistics);
  switch (analyze.form) {
    case OutputForm::kTable:
      std::cout << StatisticsTable(rows, analyze.files, metric);
      break;
    case OutputForm::kCsv:
      std::cout << StatisticsCsv(rows, metric);
      break;
    case OutputForm::kJson:
      WriteStatisticsJson(std::cout, rows);
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
  if (!analyze.indication.empty()) return RunIndicatedAnalysis(analyze, common);
  const std::vector<InputFile> files = InputFiles(analyze.files, common);
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  // What the output shows.
  setup->document.wanted = {
      .spectrum = analyze.withProfiles, .heightCurves = false, .coreRoughness = analyze.form == OutputForm::kJson};
  const Environment environment = SystemEnvironment();
  RunFiles clashing{.reads = PathsOf(files),
                    .writes = {PathFromSystemText(analyze.appendTo), PathFromSystemText(analyze.qdas)}};
  if (WritesTraceFile(setup->document, environment)) clashing.writes.push_back(environment.traceFile);
  RefuseClash(std::move(clashing), common);
  int status = setup->settingsHadProblems ? kExitRefused : kExitDone;
  if (analyze.form == OutputForm::kCsv) std::cout << CsvHeader(setup->document);
  bool isFirst = true;
  SeveralResults several;
  for (const InputFile& file : files) {
    Document document = setup->document;
    prompts.BeginFile(file.name);
    const RunStep run = AnalyseOne(document, file, *setup, analyze, prompts, status);
    run.ok() ? several.Add(document) : several.AddFailed();
    if (!run.loaded) continue;
    Print(document, file.name, prompts, analyze, isFirst);
    isFirst = false;
  }
  if (analyze.statistics) PrintStatistics(several, analyze, setup->document.settings.display.Metric);
  return FinishOutput(status);
}

}  // namespace texturon
