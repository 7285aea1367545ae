// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "export/parameter_file.h"

namespace texturon {

// Results for statistics programs in the Q-DAS ASCII transfer format: a description of the characteristics, then a line
// a part with their values, in the short form. Windows-1252, CR LF line ends.

/// A parameter that is watched, with the value of one part.
struct QdasCharacteristic {
  std::string name;
  std::string unit;
  int decimals = 3;
  std::optional<double> lowerLimit;
  std::optional<double> upperLimit;
  std::optional<double> value;  ///< empty: not computed, which is told as state 255 without a value
};

/// What a file begins with: number, names, units and limits of the characteristics; no values. `about` tells how they
/// were computed.
std::string QdasDescription(std::span<const QdasCharacteristic> characteristics, std::string_view about);

/// One part: its values with date and time, and `part`, what it is.
std::string QdasValues(std::span<const QdasCharacteristic> characteristics, const std::tm& time, std::string_view part);

/// Adds values to a file, which is created with the description where it is not there (or empty). One that begins with
/// another description is refused: number and order of the characteristics must be the same from part to part.
AppendOutcome AppendToQdasFile(const std::filesystem::path& path, const std::string& description,
                               std::string_view values, InUse inUse, const std::function<bool()>& givesUp = {});

}  // namespace texturon
