// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/acceptance.h"
#include "app/run_options.h"

namespace texturon {

enum class OutputForm { kTable, kCsv, kJson };

/// What verdicts go by.
struct BudgetOptions {
  std::string budget;  ///< of the uncertainties; empty: none
  int trials = 1000;
  double seed = 1.0;                         ///< a whole number
  std::optional<std::int32_t> decisionRule;  ///< before that of the settings
};

struct AnalyzeOptions : BudgetOptions {
  std::vector<std::string> files;
  OutputForm form = OutputForm::kTable;
  bool withProfiles = false;
  bool besideInstrument = false;
  std::string qdas;   ///< file for statistics programs that gets the values of each file; empty: none
  std::string again;  ///< result object that is repeated; empty: none
  std::string interval = "symmetric";
  bool sensitivities = false;
  bool statistics = false;                   ///< also what all files come to
  std::optional<AcceptanceRule> acceptance;  ///< rule of its verdicts, before that of the settings
  std::string indication;                    ///< of a drawing: its settings, rows and limits; empty: none
  std::string appendTo;                      ///< parameter file that gets a row a file; empty: none
};

struct CompareOptions {
  std::string file;
  std::string a;  ///< settings file, or name of a practice; empty: the common settings
  std::string b;
  std::vector<std::string> aSet;
  std::vector<std::string> bSet;
  bool asJson = false;
  bool asMarkdown = false;
  bool listsPractices = false;
};

struct ExportOptions {
  std::string file;
  std::string kind;
  std::string output;  ///< empty: standard output
  bool asMod = false;
};

struct ConvertOptions {
  std::string input;
  std::string output;
};

struct InspectOptions {
  std::vector<std::string> files;
  bool asJson = false;
};

struct BatchOptions : BudgetOptions {
  std::string folder;
  std::string mask;
  std::string filesFrom;
  std::string parameterFile;
  std::string profilesTo;
  std::string failuresFile;
  std::string summaryFile;
  std::string qdas;
  std::optional<int> jobs;  ///< empty: one a processor core
  bool resume = false;
};

struct WatchOptions : BudgetOptions {
  std::string folder;
  std::string mask;
  std::string parameterFile;
  std::string holdFolder;
  std::string qdas;
};

struct VerifyOptions {
  bool asJson = false;
  std::string report;  ///< file that gets the whole; empty: none
};

struct IndicationOptions {
  std::string text;
  std::string values;      ///< separated by commas; empty: none
  std::string classTable;  ///< file
  bool asJson = false;
};

struct ParametersOptions {
  std::string edition = "1997";
  bool asJson = false;
};

struct SettingsOptions {
  std::string checkFile;  ///< empty: list every key
};

// The commands of the program; command_table lists them. Each writes its result to standard output and returns the
// exit status.
int RunAnalyze(const AnalyzeOptions& analyze, const CommonOptions& common);
int RunCompare(const CompareOptions& options, const CommonOptions& common);
int RunConvert(const ConvertOptions& convert, const CommonOptions& common);
int RunBatch(const BatchOptions& options, const CommonOptions& common);
int RunExport(const ExportOptions& options, const CommonOptions& common);
/// The kinds of exports, separated by commas.
std::string ExportKindNames();
/// "waviness and asphere-residual": those that can be written as form data.
std::string ModKindNames();
/// ".lmt, .sdf, ... or .smd": what convert writes.
std::string WriterExtensions();
int RunInspect(const InspectOptions& inspect, const CommonOptions& common);
int RunVerify(const VerifyOptions& options);
int RunWatch(const WatchOptions& options, const CommonOptions& common);
int RunIndication(const IndicationOptions& options);
/// The analysis of files for the requirements of a drawing, and whether they are kept.
int RunIndicatedAnalysis(const AnalyzeOptions& analyze, const CommonOptions& common);
int RunParameters(const ParametersOptions& options);
int RunFormats();
int RunSettings(const SettingsOptions& options);

}  // namespace texturon
