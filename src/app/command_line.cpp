// SPDX-License-Identifier: Apache-2.0

#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "app/commands.h"
#include "base/charset.h"
#include "base/text.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/command_line_run.h"

namespace texturon {
namespace {

constexpr std::array<std::string_view, 10> kCommands = {"analyze", "inspect", "export",     "convert",  "batch",
                                                        "watch",   "formats", "parameters", "settings", "help"};

/// The headless batch contract: a plan as first argument, or three arguments whose first is no command.
bool IsBatchContract(int argc, char** argv) {
  if (argc < 2) return false;
  const std::string_view first = argv[1];
  constexpr std::string_view kPlanExtension = ".ini";
  if (first.size() >= kPlanExtension.size() &&
      EqualIgnoringCase(first.substr(first.size() - kPlanExtension.size()), kPlanExtension)) {
    return true;
  }
  return argc == 4 && !first.starts_with('-') &&
         std::find(kCommands.begin(), kCommands.end(), first) == kCommands.end();
}

void AddSettingsOptions(CLI::App& command, CommonOptions& options) {
  command.add_option("--settings", options.settingsFile, "settings file in force; without it the built-in defaults")
      ->type_name("INI");
  command.add_option("--set", options.assignments, "one setting, after the file; may be repeated")
      ->type_name("SECTION.KEY=VALUE")
      ->allow_extra_args(false);
}

void AddFileOptions(CLI::App& command, CommonOptions& options) {
  AddSettingsOptions(command, options);
  command.add_option("--profile", options.profile, "which profile of a file with several, from 1")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  command.add_option("--spacing", options.spacing, "point spacing for a file that states none, in um")->type_name("UM");
  command.add_option("--column", options.column, "which column of a table, from 1")->type_name("N");
  command.add_option("--answer", options.answer, "answer to what a reader or a fit would ask (no)")
      ->type_name("yes|no")
      ->check(CLI::IsMember({"yes", "no"}));
  command.add_flag("--invert", options.invert, "turn the heights upside down after reading");
  command.add_flag("--quiet", options.quiet, "nothing on standard error but refusals");
}

void AddComputeOptions(CLI::App& command, CommonOptions& options) {
  command
      .add_option("--region", options.region,
                  "compute over a region: mode (0 start, 1 start and length, 2 end, 3 end and length, 4 start and "
                  "end) and the three lengths in mm")
      ->type_name("MODE,START,END,LENGTH");
  command.add_flag("--whole-cutoffs", options.wholeCutoffs, "evaluate a whole number of long-wave cutoffs");
  command.add_option("--exclude", options.exclude, "samples that the form fit leaves out, from 0")
      ->type_name("FIRST,LAST");
  command.add_flag("--all-data-for-form", options.allDataForForm, "fit the form over the whole record");
  command.add_flag("--imperial", options.imperial, "show imperial units");
  command.add_flag("--no-trace", options.noTrace, "write no side file of the heights given to the element finder");
}

void AddBatchOptions(CLI::App& command, BatchOptions& options) {
  CLI::Option* folder = command.add_option("folder", options.folder, "folder with profile files")->type_name("FOLDER");
  command.add_option("--mask", options.mask, "which files: * and ? stand for characters (every readable kind)")
      ->type_name("GLOB")
      ->needs(folder);
  command.add_option("--files-from", options.filesFrom, "a list with a path a line instead of a folder")
      ->type_name("LIST")
      ->excludes(folder);
  command.add_option("--parameter-file", options.parameterFile, "gets the rows; created if need be")
      ->required()
      ->type_name("CSV");
  command.add_option("--jobs", options.jobs, "files analysed at once (one a processor core)")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  command.add_option("--profiles-to", options.profilesTo, "folder for primary, waviness and roughness of each file")
      ->type_name("DIR");
  command.add_option("--failures", options.failuresFile, "gets a line a file that failed: path, tab, reason")
      ->type_name("FILE");
  command.add_option("--summary", options.summaryFile, "gets the statistics of every column")->type_name("FILE");
  command.add_flag("--resume", options.resume, "leave out files that the parameter file has rows of");
}

void AddWatchOptions(CLI::App& command, WatchOptions& options) {
  command.add_option("folder", options.folder, "folder to poll; without it that of the settings")->type_name("FOLDER");
  command.add_option("--mask", options.mask, "which files: * and ? stand for characters")->type_name("GLOB");
  command.add_option("--parameter-file", options.parameterFile, "gets a row a file; created if need be")
      ->type_name("CSV");
  command.add_option("--hold", options.holdFolder, "gets a copy of each file, which is then deleted from the folder")
      ->type_name("DIR");
}

int RunTestPlan(const std::vector<std::string>& arguments) {
  const RunOutcome outcome = RunCommandLine(CommandLineText(arguments), SystemEnvironment());
  for (const std::string& remark : outcome.remarks) Complain(Utf8FromWindows1252(remark));
  if (outcome.done) return kExitDone;
  Complain(Utf8FromWindows1252(outcome.reason));
  return kExitRefused;
}

/// Parses and runs; throws what CLI11 and the commands throw for a wrong command line.
int ParseAndRun(CLI::App& app, int argc, char** argv) {
  CommonOptions common;
  int status = kExitDone;

  AnalyzeOptions analyze;
  CLI::App* analyzeCommand = app.add_subcommand("analyze", "load, compute and print the parameters");
  analyzeCommand->add_option("files", analyze.files, "profile files")->required()->type_name("FILE");
  AddFileOptions(*analyzeCommand, common);
  AddComputeOptions(*analyzeCommand, common);
  bool json = false;
  bool csv = false;
  CLI::Option* jsonFlag = analyzeCommand->add_flag("--json", json, "one JSON object a file");
  analyzeCommand->add_flag("--csv", csv, "one line a file for spreadsheets")->excludes(jsonFlag);
  analyzeCommand->add_flag("--profiles", analyze.withProfiles, "with --json: the profiles and the spectrum as well")
      ->needs(jsonFlag);
  analyzeCommand
      ->add_option("--append-to", analyze.appendTo, "add a row a file to a parameter file, which is created if need be")
      ->type_name("CSV");
  analyzeCommand->callback([&] {
    analyze.form = json ? OutputForm::kJson : csv ? OutputForm::kCsv : OutputForm::kTable;
    status = RunAnalyze(analyze, common);
  });

  std::string input;
  std::string output;
  InspectOptions inspect;
  CLI::App* inspectCommand =
      app.add_subcommand("inspect", "which reader took a file, or why each refused, and what it holds");
  inspectCommand->add_option("files", inspect.files, "profile files")->required()->type_name("FILE");
  inspectCommand->add_flag("--json", inspect.asJson, "one JSON object a file");
  AddFileOptions(*inspectCommand, common);
  inspectCommand->callback([&] { status = RunInspect(inspect, common); });

  ExportOptions exportOptions;
  CLI::App* exportCommand = app.add_subcommand("export", "write one profile or curve of the analysis of a file");
  exportCommand->add_option("file", exportOptions.file, "profile file")->required()->type_name("FILE");
  exportCommand->add_option("kind", exportOptions.kind, "what to write: " + ExportKindNames())
      ->required()
      ->type_name("KIND");
  exportCommand->add_option("-o,--output", exportOptions.output, "file to write; standard output without it")
      ->type_name("FILE");
  exportCommand->add_flag("--mod", exportOptions.asMod, "as form data (MOD): " + ModKindNames());
  AddFileOptions(*exportCommand, common);
  AddComputeOptions(*exportCommand, common);
  exportCommand->callback([&] { status = RunExport(exportOptions, common); });

  CLI::App* convert = app.add_subcommand("convert", "read any profile file and write another; OUT names the format");
  convert->add_option("in", input, "profile file")->required()->type_name("IN");
  convert->add_option("out", output, "file to write: " + WriterExtensions() + "; anything else becomes .lmt")
      ->required()
      ->type_name("OUT");
  AddFileOptions(*convert, common);
  convert->callback([&] { status = RunConvert(input, output, common); });

  BatchOptions batch;
  CLI::App* batchCommand =
      app.add_subcommand("batch", "analyse the files of a folder, one row each in a parameter file");
  AddBatchOptions(*batchCommand, batch);
  AddFileOptions(*batchCommand, common);
  AddComputeOptions(*batchCommand, common);
  batchCommand->callback([&] { status = RunBatch(batch, common); });

  WatchOptions watch;
  CLI::App* watchCommand = app.add_subcommand("watch", "analyse what arrives in a folder, hold and delete it");
  AddWatchOptions(*watchCommand, watch);
  AddFileOptions(*watchCommand, common);
  AddComputeOptions(*watchCommand, common);
  watchCommand->callback([&] { status = RunWatch(watch, common); });

  app.add_subcommand("parameters", "list the parameter catalogue")->callback([&] { status = RunParameters(); });
  app.add_subcommand("formats", "list the file formats")->callback([&] { status = RunFormats(); });

  SettingsOptions settings;
  CLI::App* settingsCommand = app.add_subcommand("settings", "list every setting with type, unit and default");
  settingsCommand->add_option("--check", settings.checkFile, "report unknown keys and bad values of a settings file")
      ->type_name("FILE");
  settingsCommand->callback([&] { status = RunSettings(settings); });

  app.require_subcommand(1);
  app.parse(argc, argv);
  return status;
}

}  // namespace

int RunProgram(int argc, char** argv) {
  LetLargeWritesFail();
  if (IsBatchContract(argc, argv)) return RunTestPlan({argv + 1, argv + argc});
  CLI::App app{"Surface texture analysis of profiles."};
  app.name("texturon");
  app.set_version_flag("--version", "texturon " TEXTURON_VERSION);
  try {
    return ParseAndRun(app, argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitDone : kExitUsage;
  } catch (const UsageError& error) {
    Complain(error.text);
    return kExitUsage;
  } catch (const std::exception& error) {
    Complain(std::string("cannot go on: ") + error.what());
    return kExitRefused;
  }
}

}  // namespace texturon
