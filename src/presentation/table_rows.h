// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "analysis/document.h"
#include "presentation/shown_rows.h"

namespace texturon {

/// What a row of the table tells about; the order in which the groups stand.
enum class RowGroup { kRoughness, kPrimary, kWaviness, kMotif, kForm, kRatio };

/// How a window's table is looked at. What is computed, selected, copied to files and printed does not depend on it.
struct TableChoice {
  bool showsAll = false;
  bool tolerancedFirst = false;
};

struct TableRow {
  ShownRow shown;
  RowGroup group = RowGroup::kRoughness;
};

struct TableRows {
  std::vector<TableRow> rows;
  bool isGrouped = false;    ///< the rows of a group stand together
  std::size_t selected = 0;  ///< rows that there would be with all
};

/// The selected rows. Where nobody has chosen among them or moved one, so that the whole catalogue is selected, they
/// stand by groups, and unless all are asked for only those of common use and those with limits are shown.
TableRows RowsOfTable(const Document& document, const TableChoice& choice);

/// How many of the selected rows have limits, how many of these are out of tolerance, undecided or without a value, and
/// the first of them.
struct VerdictCount {
  std::size_t judged = 0;
  std::size_t failed = 0;
  std::size_t undecided = 0;
  std::size_t missing = 0;  ///< without a value; not among those judged
  std::optional<std::string>
      firstBad;            ///< title of the first that failed, else that is undecided, else without a value
  std::string_view doubt;  ///< why the first undecided one is: a clause
};
VerdictCount CountVerdicts(const Document& document);

}  // namespace texturon
