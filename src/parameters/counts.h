// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Counts of crossings of a level or a band about the mean line. The levels (um) come from the settings, by the letter
// of the profile.
namespace texturon {

/// hsc (P and R): upward crossings of the level, z[i - 1] < c <= z[i], and one more for a first point above it. Fails
/// for no points.
RowResult HighSpotCount(const RowInput& row);

/// vc (P and R): downward crossings of the level, z[i - 1] > c >= z[i], and one more for a first point below it. Fails
/// for no points.
RowResult ValleyCount(const RowInput& row);

/// pc, 1/cm: exits upwards from a band about the mean line, each after an entry from the band into the range below it
/// (a profile that starts down there has not entered it), over the profile's length. Never fails.
RowResult PeakCountPerLength(const RowInput& row);

/// The count behind vc, for any level.
std::size_t CountValleys(std::span<const double> heights, double levelUM);

}  // namespace texturon
