// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

#include "parameters/parameter_profile.h"

// Height parameters per sampling length, in um. They always use the roughness cutoff as sampling length, whatever the
// profile; each fails when the profile cannot be divided. zDIN is that of DIN 4768, zJIS that of JIS B 0601, the others
// are this program's.
namespace texturon {

/// Mean over the sampling lengths of highest minus lowest. Empty for none.
std::optional<double> MeanPeakToValley(std::span<const HeightExtremes> segments);

RowResult MeanPeakToValleyHeight(const RowInput& row);      ///< zDIN, zi
RowResult GreatestPeakToValleyHeight(const RowInput& row);  ///< max, y, z1max: one and the same value
RowResult MeanPeakHeight(const RowInput& row);              ///< pm: mean of the highest
RowResult MeanValleyDepth(const RowInput& row);             ///< vm: minus the mean of the lowest

/// zJIS: in each sampling length the five highest excursions above the mean line and the five deepest below it (fewer,
/// equally many of both, where there are not five; an excursion is a run of one sign, cut at the sampling length's
/// ends), heights plus depths over their number, averaged over the sampling lengths that have a peak and a valley. 0
/// when none has; fails for a profile shorter than one sampling length.
RowResult TenPointHeight(const RowInput& row);

/// 3z: third-highest strict local maximum plus third-deepest strict local minimum of each sampling length, averaged
/// over those that have three of both. Neighbours count across sampling lengths; the profile's two ends are no
/// extremes. Fails when no sampling length counts.
RowResult ThirdPointHeight(const RowInput& row);

/// pm/3z. Fails where 3z does or is below 1e-10.
RowResult MeanPeakToThirdPointRatio(const RowInput& row);

}  // namespace texturon
