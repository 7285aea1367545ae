// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "parameters/edition2021/edition_list.h"

namespace texturon {

/// What became of a list of parameters under another edition.
struct EditionChange {
  std::vector<std::string> without;                              ///< rows that no row of the edition takes the place of
  std::vector<std::pair<std::string, std::string>> limitsMoved;  ///< from row to row of another name
  std::vector<std::string> limitsLost;                           ///< the row is there, but of another unit
  std::size_t leftOut = 0;                                       ///< selected rows that a list has no room for

  bool IsSilent() const { return without.empty() && limitsMoved.empty() && limitsLost.empty() && leftOut == 0; }
};

/// Translates the list of parameters, made under the edition `from`, to the names of the edition in force. A row
/// becomes the one that the table of the edition has as equal or near, never a namesake that means something else, and
/// keeps its limits where the unit is the same. Under both, a row stands beside the one that it was. A list of all rows
/// becomes one of all rows, with those limits.
EditionChange TranslateList(EditionChoice from, AnalysisSettings& settings);

}  // namespace texturon
