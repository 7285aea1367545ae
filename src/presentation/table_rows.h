// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
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

struct ListedRow {
  ShownRow shown;
  RowGroup group = RowGroup::kRoughness;
};

struct TableRows {
  std::vector<ListedRow> rows;
  bool isGrouped = false;    ///< the rows of a group stand together
  std::size_t selected = 0;  ///< rows that there would be with all
};

/// The selected rows. Where nobody has chosen among them or moved one, so that all of an edition are selected as far as
/// a list holds them, they stand by groups, and unless all are asked for only those of common use, those with limits
/// and those that were written by hand (features, arguments) are shown. Of both editions a row of 2021 stands behind
/// its namesake, or behind the row whose place it takes.
TableRows RowsOfTable(const Document& document, const TableChoice& choice);

/// Where a row stands in one list of all: those with limits first, then those of common use by their groups, then the
/// others as they come. Lower is sooner; equal ones keep their order.
int RankOfInterest(const ParameterDef& row);
/// The places of ShownRows in that order.
std::vector<std::size_t> OrderOfInterest(const Document& document);

/// How many of the selected rows have limits, how many of these are out of tolerance, undecided or without a value, and
/// the first of them; and what the drawing comes to, which may ask for more than its rows do.
struct VerdictCount {
  std::size_t judged = 0;
  std::size_t failed = 0;
  std::size_t undecided = 0;
  std::size_t doubted = 0;  ///< of those that failed: what fails only because nothing better is known
  std::size_t missing = 0;  ///< without a value; not among those judged
  std::optional<std::string>
      firstBad;  ///< title of the first that failed, else that is undecided, else without a value, else of the drawing
  std::string_view doubt;             ///< why the first undecided or doubted one is: a clause
  std::optional<Acceptance> drawing;  ///< the worst of its requirements; none: there is no drawing
  std::string drawingSource;          ///< that requirement as it stands on the drawing; Windows-1252
  std::string drawingText;            ///< its value, verdict and what decided, likewise
};
VerdictCount CountVerdicts(const Document& document);

}  // namespace texturon
