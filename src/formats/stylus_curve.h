// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formats/profile_reader.h"

namespace texturon {

struct StylusQuantity {
  double value = 0.0;
  std::string unit;
};

/// One curve of a stylus profiler's file, binary or XML, as it stands there.
struct StylusCurve {
  double statedPoints = 0.0;
  std::optional<StylusQuantity> extent;  ///< from the first point to the last
  std::optional<StylusQuantity> scale;   ///< of the numbers
  std::string_view numbers;              ///< doubles
  std::string_view positionsUM;          ///< doubles, as many; empty: at equal steps over the extent
};

/// Makes a profile of it, or refuses where a unit is no length or numbers are missing.
ReadResult FinishStylusCurve(const ReaderInput& input, const StylusCurve& curve, ImportedProfile& profile);

/// "Radius: 2 um" in mm; -1 where it is not so.
double TipRadiusOfStylus(std::string_view text);

}  // namespace texturon
