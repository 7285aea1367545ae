// SPDX-License-Identifier: Apache-2.0

#include "app/command_table.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "analysis/decision.h"
#include "app/commands.h"
#include "app/uncertainty_output.h"
#include "base/number_text.h"

namespace texturon {
namespace {

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
  command.add_flag("--slope", options.slope, "the file is a table of slopes: integrate them");
  command.add_flag("--invert", options.invert, "turn the heights upside down after reading");
  command.add_flag("--quiet", options.quiet, "nothing on standard error but refusals");
}

void AddQdas(CLI::App& command, std::string& file) {
  command
      .add_option("--qdas", file,
                  "add the rows with limits to a file for statistics programs, which is created if need be")
      ->type_name("DFQ");
}

void AddStandardInput(CLI::App& command, CommonOptions& options) {
  command.add_option("--as", options.standardInputAs, "extension that standard input, given as -, is read as")
      ->type_name("EXT");
}

void AddEditionOptions(CLI::App& command, CommonOptions& options) {
  command
      .add_option("--edition", options.edition, "edition of the standards that the rows are of (that of the settings)")
      ->type_name("1997|2021|both")
      ->check(CLI::IsMember({"1997", "2021", "both"}));
  command.add_option("--class", options.settingClass, "setting class of ISO 21920-3: cut-offs, filters and lengths")
      ->type_name("Sc1..Sc5");
  command.add_option("--class-table", options.classTable, "a lab's own table of the classes")->type_name("INI");
  command.add_option("--sections", options.sections, "sections of the evaluation length (5)")
      ->type_name("N")
      ->check(CLI::Range(1, 1000));
  command
      .add_option("--feature", options.features,
                  "a feature parameter as a row of its own: P: FC; D; Wolfprune 5 %; All; HDh; Mean; may be repeated")
      ->type_name("TEXT")
      ->allow_extra_args(false);
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
  AddEditionOptions(command, options);
}

/// The budget and the rule that verdicts go by. Returns the option of the budget.
CLI::Option* AddBudget(CLI::App& command, BudgetOptions& options, const std::string& meaning) {
  CLI::Option* const budget = command.add_option("--budget", options.budget, meaning)->type_name("INI");
  command.add_option("--trials", options.trials, "analyses of records that are off as the budget says (1000)")
      ->type_name("N")
      ->check(CLI::Range(2, kMostTrials))
      ->needs(budget);
  command.add_option("--seed", options.seed, "of the random numbers, a whole number (1)")
      ->type_name("S")
      ->check([](const std::string& text) {
        const ParsedDouble number = ParseDouble(text);
        const bool isWhole = number.usable() && number.length == text.size() && number.value >= 0.0 &&
                             number.value <= kMostSeed && number.value == std::trunc(number.value) &&
                             text.find_first_not_of("0123456789") == std::string::npos;
        return isWhole ? std::string() : "is no whole number below 2^53: " + text;
      })
      ->needs(budget);
  command
      .add_option(
          "--decision-rule",
          [&options](const std::vector<std::string>& words) {
            for (const DecisionRuleName& rule : DecisionRules()) {
              if (rule.name == words.front()) options.decisionRule = rule.number;
            }
            return options.decisionRule.has_value();
          },
          "how an uncertainty enters a verdict (simple, or as the settings say)")
      ->type_name("simple|guarded|guarded-fail");
  return budget;
}

constexpr const char* kBudgetOfVerdicts = "budget of the instrument: what the verdicts of a guarded rule go by";

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
  command.add_option("--jobs", options.jobs, "files analysed at once (one a processor core)")->type_name("N");
  command.add_option("--profiles-to", options.profilesTo, "folder for primary, waviness and roughness of each file")
      ->type_name("DIR");
  command.add_option("--failures", options.failuresFile, "gets a line a file that failed: path, tab, reason")
      ->type_name("FILE");
  command.add_option("--summary", options.summaryFile, "gets the statistics of every column")->type_name("FILE");
  AddQdas(command, options.qdas);
  command.add_flag("--resume", options.resume, "leave out files that the parameter file has rows of");
  AddBudget(command, options, kBudgetOfVerdicts);
}

void AddWatchOptions(CLI::App& command, WatchOptions& options) {
  command.add_option("folder", options.folder, "folder to poll; without it that of the settings")->type_name("FOLDER");
  command.add_option("--mask", options.mask, "which files: * and ? stand for characters")->type_name("GLOB");
  command.add_option("--parameter-file", options.parameterFile, "gets a row a file; created if need be")
      ->type_name("CSV");
  AddQdas(command, options.qdas);
  command.add_option("--hold", options.holdFolder, "gets a copy of each file, which is then deleted from the folder")
      ->type_name("DIR");
  AddBudget(command, options, kBudgetOfVerdicts);
}

void AddUncertainty(CLI::App& command, AnalyzeOptions& options) {
  CLI::Option* const budget =
      AddBudget(command, options, "budget of the instrument: the uncertainty of every parameter");
  command.add_option("--interval", options.interval, "which interval of 95 % of the trials (symmetric)")
      ->type_name("symmetric|shortest")
      ->check(CLI::IsMember({"symmetric", "shortest"}))
      ->needs(budget);
  command.add_flag("--sensitivities", options.sensitivities, "also what each line of the budget contributes")
      ->needs(budget);
}

void AddAnalyze(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<AnalyzeOptions>();
  command.add_option("files", options->files, "profile files")->required()->type_name("FILE");
  AddFileOptions(command, common);
  AddStandardInput(command, common);
  AddComputeOptions(command, common);
  CLI::Option* const json = command.add_flag("--json")->description("one JSON object a file");
  CLI::Option* const csv = command.add_flag("--csv")->description("one line a file for spreadsheets")->excludes(json);
  command.add_flag("--profiles", options->withProfiles, "with --json: the profiles and the spectrum as well")
      ->needs(json);
  CLI::Option* const beside =
      command
          .add_flag("--beside-instrument", options->besideInstrument,
                    "in the table: the results that the file carries of its instrument, beside those computed here")
          ->excludes(json)
          ->excludes(csv);
  command
      .add_option("--append-to", options->appendTo, "add a row a file to a parameter file, which is created if need be")
      ->type_name("CSV");
  AddQdas(command, options->qdas);
  CLI::Option* const indication =
      command
          .add_option("--indication", options->indication,
                      "what a drawing asks for: settings, rows, limits and the verdict over the files")
          ->type_name("TEXT")
          ->excludes(beside);
  CLI::Option* const statistics = command.add_flag("--statistics")
                                      ->description("a column a file, then mean, standard deviation, range and verdict")
                                      ->excludes(beside)
                                      ->excludes(indication);
  const auto rule = std::make_shared<std::string>();
  command.add_option("--acceptance", *rule, "rule of that verdict (max, or as the settings say)")
      ->type_name("max|16%|median")
      ->check(CLI::IsMember({"max", "16%", "median"}))
      ->needs(statistics);
  AddUncertainty(command, *options);
  command.add_option("--again", options->again, "repeat what an object of --json describes, and compare")
      ->type_name("RESULT.json")
      ->excludes(json)
      ->excludes(csv)
      ->excludes(statistics);
  command.callback([=, &common, &status] {
    options->statistics = static_cast<bool>(*statistics);
    for (const AcceptanceRuleName& row : AcceptanceRules()) {
      if (*rule == row.name) options->acceptance = row.rule;
    }
    options->form = *json ? OutputForm::kJson : *csv ? OutputForm::kCsv : OutputForm::kTable;
    status = RunAnalyze(*options, common);
  });
}

void AddCompare(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<CompareOptions>();
  command.add_option("file", options->file, "profile file; alone: which practice explains its instrument's values")
      ->type_name("FILE");
  command.add_option("--a", options->a, "settings of one side, or the name of a practice")->type_name("INI");
  command.add_option("--b", options->b, "settings of the other")->type_name("INI");
  command.add_option("--a-set", options->aSet, "one setting of side a; may be repeated")
      ->type_name("SECTION.KEY=VALUE")
      ->allow_extra_args(false);
  command.add_option("--b-set", options->bSet, "one setting of side b; may be repeated")
      ->type_name("SECTION.KEY=VALUE")
      ->allow_extra_args(false);
  CLI::Option* const json = command.add_flag("--json", options->asJson, "one JSON object");
  command.add_flag("--markdown", options->asMarkdown, "the table for a text")->excludes(json);
  command.add_flag("--practices", options->listsPractices, "list the practices that have a name");
  AddFileOptions(command, common);
  AddStandardInput(command, common);
  AddComputeOptions(command, common);
  command.callback([=, &common, &status] { status = RunCompare(*options, common); });
}

void AddInspect(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<InspectOptions>();
  command.add_option("files", options->files, "profile files")->required()->type_name("FILE");
  command.add_flag("--json", options->asJson, "one JSON object a file");
  AddFileOptions(command, common);
  AddStandardInput(command, common);
  command.callback([=, &common, &status] { status = RunInspect(*options, common); });
}

void AddExport(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<ExportOptions>();
  command.add_option("file", options->file, "profile file")->required()->type_name("FILE");
  command.add_option("kind", options->kind, "what to write: " + ExportKindNames())->required()->type_name("KIND");
  command.add_option("-o,--output", options->output, "file to write; standard output without it")
      ->type_name("FILE")
      ->check(
          [](const std::string& name) { return name.empty() ? std::string("is no name of a file") : std::string(); });
  command.add_flag("--mod", options->asMod, "as form data (MOD): " + ModKindNames());
  AddFileOptions(command, common);
  AddStandardInput(command, common);
  AddComputeOptions(command, common);
  command.callback([=, &common, &status] { status = RunExport(*options, common); });
}

void AddConvert(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<ConvertOptions>();
  command.add_option("in", options->input, "profile file")->required()->type_name("IN");
  command.add_option("out", options->output, "file to write: " + WriterExtensions() + "; anything else becomes .lmt")
      ->required()
      ->type_name("OUT");
  AddFileOptions(command, common);
  AddStandardInput(command, common);
  command.callback([=, &common, &status] { status = RunConvert(*options, common); });
}

void AddBatch(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<BatchOptions>();
  AddBatchOptions(command, *options);
  AddFileOptions(command, common);
  AddComputeOptions(command, common);
  command.callback([=, &common, &status] { status = RunBatch(*options, common); });
}

void AddWatch(CLI::App& command, CommonOptions& common, int& status) {
  const auto options = std::make_shared<WatchOptions>();
  AddWatchOptions(command, *options);
  AddFileOptions(command, common);
  AddComputeOptions(command, common);
  command.callback([=, &common, &status] { status = RunWatch(*options, common); });
}

void AddVerify(CLI::App& command, CommonOptions& /*common*/, int& status) {
  const auto options = std::make_shared<VerifyOptions>();
  command.add_flag("--json", options->asJson, "one JSON object with every value");
  command.add_option("--report", options->report, "write the whole with version, program, machine and date")
      ->type_name("FILE.md|.html|.json");
  command.callback([=, &status] { status = RunVerify(*options); });
}

void AddIndication(CLI::App& command, CommonOptions& /*common*/, int& status) {
  const auto options = std::make_shared<IndicationOptions>();
  command.add_option("text", options->text, "an indication as it stands on a drawing: U Rz 6.3 T16%")
      ->required()
      ->type_name("TEXT");
  command.add_option("--values", options->values, "measured values, one each evaluation length: the verdict over them")
      ->type_name("A,B,C");
  command.add_option("--class-table", options->classTable, "a lab's own table of the classes")->type_name("INI");
  command.add_flag("--json", options->asJson, "one JSON object");
  command.callback([=, &status] { status = RunIndication(*options); });
}

void AddParameters(CLI::App& command, CommonOptions& /*common*/, int& status) {
  const auto options = std::make_shared<ParametersOptions>();
  command.add_flag("--json", options->asJson, "one JSON array with an object a row");
  command.add_option("--edition", options->edition, "edition of the standards (1997)")
      ->type_name("1997|2021")
      ->check(CLI::IsMember({"1997", "2021"}));
  command.callback([=, &status] { status = RunParameters(*options); });
}

void AddFormats(CLI::App& command, CommonOptions& /*common*/, int& status) {
  command.callback([&status] { status = RunFormats(); });
}

void AddSettings(CLI::App& command, CommonOptions& /*common*/, int& status) {
  const auto options = std::make_shared<SettingsOptions>();
  command.add_option("--check", options->checkFile, "report unknown keys and bad values of a settings file")
      ->type_name("FILE");
  command.callback([=, &status] { status = RunSettings(*options); });
}

constexpr ConsoleCommand kCommands[] = {
    {"analyze", "load, compute and print the parameters", AddAnalyze},
    {"compare", "what lies between two ways of evaluating a file, step by step", AddCompare},
    {"inspect", "which reader took a file, or why each refused, and what it holds", AddInspect},
    {"export", "write one profile or curve of the analysis of a file", AddExport},
    {"convert", "read any profile file and write another; OUT names the format", AddConvert},
    {"batch", "analyse the files of a folder, one row each in a parameter file", AddBatch},
    {"watch", "analyse what arrives in a folder, hold and delete it", AddWatch},
    {"verify", "analyse the built-in standards, whose values are known, through every format", AddVerify},
    {"indication", "say what an indication of a drawing asks for", AddIndication},
    {"parameters", "list the parameter catalogue", AddParameters},
    {"formats", "list the file formats", AddFormats},
    {"settings", "list every setting with type, unit and default", AddSettings},
};

}  // namespace

std::span<const ConsoleCommand> CommandTable() {
  return kCommands;
}

bool IsCommand(std::string_view word) {
  return word == "help" || std::any_of(std::begin(kCommands), std::end(kCommands),
                                       [&](const ConsoleCommand& command) { return command.name == word; });
}

}  // namespace texturon
