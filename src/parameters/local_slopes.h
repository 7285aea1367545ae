// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <vector>

#include "base/samples.h"
#include "parameters/parameter_profile.h"

// Local slopes by the seven-point formula of ISO 4287,
//   (z[i+3] - 9 z[i+2] + 45 z[i+1] - 45 z[i-1] + 9 z[i-2] - z[i-3]) / (60 dx),
// at every point that has three neighbours on both sides. dq is that of the standard, the other rows are this
// program's. Each fails for fewer than seven points.
namespace texturon {

/// Slopes in um per um of all points but the three at each end; empty for fewer than seven points.
Samples LocalSlopes(std::span<const double> heights, double spacingUM);

/// The steep points of a profile.
struct SteepPart {
  std::vector<double> heightsUM;  ///< those of the steep points and of the next ones, not a number elsewhere
  double percent = 0.0;           ///< share of the points that have a slope
};

/// The points whose slope makes an angle of more than `degrees` with the X axis, up or down.
SteepPart FindSteepPart(std::span<const double> heights, double spacingUM, double degrees);

RowResult RootMeanSquareSlope(const RowInput& row);       ///< dq: atan of the root mean square, degrees
RowResult MeanAbsoluteSlopeAngle(const RowInput& row);    ///< dmn: mean of atan |slope|, degrees
RowResult MedianAbsoluteSlopeAngle(const RowInput& row);  ///< dmd: its median (mean of the middle two)
/// dsk: skewness of the slopes about their mean. 0 where they do not differ beyond what rounding of the heights makes.
RowResult SlopeSkewness(const RowInput& row);

}  // namespace texturon
