// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

#include "parameters/parameter_profile.h"

namespace texturon {

/// Core roughness after ISO 13565-2. Heights in um, ratios in percent.
struct RkResult {
  bool valid = false;
  NoValue reason = {};     ///< where it is not
  double Rk = 0.0;         ///< core roughness depth
  double Rpk = 0.0;        ///< reduced peak height
  double Rvk = 0.0;        ///< reduced valley depth
  double Mr1 = 0.0;        ///< material ratio at the upper limit of the core
  double Mr2 = 0.0;        ///< material ratio at the lower limit of the core
  double upperLine = 0.0;  ///< equivalent straight line at 0 %
  double lowerLine = 0.0;  ///< equivalent straight line at 100 %
};

/// The equivalent straight line: heights at the material ratios 0 and 100 %, point i of n standing at i x 100 / n.
struct CoreLine {
  double atZeroPercent = 0.0;
  double atHundredPercent = 0.0;
};

/// From heights sorted from the highest to the lowest, in linear time: the least-squares line through the points under
/// the secant of 40 % that falls least (the first of equals), its far end left out. Nothing for fewer than ten points.
Defined<CoreLine> FitCoreLine(std::span<const double> sorted);

/// From heights sorted from the highest to the lowest, in linear time.
///
/// The equivalent straight line is the least-squares line through the sorted points under the secant of 40 % that falls
/// least (the first of equals), its far end left out. Mr1 and Mr2 are the ratios of the points nearest to the line's
/// heights at 0 and 100 %, of the first point at or below and its predecessor; Rpk and Rvk twice the areas between
/// curve and these heights, divided by their widths. Invalid for fewer than ten points, when no point lies at or below
/// one of the heights, as on an exact ramp, and when one of the three depths is not finite.
RkResult ComputeCoreRoughness(std::span<const double> sorted);

/// The profile's result, computed once.
const RkResult& CoreRoughnessOf(const ParameterProfile& profile);

// Rows. Each fails where the result is invalid. Ratios are not guarded: without a core they are infinite or undefined.
RowResult CoreDepth(const RowInput& row);               ///< k
RowResult ReducedPeakHeight(const RowInput& row);       ///< pk
RowResult ReducedValleyDepth(const RowInput& row);      ///< vk
RowResult PeakAboveCore(const RowInput& row);           ///< pk*: highest point minus upper line
RowResult ValleyBelowCore(const RowInput& row);         ///< vk*: lower line minus lowest point
RowResult PeakPlusCore(const RowInput& row);            ///< pk+k
RowResult CorePlusValley(const RowInput& row);          ///< k+vk
RowResult PeakToCoreRatio(const RowInput& row);         ///< pk/k
RowResult ValleyToCoreRatio(const RowInput& row);       ///< vk/k
RowResult UpperCoreMaterialRatio(const RowInput& row);  ///< mr1
RowResult LowerCoreMaterialRatio(const RowInput& row);  ///< mr2
RowResult ValleyArea(const RowInput& row);              ///< vo: (100 - Mr2) x Rvk / 200

}  // namespace texturon
