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
#include "base/charset.h"
#include "base/date_text.h"
#include "export/parameter_file.h"
#include "platform/platform.h"

namespace texturon {
namespace {

void Print(const Document& document, const std::string& file, const ConsolePrompts& prompts,
           const AnalyzeOptions& analyze) {
  switch (analyze.form) {
    case OutputForm::kTable:
      std::cout << AnalysisTable(document, file, analyze.besideInstrument);
      break;
    case OutputForm::kCsv:
      std::cout << CsvRow(document, file);
      break;
    case OutputForm::kJson:
      WriteAnalysisJson(
          std::cout, document, file, prompts.Messages(),
          {.layout = analyze.files.size() > 1 ? JsonWriter::Layout::kOneLine : JsonWriter::Layout::kIndented,
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

}  // namespace

int RunAnalyze(const AnalyzeOptions& analyze, const CommonOptions& common) {
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
  for (const InputFile& file : files) {
    Document document = setup->document;
    prompts.BeginFile(file.name);
    if (!LoadInto(document, file, *setup, prompts, environment)) {
      status = kExitRefused;
      continue;
    }
    const RunStep run = AnalyseRecord(document, prompts, environment);
    if (!run.loaded) {
      ComplainOf(file.name, run.cause);
      status = kExitRefused;
      continue;
    }
    if (!run.ok()) {
      status = kExitRefused;
      Complain(file.name + ": not analysed, " + run.cause + ".");
    }
    if (run.ok() && !analyze.appendTo.empty() && !AppendRow(document, analyze.appendTo, environment)) {
      status = kExitRefused;
    }
    if (run.ok() && !analyze.qdas.empty() &&
        !AppendQdas(QdasTextOf(document, environment.localTime()), analyze.qdas, InUse::kRetryOnce)) {
      status = kExitRefused;
    }
    if (analyze.form == OutputForm::kTable && !isFirst) std::cout << "\n\n";
    isFirst = false;
    Print(document, file.name, prompts, analyze);
  }
  return FinishOutput(status);
}

}  // namespace texturon
