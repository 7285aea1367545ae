// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/analysis_request.h"
#include "base/index_range.h"

namespace texturon {

/// The samples of a region; nothing where they are too few to compute over.
std::optional<IndexRange> ResolveRegion(const RegionChoice& region, std::int32_t pointCount, double spacingUM);

/// The stretch of a region in words, in the units shown: "2.0000 mm to 4.5000 mm: 2.5000 mm, 5001 points".
std::string DescribeRegion(const IndexRange& range, double spacingUM, bool metric);

/// A length as it is entered in the units shown.
struct LengthEntry {
  double lengthMM = 0.0;
  std::string fault;  ///< a sentence without its full stop; empty: the length may be used

  bool ok() const { return fault.empty(); }
};

/// A length of a region from 0 to that of the record.
LengthEntry ReadRegionLength(std::string_view text, double recordMM, bool metric);
std::string RegionLengthText(double lengthMM, bool metric);

}  // namespace texturon
