// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "formats/number_rows.h"
#include "formats/table_heading.h"

namespace texturon {

/// Which columns of a table are what.
struct TableColumns {
  std::optional<std::size_t> x;      ///< empty: the table has no positions
  std::vector<std::size_t> heights;  ///< columns that may be the heights, in their order; not empty unless refused
  std::string wrong;                 ///< why the table is no profile; empty: it may be one
};

/// Chooses by the heading, where that says nothing by the numbers: a column that counts the points is none; X is the
/// column called a position, else the first that is called nothing else; heights are the columns called so, else what
/// is left. Slopes, flags and other quantities are never heights. Tables of an area are refused.
TableColumns ChooseTableColumns(const NumberRows& rows, const TableHeading& heading);

}  // namespace texturon
