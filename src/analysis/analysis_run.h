// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"
#include "formats/profile_reader.h"
#include "platform/environment.h"
#include "platform/prompts.h"

namespace texturon {

// The one way from a file to results, for every program and mode: load a record into a document, which has settings and
// scope, and compute.

/// Where a record comes from.
struct RecordSource {
  std::filesystem::path path;
  ImportOptions import = {};
  bool invert = false;
  std::optional<std::string_view> bytes = {};  ///< of a file that lies nowhere; `path` gives name and extension
};

/// Files that one run reads and writes. A caller adds its own outputs before it compares them.
struct RunFiles {
  std::vector<std::filesystem::path> reads;
  std::vector<std::filesystem::path> writes;
};

/// How far a run came.
struct RunStep {
  bool loaded = false;   ///< false after an analysis that ran out of memory, too: nothing of the document is of use
  bool refused = false;  ///< loaded, but with too few points to compute over: a message said so, former results stand
  /// Why it did not go on, Windows-1252, without full stop; empty: it is done. Goes on where the file's name stops, if
  /// the record was not loaded, and is a clause of its own if it was.
  std::string cause;
  std::string attempts;  ///< where several readers have tried in vain: a line each, with its reason
  RunFiles files;        ///< input, companion and trace file

  bool ok() const { return cause.empty(); }
  /// The same as what goes on where the file's name stops in any case.
  std::string Reason() const { return loaded && !ok() ? "is not analysed: " + cause : cause; }
};

/// Puts the record of a file into a document, in place of the former record and its results. Where that fails the
/// document stays as it was.
RunStep LoadRecord(Document& document, const RecordSource& source, Prompts& prompts, const Environment& environment);

/// Computes what the document's request asks for.
RunStep AnalyseRecord(Document& document, Prompts& prompts, const Environment& environment);

/// Both. What ends the analysis from within is a cause too; the document is then of no use.
RunStep RunAnalysis(Document& document, const RecordSource& source, Prompts& prompts, const Environment& environment);

}  // namespace texturon
