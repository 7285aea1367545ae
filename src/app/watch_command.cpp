// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <iostream>
#include <utility>

#include "analysis/decision.h"
#include "analysis/document_export.h"
#include "app/commands.h"
#include "app/provenance_companion.h"
#include "app/qdas_output.h"
#include "app/uncertainty_output.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "export/parameter_file.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/event_log.h"
#include "unattended/folder_watch.h"

namespace texturon {
namespace {

FolderWatchOptions OptionsOf(const WatchOptions& options, const Settings& settings) {
  WatchPlan plan = PlanWatch(settings, {.folder = PathFromSystemText(options.folder),
                                        .mask = Windows1252FromUtf8(options.mask),
                                        .holdFolder = PathFromSystemText(options.holdFolder),
                                        .parameterFile = PathFromSystemText(options.parameterFile)});
  if (!plan.reason.empty()) throw UsageError{"watch: " + plan.reason + "; see --help."};
  return std::move(plan.options);
}

/// ", 1 out of tolerance, 2 undecided"; what there is none of is left out.
std::string CountsOf(const FileAnalysis& analysis) {
  const auto count = [&analysis](bool ColumnValue::*flag) {
    return std::count_if(analysis.columns.begin(), analysis.columns.end(),
                         [flag](const ColumnValue& column) { return column.*flag; });
  };
  std::string text;
  for (const auto& [flag, words] : {std::pair(&ColumnValue::outOfTolerance, " out of tolerance"),
                                    std::pair(&ColumnValue::undecided, " undecided")}) {
    if (const auto number = count(flag); number > 0) text += ", " + IntegerText(number) + words;
  }
  return text;
}

}  // namespace

int RunWatch(const WatchOptions& options, const CommonOptions& common) {
  ConsolePrompts prompts({.answersYes = false, .isQuiet = common.quiet});
  auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  setup->import.marksInput = true;
  std::optional<UncertaintyRequest> uncertainty;
  if (!TakeBudget(options, setup->document.settings.decision, uncertainty, common.quiet)) return kExitRefused;
  const bool isGuarded = IsGuarded(setup->document.settings.decision.DecisionRule);
  FolderWatchOptions watch = OptionsOf(options, setup->document.settings);
  watch.qdasFile = PathFromSystemText(options.qdas);
  const Environment environment = SystemEnvironment();
  if (!options.qdas.empty() && !QdasTextOf(setup->document, environment.localTime())) {
    ComplainOf(options.qdas, "gets nothing: no row has limits");
    return kExitRefused;
  }
  ProvenanceCompanion companion(watch.parameterFile, setup->document, RequestOf(common, *setup), environment,
                                uncertainty ? &*uncertainty : nullptr);
  RunFiles clashing{.reads = FilesOfBudget(PathFromSystemText(options.budget)),
                    .writes = {watch.parameterFile, watch.holdFolder, watch.qdasFile, companion.Path()}};
  if (!watch.singleFile.empty()) clashing.reads.push_back(watch.folder / PathFromSystemText(watch.singleFile));
  if (watch.logsEvents) clashing.writes.push_back(environment.workingFolder / EventLog::kName);
  RefuseClash(std::move(clashing), common);
  if (const std::string objection = NoParameterFile(watch.parameterFile); !objection.empty()) {
    ComplainOf(SystemTextFromPath(watch.parameterFile), objection);
    return kExitRefused;
  }
  const std::string header = ParameterFileTextOf(setup->document, {}).header;
  if (const std::string objection = OtherEdition(watch.parameterFile, header); !objection.empty()) {
    ComplainOf(SystemTextFromPath(watch.parameterFile), objection);
    return kExitRefused;
  }
  CatchInterrupts();
  const std::string reason = WatchFolder(
      watch,
      {.start = setup->document,
       .import = setup->import,
       .invert = setup->invert,
       .uncertainty = uncertainty ? &*uncertainty : nullptr},
      environment,
      {.analysed =
           [&](const std::string& file, const FileAnalysis& analysis) {
             companion.Add(watch.folder / PathFromSystemText(file), analysis.input);
             (void)AppendQdas(analysis.qdas, options.qdas, InUse::kWait);
             if (common.quiet) return;
             std::cout << EscapedControls(file) << " analysed" << (isGuarded ? CountsOf(analysis) : "") << std::endl;
             for (const std::string& remark : analysis.remarks) Complain(file + ": " + Utf8FromWindows1252(remark));
           },
       .failed = [](const std::string& sentence) { Complain(Utf8FromWindows1252(sentence)); },
       .stops = Interrupted});
  if (!reason.empty()) {
    Complain(Utf8FromWindows1252(reason));
    return kExitRefused;
  }
  return FinishOutput(setup->settingsHadProblems || companion.HasFailed() ? kExitRefused : kExitDone);
}

}  // namespace texturon
