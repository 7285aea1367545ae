// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"
#include "analysis/document_export.h"
#include "analysis/uncertainty_json.h"
#include "formats/profile_reader.h"
#include "parameters/catalogue.h"
#include "platform/environment.h"

namespace texturon {

/// How every file of an unattended run is analysed.
struct FileAnalysisOptions {
  const Document& start;  ///< settings in force, no profile
  ImportOptions import;
  bool invert = false;
  std::filesystem::path profilesTo;  ///< folder for the profiles of each file; empty: none
  /// Told of each such profile before it is written, from any thread.
  std::function<void(const std::filesystem::path& target, std::string_view text)> announces;
  const UncertaintyRequest* uncertainty = nullptr;  ///< for the verdicts of a guarded rule; null: no budget
};

/// A column of the parameter file with one result.
struct ColumnValue {
  std::string name;
  std::optional<double> value;  ///< in the units of the file; empty: not computed
  bool outOfTolerance = false;
  bool undecided = false;  ///< by a guarded rule
  std::string text;        ///< the value as tables show it
  std::string unit;
  LimitsInForce limits;  ///< in the units of the file
};

/// What one file gave.
struct FileAnalysis {
  std::string reason;  ///< why it gave nothing: a sentence, Windows-1252; empty: analysed
  ParameterFileText text;
  std::vector<ColumnValue> columns;
  std::optional<QdasText> qdas;      ///< for statistics programs; nothing where no row has limits
  InputMark input;                   ///< of the file's content
  bool outOfMemory = false;          ///< the reason: it may do where less is at work
  std::vector<std::string> remarks;  ///< what was tolerated, guessed, or looks wrong, Windows-1252

  bool ok() const { return reason.empty(); }
};

/// What an analysed document gives.
FileAnalysis ResultsOf(const Document& document, const Environment& environment);

/// The names that the profiles of a file get in the folder for them.
std::vector<std::filesystem::path> ProfileFilesOf(const std::filesystem::path& path,
                                                  const std::filesystem::path& folder);

/// Loads, computes and, where asked, writes the profiles of one file beside each other:
/// "S1.prf.primary.csv", ".waviness.csv", ".roughness.csv". Asks and shows nothing, writes no trace file. Several may
/// run at once.
FileAnalysis AnalyseFile(const std::filesystem::path& path, const FileAnalysisOptions& options,
                         const Environment& environment);

}  // namespace texturon
