// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "formats/number_rows.h"
#include "formats/unit_words.h"

namespace texturon {

/// What a column's name says that it holds.
enum class Quantity {
  kUnknown,
  kPosition,
  kAcross,  ///< Y: across the trace, or the height where nothing else is
  kHeight,
  kIndex,
  kOther  ///< no length: slopes, flags, times, intensities
};

Quantity QuantityOf(std::string_view name);

struct ColumnHeading {
  std::string name;
  Quantity quantity = Quantity::kUnknown;
  UnitStatement::Kind unitKind = UnitStatement::Kind::kNone;
  double unitUM = 0.0;
  std::string unit;

  bool HasLength() const { return unitKind == UnitStatement::Kind::kLength; }
};

struct TableHeading {
  std::vector<ColumnHeading> columns;  ///< as many as the rows have, named or not
  std::size_t line = 0;                ///< of the names; 0: there is none
  std::size_t unitLine = 0;            ///< of units and nothing else; 0: there is none
  bool isOfArea = false;               ///< the lines above speak of width and height
};

/// Finds the heading of a run of rows: the nearest line above with as many cells, between the run's separators or,
/// where rows stand between blanks or tabs, by the brackets behind each name. Every cell must name a quantity or a
/// unit; lines of a key and its value are none. A line of units and the line of names beside it belong together.
TableHeading FindTableHeading(std::string_view text, const NumberRows& rows);

}  // namespace texturon
