// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/acceptance.h"
#include "analysis/document.h"
#include "parameters/catalogue.h"

namespace texturon {

/// A selected row as tables show it, in the document's units; texts are Windows-1252.
struct ShownRow {
  ParameterDef row;
  std::string title;  ///< the name; that of a configurable row ends with its number
  std::string value;  ///< empty: not computed
  std::string unit;
  std::string label;  ///< the setting behind the value; begins with three blanks, empty for most rows
  std::optional<Acceptance> verdict;
  std::string_view doubt;     ///< what stands between the value and a plain verdict: a clause; empty: nothing
  std::string reason;         ///< why there is no value, or none that is finite: a clause
  std::string expanded = {};  ///< expanded uncertainty (k = 2) in the value's unit; empty: not tried
  std::string rounded = {};   ///< the value as it stands beside that, down to the same place

  /// "1.614 \xB1 0.016" in Windows-1252; the value alone where it was not tried.
  std::string ValueAndUncertainty() const { return expanded.empty() ? value : rounded + " \xB1 " + expanded; }
};

/// What a row is. Texts are Windows-1252.
struct ParameterExplanation {
  std::string definition;  ///< a sentence; empty for a name that is not known
  std::string source;      ///< the standard with its edition, or this program
  /// What it depends on, meaning and value in force: its own settings first, then those of its profile.
  std::vector<std::pair<std::string, std::string>> settings;
};

/// Of a row by its name, that of a configurable row (Pmr, Rmr, PHtp, RHtp) included.
ParameterExplanation ExplainRow(const Document& document, std::string_view name);
/// The same of a row of either edition; the source of one of 2021 says how well its definition is known.
ParameterExplanation ExplainRow(const Document& document, const ParameterDef& row);

/// How many parameters stand side by side in the table: as the settings say, from 1 to kMostParameterColumns.
inline constexpr std::int32_t kMostParameterColumns = 6;
std::int32_t ColumnsOfTable(const DisplaySettings& display);

/// The selected rows of the working list, then the configurable ones.
std::vector<ShownRow> ShownRows(const Document& document);

/// "Also called Rz.": by the name that drawings and test plans have for a row. Empty where that is the row's own.
std::string OtherName(const MasterRow& row);

}  // namespace texturon
