// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/index_range.h"
#include "platform/prompts.h"

namespace texturon {

/// g of the weights exp(-pi (t / (g cutoff))^2): sqrt((-1 - W) / pi), W the lower branch of Lambert's function at
/// -1 / (2 e), so that without robust weights a wavelength equal to the cutoff keeps half its amplitude.
inline constexpr double kRegressionReach = 0.7309134280946758684;
/// The parabola is fitted to what lies within this many cutoffs; the weights beyond are below 1e-16.
inline constexpr double kRegressionExtent = 2.5;
/// Limit of the biweights in median absolute residuals, three standard deviations of normally distributed ones.
inline constexpr double kRegressionScaleCoefficient = 4.4478;
/// The iteration ends when the limit changes by less than this part of itself ...
inline constexpr double kRegressionConvergence = 1e-6;
/// ... or after this many reweighted passes.
inline constexpr int kRegressionPassLimit = 100;

enum class RegressionStop : std::uint8_t {
  kConverged,
  kPassLimit,
  kCancelled,  // the progress window was closed: a success with the mean line so far
  kNoScale,    // at least half of the points lie on the mean line to rounding: a success with it
  kSingular,   // a point has fewer than three with weight in its reach: a success with the mean line so far
  kTooLong,    // too many points have so little weight that another pass would take minutes: the same
  kFailed,     // no mean line: spacing, cutoff or heights do not allow the first, unweighted pass
};

struct RegressionResult {
  std::optional<IndexRange> range;  // the whole range; nothing when the filter failed
  int passes = 0;                   // reweighted passes that gave a mean line
  RegressionStop stop = RegressionStop::kFailed;
};

/// Robust Gaussian regression mean line of second order (ISO 16610-31): at each point the value of the parabola that
/// fits the neighbouring heights best, weighted by a Gaussian of the distance and by Tukey's biweights (1 - r^2 /
/// c^2)^2 of the residuals r = z - w of the pass before, 0 beyond c = 4.4478 median |r|. Contract as filter_contract.h;
/// the sums stop at the ends of the record, so nothing has to be cut off.
///
/// The sums are convolutions (regression_transforms.h), and the mean line is the quotient of two polynomials between as
/// few points as it needs. A point with so little weight, or on so few points, that the rounding of such sums would
/// show is fitted by itself (weighted_parabola.h). Accuracy of a pass: 1e-9 of the height range against the equations
/// solved point by point. `progress` may be null.
RegressionResult RobustRegressionFilter(std::span<const double> z, std::span<double> w, double spacingUM,
                                        double cutoffMM, Progress* progress);

}  // namespace texturon
