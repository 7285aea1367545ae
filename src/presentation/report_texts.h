// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/document.h"
#include "presentation/instrument_comparison.h"
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
  std::optional<Verdict> verdict;
};

/// All that a report says in words; texts are Windows-1252. The curves come from the document itself.
struct ReportTexts {
  std::string company;
  std::string identification;
  std::vector<ReportLine> facts;
  std::string summary;  ///< how many rows are out of tolerance; empty where none has limits
  std::vector<ReportRow> rows;
  std::vector<ComparedValue> instrumentValues;
  std::vector<ReportLine> changedSettings;  ///< settings of the analysis that differ from the defaults
};

/// `time` as on the handed-in clock.
ReportTexts MakeReportTexts(const Document& document, std::string_view time);

}  // namespace texturon
