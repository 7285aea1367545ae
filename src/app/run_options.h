// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis_run.h"
#include "analysis/document.h"
#include "app/console_prompts.h"
#include "formats/profile_reader.h"
#include "platform/environment.h"

namespace texturon {

/// Exit statuses of the program.
enum ExitStatus : int { kExitDone = 0, kExitRefused = 1, kExitUsage = 2 };

/// The common options as the command line gave them. Texts are in the system's own bytes.
struct CommonOptions {
  std::string settingsFile;
  std::vector<std::string> assignments;  ///< SECTION.KEY=VALUE
  std::string region;                    ///< MODE,START,END,LENGTH
  std::string exclude;                   ///< FIRST,LAST
  std::string spacing;
  std::string answer;
  std::string standardInputAs;        ///< extension that standard input is read as
  std::string edition;                ///< 1997, 2021 or both; empty: that of the settings
  std::string settingClass;           ///< Sc1 to Sc5
  std::string classTable;             ///< file
  std::vector<std::string> features;  ///< "P: FC; D; ..."
  std::int32_t sections = 0;          ///< 0: not given
  std::int32_t profile = 0;           ///< 0: not chosen
  std::int32_t column = 1;
  bool imperial = false;
  bool quiet = false;
  bool wholeCutoffs = false;
  bool allDataForForm = false;
  bool invert = false;
  bool slope = false;
  bool noTrace = false;
};

/// A command line that is wrong: exit status 2.
struct UsageError {
  std::string text;
};

/// The region that a text of this form names; nothing for any other.
std::optional<RegionChoice> ParseRegion(const std::string& text);

/// The file name that stands for standard input.
inline constexpr std::string_view kStandardInput = "-";

/// What the file arguments of a command that reads profiles stand for.
struct InputFile {
  std::string name;            ///< as it was given, in the system's own bytes
  std::filesystem::path path;  ///< of standard input, which lies nowhere: a name with the extension
  bool isStandardInput = false;
};

/// Throws UsageError where standard input stands twice, or without its extension, or the extension without it.
std::vector<InputFile> InputFiles(const std::vector<std::string>& names, const CommonOptions& options);

/// What every command that analyses or reads files starts from.
struct RunSetup {
  Document document;  ///< settings in force, no profile
  ImportOptions import;
  bool invert = false;
  bool settingsHadProblems = false;  ///< the settings file held values that do not parse: the exit status says so
};

/// What --sections is for: the edition of 2021, or what a drawing leaves open in either.
enum class SectionsOf : bool { kEdition, kDrawing };

/// Builds the start of a run from the options: defaults, settings file, assignments, then what the settings file cannot
/// carry. Throws UsageError for a wrong option; empty, with one sentence on standard error, for a settings file that
/// cannot be read.
std::optional<RunSetup> PrepareRun(const CommonOptions& options, ConsolePrompts& prompts,
                                   SectionsOf sections = SectionsOf::kEdition);

/// Throws UsageError where a run would destroy a file: `files` beside the settings file and the companions of what is
/// read. Before anything is read or written.
void RefuseClash(RunFiles files, const CommonOptions& options);
/// The paths of files that lie somewhere.
std::vector<std::filesystem::path> PathsOf(const std::vector<InputFile>& files);

/// Loads a file into the document. False, with one sentence on standard error, when it could not be read.
bool LoadInto(Document& document, const InputFile& file, const RunSetup& setup, ConsolePrompts& prompts,
              const Environment& environment);

/// Flushes standard output. Returns `status`, or a refusal with a sentence where the output did not take everything.
int FinishOutput(int status);

/// Writes one sentence on standard error: "texturon: <text>". Control characters, which only names have, are escaped.
void Complain(const std::string& text);

/// The same of a file, in the system's own bytes; `reason`, Windows-1252, goes on where its name stops.
void ComplainOf(const std::string& file, std::string_view reason);

}  // namespace texturon
