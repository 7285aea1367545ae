// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Rows of a window that moves along the profile point by point, and of its two ends. A position is the middle of the
// first window that has the value, in mm from the profile's first point. A row fails when the window does not fit.
namespace texturon {

// Windows of one and of seven sampling lengths of the profile's letter (whole points each, as
// DivideIntoSamplingLengths).
std::optional<double> GreatestDeviationOfOneLength(const RowInput& row);     ///< a1, um: largest mean of |z|
std::optional<double> PlaceOfDeviationOfOneLength(const RowInput& row);      ///< a1l, mm
std::optional<double> GreatestDeviationOfSevenLengths(const RowInput& row);  ///< a7, um
std::optional<double> PlaceOfDeviationOfSevenLengths(const RowInput& row);   ///< a7l, mm
/// pm7, um: largest mean of the highest points of the seven sampling lengths in the window.
std::optional<double> GreatestMeanPeakOfSevenLengths(const RowInput& row);
std::optional<double> PlaceOfMeanPeakOfSevenLengths(const RowInput& row);  ///< pm7l, mm

// Windows of a length from the settings, rounded to a whole number of steps, at least one.
std::optional<double> SegmentHeight(const RowInput& row);  ///< seg, um: largest peak-to-valley (WindowWidthForWseg)
std::optional<double> SegmentPlace(const RowInput& row);   ///< segl, mm
/// lslp, minutes of arc: largest absolute slope of the least-squares line (AsphereSlopeWindowMM).
std::optional<double> SteepestLine(const RowInput& row);
std::optional<double> SteepestLinePlace(const RowInput& row);  ///< lslpl, mm
/// eslp, minutes of arc: largest absolute slope of the chord between the window's ends.
std::optional<double> SteepestChord(const RowInput& row);
std::optional<double> SteepestChordPlace(const RowInput& row);  ///< eslpl, mm

// Highest point of the first and of the last WxpEndRegionsMM, um: that length over the spacing in points, rounded, at
// least one and at most all. Fail for a length that is not above 0 and for no points.
std::optional<double> HighestOfLeftEnd(const RowInput& row);   ///< pl
std::optional<double> HighestOfRightEnd(const RowInput& row);  ///< pr

}  // namespace texturon
