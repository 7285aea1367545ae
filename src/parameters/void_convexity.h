// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/samples.h"
#include "parameters/parameter_profile.h"

namespace texturon {

/// Envelope of a profile's heights for the ball radius of the settings, once a row has asked for it. Empty heights: it
/// could not be made.
struct ClosingOfProfile {
  Samples envelopeUM;
};
struct OpeningOfProfile {
  Samples envelopeUM;
};

/// What a walk along a profile under its closing envelope finds. Contacts are points at which the two are equal.
///
/// A void starts where a contact is followed by a point below the envelope; every start counts. It is complete at the
/// next contact when it started behind the first point and the contact is at least three points on. The sums run over
/// complete voids [s, i] alone.
struct VoidWalk {
  double meanGap = 0.0;
  double deepestGap = 0.0;
  std::size_t deepestAt = 0;  ///< first point that has it
  std::size_t starts = 0;
  double sumOfDepths = 0.0;
  double sumOfLengths = 0.0;  ///< (i - s + 1) spacings
  double sumOfAspects = 0.0;  ///< depth over length
  double sumOfAreas = 0.0;    ///< sum of gaps / (s + i + 1) x (s + i) spacings: grows with the place, as it is defined
};
VoidWalk WalkVoids(std::span<const double> heights, std::span<const double> closing, double spacingUM);

/// The same over an opening envelope for bumps; only complete ones count, wherever they start.
struct BumpWalk {
  double highest = 0.0;
  std::size_t highestAt = 0;
  std::size_t complete = 0;
  double sumOfHeights = 0.0;
};
BumpWalk WalkBumps(std::span<const double> heights, std::span<const double> opening);

// Rows under the closing envelope (ClosingRadiusForWvoid). Means are taken over every start; those marked * fail
// without one. All fail without an envelope.
RowResult MeanVoidGap(const RowInput& row);       ///< void, um: over all points
RowResult DeepestVoid(const RowInput& row);       ///< vdd, um
RowResult DeepestVoidPlace(const RowInput& row);  ///< vddl, mm from the first point
RowResult VoidsPerLength(const RowInput& row);    ///< vdc, 1/cm: starts over n spacings
RowResult MeanVoidAspect(const RowInput& row);    ///< vdas *
RowResult MeanVoidLength(const RowInput& row);    ///< vdmp, mm *
RowResult MeanVoidDepth(const RowInput& row);     ///< vdm, um *
RowResult MeanVoidArea(const RowInput& row);      ///< vda, mm^2 *

// Rows above the opening envelope (OpeningRadiusForWcvx).
RowResult HighestBump(const RowInput& row);       ///< cvx, um
RowResult MeanBumpHeight(const RowInput& row);    ///< cvxm, um: over complete bumps, fails without one
RowResult HighestBumpPlace(const RowInput& row);  ///< cvxl, mm from the first point

}  // namespace texturon
