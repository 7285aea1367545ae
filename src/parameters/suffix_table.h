// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string_view>

#include "parameters/parameter_profile.h"

namespace texturon {

/// What a row's name without its first letter stands for.
struct SuffixRow {
  std::string_view suffix;
  RowRoutine routine;
  bool findsElements = false;
  std::string_view letters = "FPWR";  ///< profiles that have the row; for others it is skipped
  bool mayBeInfinite = false;         ///< an infinite or undefined value is a value; elsewhere it is a failure
};

/// All suffixes; the first that equals a row's suffix without regard to case decides.
std::span<const SuffixRow> SuffixTable();

/// Null for a suffix that does not exist.
const SuffixRow* FindSuffix(std::string_view suffix);

/// Routine of a row that is known by its whole name and computed on the primary profile: the motif rows. Case is
/// ignored; null for any other name.
RowRoutine FindWholeName(std::string_view name);

}  // namespace texturon
