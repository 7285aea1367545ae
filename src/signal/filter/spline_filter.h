// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

#include "base/index_range.h"

namespace texturon {

/// The tension at which the spline filter's transmission comes closest to that of the Gaussian filter.
inline constexpr double kGaussianLikeTension = 0.625242;

/// Spline mean line with tension, the linear spline filter of ISO 16610-22: the w that solves
///
///     (W + tension alpha^2 D1'D1 + (1 - tension) alpha^4 D2'D2) w = W z,   alpha = 1 / (2 sin(pi spacing / cutoff)),
///
/// with D1 and D2 the first and second differences over neighbouring points (free ends; none for too few points, so a
/// single point is its own mean line) and W the diagonal of `weights`, or the identity when there are none.
///
/// `z`, `w` and, where given, `weights` have one length, at most 2^31 - 1; w must not overlap the others. Spacing in
/// um, cutoff in mm, both positive, spacing <= cutoff / 3. Tension from 0 (straight lines pass unchanged) to 1; outside
/// that range the equations may be indefinite and are solved as they stand. Weights are meant to lie between 0 and 1.
///
/// Returns the whole range: a spline filter loses no ends. Nothing when an argument is out of range, when the system is
/// singular (all weights zero; one non-zero weight and tension 0) or when the result is not finite.
///
/// Linear time. Against a solution with 60 digits the error stays below 1e-9 um for cutoff / spacing up to 80 000 and
/// 200 um of arc in the data; only where zero weights leave a gap of hundreds of cutoffs does it grow, to 1e-8 um in a
/// record with weight at its two ends alone. The matrix itself cannot be used for that: alpha^4 = 2.6e16 swamps the
/// weights that are added to it. The elimination is therefore carried out in heights and scaled slopes instead of in
/// neighbouring heights, in which every coefficient stays of the order of alpha or below and nothing is swamped.
std::optional<IndexRange> SplineFilter(std::span<const double> z, std::span<double> w, double spacingUM,
                                       double cutoffMM, double tension, std::span<const double> weights = {});

}  // namespace texturon
