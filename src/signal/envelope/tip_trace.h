// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

namespace texturon {

/// What a ball of radius r (um) traces of a surface (heights in um, spacing in um): trace[i] is the largest of
/// surface[i + j] - (r - sqrt(r^2 - (j dx)^2)) over |j dx| < r, the dilation of the surface by the ball. `trace` is as
/// long as the surface and another array. A radius that is not above the spacing traces the surface itself.
///
/// Time: points times the points that the ball covers, as far down as the surface is high.
void TraceOfTip(std::span<const double> surface, std::span<double> trace, double spacingUM, double radiusUM);

/// The lowest surface that a ball can have traced so: the erosion. Traced again by the same ball it gives the trace,
/// filled up where no ball of this radius goes.
void SurfaceUnderTip(std::span<const double> trace, std::span<double> surface, double spacingUM, double radiusUM);

}  // namespace texturon
