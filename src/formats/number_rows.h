// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace texturon {

/// Most cells of a row.
inline constexpr std::size_t kMostColumns = 4096;

/// Cells of a row between `separator`s, blanks and quotes around each aside; empty cells at the end are left out. For a
/// blank any run of blanks and tabs separates. `all` counts the cells with those at the end.
std::size_t SplitCells(std::string_view line, char separator, std::vector<std::string_view>& cells);

/// The longest run of rows of numbers with equal cells that a text holds.
struct NumberRows {
  char separator = ' ';
  bool decimalComma = false;
  std::vector<std::vector<double>> columns;  ///< NaN where a cell is empty or a mark for no value
  std::size_t rawColumns = 0;                ///< with the empty cells at the end of the first row
  std::size_t begin = 0;                     ///< place of the first row in the text
  std::size_t firstLine = 0;
  std::size_t lastLine = 0;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> jumps;  ///< rows before which lines are blank, and their lines
  std::size_t otherRows = 0;                                   ///< of the longest run but this one
  bool mayBeDecimals = false;  ///< two columns between commas whose second could be the decimals of the first
  std::string wrong;           ///< why there is no such run, or which line breaks it; empty: it is usable

  std::size_t Count() const { return columns.empty() ? 0 : columns.front().size(); }
  /// Line of a row, both from its own beginning: rows from 0, lines from 1.
  std::size_t LineOf(std::size_t row) const;
};

/// Finds the run. Separators are semicolon, tab, comma or blanks; the decimal sign may be a comma where the separator
/// is none, or in quotes. Lines above and below the run are passed over; a line inside it that is no row makes it
/// unusable. Words behind two or more numbers are passed over where the first row has some.
/// Without `commaSeparates` a comma is a decimal sign and nothing else. At most 750 000 rows.
NumberRows FindNumberRows(std::string_view text, bool commaSeparates = true);

/// Value of the last digit to which the cells of a column are printed that goes on in steps of about `step`; 0 where it
/// may be exact. Looks at the text alone: the numbers may be gone.
double LastDigitOf(std::string_view text, const NumberRows& rows, std::size_t column, double step);

}  // namespace texturon
