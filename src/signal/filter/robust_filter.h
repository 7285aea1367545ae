// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/index_range.h"
#include "platform/prompts.h"

namespace texturon {

/// Limit of the biweights in median absolute residuals: c = coefficient x median |z - w|. About three standard
/// deviations of normally distributed residuals (3 / 0.6745).
inline constexpr double kRobustScaleCoefficient = 4.447806654;
/// The iteration ends when c changes by this part of itself or less ...
inline constexpr double kRobustConvergence = 0.001;
/// ... or after this many reweighted passes.
inline constexpr int kRobustIterationLimit = 50;

enum class RobustStop : std::uint8_t {
  kConverged,
  kIterationLimit,
  kCancelled,        // the progress window was closed: a success with the mean line so far
  kSingularWeights,  // too few points keep weight for another pass: a success with the mean line so far
  kFailed,           // no mean line: spacing, cutoff or heights do not allow the first, unweighted pass
};

struct RobustResult {
  std::optional<IndexRange> range;  // the whole range; nothing when the filter failed
  int iterations = 0;               // reweighted passes that gave a mean line
  RobustStop stop = RobustStop::kFailed;
};

/// Robust spline mean line: the spline filter iterated with Tukey's biweights (1 - r^2 / c^2)^2 of the residuals
/// r = z - w, 0 beyond c, so that a scratch or a pore does not pull the line. c is the coefficient above times the
/// median |r|, taken as the element at floor(n / 2) of the ascending order (the upper one of two middle values).
/// Heights are filtered without their mean, which is added back. Arguments and accuracy as SplineFilter.
///
/// A cutoff of 2^-52 mm or less fails with z copied into w. `progress` may be null; it is given a percentage after
/// every pass, the number of digits that c has settled to as a share of those asked for, and never a smaller one than
/// before.
RobustResult RobustSplineFilter(std::span<const double> z, std::span<double> w, double spacingUM, double cutoffMM,
                                double tension, Progress* progress);

}  // namespace texturon
