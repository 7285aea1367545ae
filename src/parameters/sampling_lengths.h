// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "parameters/height_statistics.h"
#include "parameters/no_value.h"

namespace texturon {

/// A profile cut into whole sampling lengths from its first point on; the points left over at the end belong to none.
struct SamplingLengths {
  std::size_t pointsEach = 0;
  std::size_t count = 0;
};

/// What becomes of a profile that is shorter than one sampling length.
enum class ShortProfile { kIsOneSamplingLength, kFails };

/// Points per sampling length: WholePartsOfLength(samplingLengthMM, spacingMM), at least 2. Their number is however
/// many fit, not five. Empty when a sampling length has fewer than two points or none fits.
std::optional<SamplingLengths> DivideIntoSamplingLengths(std::size_t pointCount, double spacingMM,
                                                         double samplingLengthMM, ShortProfile shortProfile);

/// Why the division fails: too few points in a profile or in a sampling length, or the profile is shorter than one.
NoValue WhyNotDividedIntoLengths(std::size_t pointCount, double spacingMM, double samplingLengthMM);

/// Highest and lowest height of each sampling length.
std::vector<HeightExtremes> ExtremesPerSamplingLength(std::span<const double> heights, const SamplingLengths& lengths);

}  // namespace texturon
