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

/// A stretch in words, in the units shown: "5000 points = 2.5000 mm, from 2.0000 mm to 4.4995 mm". Both points are told
/// by where they lie in the record; the length counts in the profile's own spacing, which may be stretched.
std::string DescribeStretch(const IndexRange& range, double recordSpacingUM, double spacingUM, bool metric);

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
