// SPDX-License-Identifier: Apache-2.0

#include "app/run_options.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <string_view>
#include <utility>

#include "analysis/analysis_run.h"
#include "analysis/file_clash.h"
#include "analysis/form_table.h"
#include "app/edition_output.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "formats/companion_file.h"
#include "platform/platform.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

/// A whole text as a finite number.
std::optional<double> WholeNumber(std::string_view text) {
  const ParsedDouble number = ParseDouble(text);
  if (!number.usable() || number.length != text.size()) return std::nullopt;
  return number.value;
}

/// Exactly Count numbers separated by commas.
template <std::size_t Count>
std::optional<std::array<double, Count>> NumberList(std::string_view text) {
  std::array<double, Count> numbers{};
  for (std::size_t i = 0; i < Count; ++i) {
    const std::size_t comma = text.find(',');
    if ((comma == std::string_view::npos) != (i + 1 == Count)) return std::nullopt;
    const auto number = WholeNumber(text.substr(0, comma));
    if (!number) return std::nullopt;
    numbers[i] = *number;
    if (comma != std::string_view::npos) text.remove_prefix(comma + 1);
  }
  return numbers;
}

std::optional<std::int32_t> WholeIndex(double number) {
  if (number != std::trunc(number) || std::abs(number) > 2147483647.0) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

/// Loads the settings file. False, with a sentence on standard error, when it cannot be used at all; `hadProblems`
/// tells of values that are not understood, which are read as far as they go.
bool LoadSettingsFile(const std::string& file, Settings& settings, ConsolePrompts& prompts, bool& hadProblems) {
  const SettingsFileResult result = LoadSettings(PathFromSystemText(file), settings, prompts);
  if (!result.ok()) {
    Complain(file + " " + result.reason + ".");
    return false;
  }
  if (!result.found) {
    Complain(file + ": there is no such file.");
    return false;
  }
  hadProblems = !result.understoodAll;
  if (hadProblems) Complain(file + " holds values that are not understood; they are read as far as they go.");
  return true;
}

void ApplyAssignments(const std::vector<std::string>& assignments, Settings& settings) {
  for (const std::string& assignment : assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) throw UsageError{"--set " + assignment + ": not of the form SECTION.KEY=VALUE."};
    const auto refusal = SetOne(settings, Windows1252FromUtf8(assignment.substr(0, equals)),
                                Windows1252FromUtf8(assignment.substr(equals + 1)));
    if (refusal) throw UsageError{"--set " + assignment + ": " + Utf8FromWindows1252(*refusal) + "."};
  }
}

void ApplyRunOptions(const CommonOptions& options, RunSetup& setup) {
  Document& document = setup.document;
  document.quietMode = options.quiet;
  SetWholeCutoffs(document, options.wholeCutoffs);
  document.scope.allDataForForm = options.allDataForForm;
  document.writesTraceFile = !options.noTrace;
  setup.invert = options.invert;
  if (!options.region.empty()) {
    document.scope.region = ParseRegion(options.region);
    if (!document.scope.region) {
      throw UsageError{"--region " + options.region + ": not of the form MODE,START,END,LENGTH."};
    }
  }
  if (!options.exclude.empty()) {
    const auto ends = NumberList<2>(options.exclude);
    const auto first = ends ? WholeIndex((*ends)[0]) : std::nullopt;
    const auto last = ends ? WholeIndex((*ends)[1]) : std::nullopt;
    if (!first || !last) throw UsageError{"--exclude " + options.exclude + ": not of the form FIRST,LAST."};
    if (*first > *last) throw UsageError{"--exclude " + options.exclude + ": the first sample comes first."};
    const std::string_view refusal = RequestedForm(document.settings.analysis).exclusionRefusal;
    if (!refusal.empty()) throw UsageError{"--exclude " + options.exclude + ": " + std::string(refusal)};
    ExcludeFromForm(document, *first, *last);
  }
  if (!options.spacing.empty()) {
    setup.import.spacingUM = WholeNumber(options.spacing);
    if (!setup.import.spacingUM || *setup.import.spacingUM <= 0.0) {
      throw UsageError{"--spacing " + options.spacing + ": not a number above 0."};
    }
  }
  if (options.profile > 0) setup.import.profileChoice = options.profile;
  setup.import.column = options.column;
  setup.import.integratesSlopes = options.slope;
}

}  // namespace

std::optional<RegionChoice> ParseRegion(const std::string& text) {
  const auto numbers = NumberList<4>(text);
  if (!numbers) return std::nullopt;
  const auto mode = WholeIndex((*numbers)[0]);
  if (!mode) return std::nullopt;
  return RegionChoice{*mode, (*numbers)[1], (*numbers)[2], (*numbers)[3]};
}

int FinishOutput(int status) {
  std::cout.flush();
  if (std::cout) return status;
  Complain("standard output cannot be written.");
  return kExitRefused;
}

void Complain(const std::string& text) {
  std::cerr << "texturon: " << EscapedControls(text) << '\n';
}

void ComplainOf(const std::string& file, std::string_view reason) {
  Complain(file + " " + Utf8FromWindows1252(reason) + (reason.ends_with('.') ? "" : "."));
}

std::optional<RunSetup> PrepareRun(const CommonOptions& options, ConsolePrompts& prompts, SectionsOf sections) {
  RunSetup setup;
  setup.document = MakeDocument();
  Settings settings = setup.document.settings;
  if (!options.settingsFile.empty()) {
    if (!LoadSettingsFile(options.settingsFile, settings, prompts, setup.settingsHadProblems)) return std::nullopt;
  }
  ApplyAssignments(options.assignments, settings);
  ApplyEditionOptions(options, settings);
  if (options.sections > 0 && sections == SectionsOf::kEdition && settings.analysis.standard.Edition == "1997") {
    prompts.Notice("--sections has no effect under the edition of 1997.");
  }
  if (options.imperial) settings.display.Metric = false;
  ApplySettings(setup.document, std::move(settings));
  ApplyRunOptions(options, setup);
  return setup;
}

std::vector<InputFile> InputFiles(const std::vector<std::string>& names, const CommonOptions& options) {
  std::string extension = options.standardInputAs;
  if (!extension.empty() && !extension.starts_with('.')) extension.insert(0, ".");
  const auto times = std::count(names.begin(), names.end(), kStandardInput);
  if (times > 1) throw UsageError{"standard input (-) can be read only once."};
  if (times == 1 && extension.empty()) throw UsageError{"- needs --as EXT, the extension that it is read as."};
  if (times == 0 && !extension.empty()) throw UsageError{"--as is for standard input (-), which is not asked for."};
  std::vector<InputFile> files;
  for (const std::string& name : names) {
    const bool isStandardInput = name == kStandardInput;
    files.push_back({name, PathFromSystemText(isStandardInput ? "standard input" + extension : name), isStandardInput});
  }
  return files;
}

std::vector<std::filesystem::path> PathsOf(const std::vector<InputFile>& files) {
  std::vector<std::filesystem::path> paths;
  for (const InputFile& file : files) {
    if (!file.isStandardInput) paths.push_back(file.path);
  }
  return paths;
}

void RefuseClash(RunFiles files, const CommonOptions& options) {
  std::vector<std::filesystem::path> companions;
  for (const std::filesystem::path& path : files.reads) {
    if (auto companion = CompanionOf(path)) companions.push_back(std::move(*companion));
  }
  files.reads.insert(files.reads.end(), companions.begin(), companions.end());
  files.reads.push_back(PathFromSystemText(options.settingsFile));
  files.reads.push_back(PathFromSystemText(options.classTable));
  const std::string clash = FileClash(files);
  if (!clash.empty()) throw UsageError{Utf8FromWindows1252(clash)};
}

bool LoadInto(Document& document, const InputFile& file, const RunSetup& setup, ConsolePrompts& prompts,
              const Environment& environment) {
  FileBytes content;
  if (file.isStandardInput) content = ReadStandardInput();
  RecordSource source{.path = file.path, .import = setup.import, .invert = setup.invert};
  if (file.isStandardInput) source.bytes = content.bytes;
  prompts.HoldMessages(true);
  const RunStep step =
      content.ok() ? LoadRecord(document, source, prompts, environment) : RunStep{.cause = content.reason};
  prompts.HoldMessages(false);
  if (!step.ok()) {
    ComplainOf(file.name, step.cause);
    return false;
  }
  for (const std::string& message : prompts.Messages()) prompts.Notice(message);
  return true;
}

}  // namespace texturon
