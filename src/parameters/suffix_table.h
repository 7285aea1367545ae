// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string_view>

#include "parameters/letter_settings.h"
#include "parameters/parameter_profile.h"

namespace texturon {

/// The settings that a row's value depends on, besides those that make its profile.
struct RowSettings {
  std::string_view keys = {};                                                ///< separated by blanks
  LetterSettings::Discrimination LetterSettings::*discrimination = nullptr;  ///< by the letter of the profile
  LetterSettings::Field LetterSettings::*level = nullptr;
};

/// What a row's name without its first letter stands for.
struct SuffixRow {
  std::string_view suffix;
  RowRoutine routine;
  bool findsElements = false;
  std::string_view letters = "FPWR";  ///< profiles that have the row; for others it is skipped
  bool mayBeInfinite = false;         ///< an infinite or undefined value is a value; elsewhere it is a failure
  RowSettings settings = {};
};

/// All suffixes; the first that equals a row's suffix without regard to case decides.
std::span<const SuffixRow> SuffixTable();

/// Null for a suffix that does not exist.
const SuffixRow* FindSuffix(std::string_view suffix);

/// A row that is known by its whole name and computed on the primary profile: the motif rows.
struct WholeNameRow {
  std::string_view name;
  RowRoutine routine;
  RowSettings settings;
};

/// Case is ignored; null for any other name.
const WholeNameRow* FindWholeNameRow(std::string_view name);
RowRoutine FindWholeName(std::string_view name);

}  // namespace texturon
