// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <vector>

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
  std::optional<Verdict> verdict;
};

/// How many parameters stand side by side in the table: as the settings say, from 1 to kMostParameterColumns.
inline constexpr std::int32_t kMostParameterColumns = 6;
std::int32_t ColumnsOfTable(const DisplaySettings& display);

/// The selected rows of the working list, then the configurable ones.
std::vector<ShownRow> ShownRows(const Document& document);

}  // namespace texturon
