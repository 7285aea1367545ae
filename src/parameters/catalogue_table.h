// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "base/quantity.h"
#include "parameters/labels.h"

namespace texturon {

/// How the values of a row are printed for people.
struct ValueFormat {
  Decimals decimals = {3, 3};
  bool scientific = false;
};

/// The standards whose names a row bears. A name may mean something else in another edition.
enum class Edition : std::uint8_t {
  k1997,  // ISO 4287, ISO 13565, ISO 12085 and older ones
  k2021,  // ISO 21920
};
/// "1997", "2021".
std::string_view NameOf(Edition edition);

/// What rows are asked for, counted and filed by when a test plan lists them.
enum class ParameterFamily : std::uint8_t {
  kByLetter,     // the profile's letter says it
  kCore,         // core roughness
  kDerivedCore,  // made of core roughness values
  kMotif,        // known by the whole name, computed on the primary profile
};

/// What most rows do without.
struct RowDetails {
  SettingNote note = {};      ///< behind the name in tables
  SettingNote csvLabel = {};  ///< under the column of the parameter file, in place of the unit
  int csvDecimals = 3;        ///< of the parameter file
  ParameterFamily family = ParameterFamily::kByLetter;
  std::string_view planName = {};  ///< in test plans and their result files, where it is not the row's own
};

/// One row of the master catalogue: what the program knows of a parameter.
struct MasterRow {
  std::string_view name;
  Quantity quantity;  ///< a per-cent sign is stored doubled
  ValueFormat format;
  std::string_view definition;  ///< a sentence
  std::string_view source;      ///< the standard that defines it with its edition, or this program
  RowDetails details;
  Edition edition = Edition::k1997;
};

/// The rows in their fixed order, which is that of every table, report and export until settings bring their own. To
/// add a parameter is a row here and a routine in the suffix table; settings, tables, exports, the listing and the laws
/// of the tests go by the row.
std::span<const MasterRow> MasterCatalogue();

}  // namespace texturon
