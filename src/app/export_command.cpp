// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <iostream>
#include <utility>

#include "analysis/analysis_run.h"
#include "analysis/document_export.h"
#include "analysis/pipeline.h"
#include "app/commands.h"
#include "base/charset.h"
#include "base/text.h"
#include "platform/platform.h"

namespace texturon {

std::string ExportKindNames() {
  std::string names;
  for (const ExportKind& kind : ExportKinds()) {
    if (!names.empty()) names += ", ";
    names += kind.name;
  }
  return names;
}

std::string ModKindNames() {
  std::string names;
  for (const ExportKind& kind : ExportKinds()) {
    if (kind.makeMod == nullptr) continue;
    if (!names.empty()) names += " and ";
    names += kind.name;
  }
  return names;
}

int RunExport(const ExportOptions& options, const CommonOptions& common) {
  const ExportKind* const kind = FindExportKind(options.kind);
  if (kind == nullptr) throw UsageError{"export: " + options.kind + " is none of " + ExportKindNames() + "."};
  const bool isNamedMod = kind->makeMod != nullptr &&
                          EqualIgnoringCase(TextFromPath(PathFromSystemText(options.output).extension()), ".mod");
  const ExportFunction make = options.asMod || isNamedMod ? kind->makeMod : kind->make;
  if (make == nullptr) throw UsageError{"export: " + options.kind + " has no form as --mod."};

  const InputFile file = InputFiles({options.file}, common).front();
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  Document document = setup->document;
  prompts.BeginFile(options.file);
  const Environment environment = SystemEnvironment();
  RunFiles clashing{.reads = PathsOf({file}), .writes = {PathFromSystemText(options.output)}};
  if (WritesTraceFile(document, environment)) clashing.writes.push_back(environment.traceFile);
  RefuseClash(std::move(clashing), common);
  if (!LoadInto(document, file, *setup, prompts, environment)) return kExitRefused;
  // A record that cannot be analysed may still hold what is exported.
  const RunStep run = AnalyseRecord(document, prompts, environment);
  if (!run.loaded) {
    ComplainOf(options.file, run.cause);
    return kExitRefused;
  }
  const ExportResult result = make(document, prompts);
  if (!result.ok()) {
    Complain(options.file + ": not exported, " + Utf8FromWindows1252(result.reason) + ".");
    return kExitRefused;
  }
  const int status = setup->settingsHadProblems ? kExitRefused : kExitDone;
  if (options.output.empty()) {
    std::cout << result.text;
    return FinishOutput(status);
  }
  const FileOutcome written = ReplaceFile(PathFromSystemText(options.output), result.text);
  if (!written.ok()) {
    Complain(options.output + " " + written.reason + ".");
    return kExitRefused;
  }
  return status;
}

}  // namespace texturon
