// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "formats/profile_reader.h"

namespace texturon {

/// What the header of a Standard Data Format file says, text or binary.
struct SdfHeader {
  std::string identification;
  std::string date;
  std::int64_t points = 0;  ///< of a profile
  std::int64_t profiles = 0;
  double spacingUM = 0.0;     ///< along a profile
  double rowSpacingUM = 0.0;  ///< between profiles
  double zScale = 0.0;
  std::int32_t dataType = -1;
};

/// One profile of a grid of heights that are stored row by row.
struct SdfPick {
  std::int64_t first = 0;
  std::int64_t step = 1;
  std::int64_t count = 0;
  double spacingUM = 0.0;
  std::string identification;
};

/// Asks which profile of the grid to take: its rows, its columns, and all rows chained, in this order.
std::optional<SdfPick> ChooseSdfProfile(const ReaderInput& input, const SdfHeader& header, std::string& reason);

/// Reads the text form with several profiles; `data` begins behind the header's last line.
ReadResult ReadSdfGrid(const ReaderInput& input, const SdfHeader& header, std::string_view data,
                       ImportedProfile& profile);

/// Reads the binary form, whose first byte is b, with one profile or several.
ReadResult ReadSdfBinary(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
