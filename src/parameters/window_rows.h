// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "parameters/parameter_profile.h"

// Rows of a window that moves along the profile point by point, and of its two ends. A position is the middle of the
// first window that has the value, in mm from the profile's first point. A row fails when the window does not fit.
namespace texturon {

// Windows of one and of seven sampling lengths of the profile's letter (whole points each, as
// DivideIntoSamplingLengths).
RowResult GreatestDeviationOfOneLength(const RowInput& row);     ///< a1, um: largest mean of |z|
RowResult PlaceOfDeviationOfOneLength(const RowInput& row);      ///< a1l, mm
RowResult GreatestDeviationOfSevenLengths(const RowInput& row);  ///< a7, um
RowResult PlaceOfDeviationOfSevenLengths(const RowInput& row);   ///< a7l, mm
/// pm7, um: largest mean of the highest points of the seven sampling lengths in the window.
RowResult GreatestMeanPeakOfSevenLengths(const RowInput& row);
RowResult PlaceOfMeanPeakOfSevenLengths(const RowInput& row);  ///< pm7l, mm

// Windows of a length from the settings, rounded to a whole number of steps, at least one.
RowResult SegmentHeight(const RowInput& row);  ///< seg, um: largest peak-to-valley (WindowWidthForWseg)
RowResult SegmentPlace(const RowInput& row);   ///< segl, mm
/// lslp, minutes of arc: largest absolute slope of the least-squares line (AsphereSlopeWindowMM).
RowResult SteepestLine(const RowInput& row);
RowResult SteepestLinePlace(const RowInput& row);  ///< lslpl, mm
/// eslp, minutes of arc: largest absolute slope of the chord between the window's ends.
RowResult SteepestChord(const RowInput& row);
RowResult SteepestChordPlace(const RowInput& row);  ///< eslpl, mm

// Highest point of the first and of the last WxpEndRegionsMM, um: that length over the spacing in points, rounded, at
// least one and at most all. Fail for a length that is not above 0 and for no points.
RowResult HighestOfLeftEnd(const RowInput& row);   ///< pl
RowResult HighestOfRightEnd(const RowInput& row);  ///< pr

}  // namespace texturon
