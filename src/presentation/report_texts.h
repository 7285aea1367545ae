// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/document.h"
#include "presentation/instrument_comparison.h"
#include "presentation/several_results.h"
#include "presentation/shown_rows.h"

namespace texturon {

/// A line of a report: what it is, and what it says.
using ReportLine = std::pair<std::string, std::string>;

/// A row of a report's parameter table, in the document's units.
struct ReportRow {
  std::string title;
  std::string value;  ///< empty: not computed
  std::string unit;
  std::string lower;  ///< limits that count; empty: none
  std::string upper;
  std::optional<Acceptance> verdict;
  std::string_view doubt = {};  ///< what stands between the value and a plain verdict
  bool isToleranced = false;    ///< also where there is no value to judge
};

/// What the rows with limits and the drawing come to; open: none fails, but one has no value or is undecided.
enum class ReportOutcome : std::uint8_t { kNoLimits, kPass, kOpen, kFail };

/// All that a report says in words; texts are Windows-1252. The curves come from the document itself.
struct ReportTexts {
  std::string company;
  std::string identification;
  std::vector<ReportLine> facts;
  /// How many rows are out of tolerance, undecided or without value, and what the drawing leaves open beyond that;
  /// empty: no limits.
  std::string summary;
  ReportOutcome outcome = ReportOutcome::kNoLimits;
  std::vector<ReportRow> rows;
  std::vector<ReportLine> reasons;      ///< rows without a value by name, and why
  std::vector<ReportLine> differences;  ///< rows that mean something else than those of the edition before, and what
  std::vector<ComparedValue> instrumentValues;
  std::vector<ReportLine> changedSettings;  ///< settings of the analysis that differ from the defaults
  std::vector<ReportLine> origin;           ///< program, digest and reader; empty where nobody wanted a digest
};

/// What a report tells of several profiles of one surface; without rows, nothing.
struct SeveralReport {
  std::vector<SeveralRow> rows;
  std::vector<ReportLine> profiles;                  ///< number and file, in the order of their values
  std::vector<JudgedRequirement> requirements = {};  ///< of the drawing, over all of them
};

/// Titles of the table of rows with limits, and what its last column says of a row.
std::vector<std::string> LimitTitles();
std::string VerdictText(const ReportRow& row);
inline constexpr std::string_view kNoVerdict = "No verdict: no parameter has limits.";

/// `time` as on the handed-in clock. The drawing is judged over the several profiles where there are some.
ReportTexts MakeReportTexts(const Document& document, std::string_view time, const SeveralReport& several = {});

}  // namespace texturon
