// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "parameters/parameter_profile.h"

// The probability plot of a profile (ISO 13565-3): sorted point i of n stands at the normal quantile of the material
// ratio (i + 0.5) / n. A Gaussian surface is a straight line of slope -q there; a plateau-honed one makes two, a flat
// one for the plateaus and a steep one for the valleys.
namespace texturon {

/// Normal quantile (standard deviations) of sorted point i of n.
double ProbabilityAbscissa(std::size_t i, std::size_t n);

/// Material ratios in percent between which the two lines are fitted: upper and lower plateau limit, upper and lower
/// valley limit.
struct ProbabilityLimits {
  double upl = 0.0;
  double lpl = 0.0;
  double uvl = 0.0;
  double lvl = 0.0;
};

struct ProbabilityLine {
  double slopeUM = 0.0;      ///< um per standard deviation
  double interceptUM = 0.0;  ///< height at 50 %
};

/// Least-squares line of the sorted heights over their quantiles, through the points whose ratio lies between two
/// percents. Not defined for fewer than two of them.
Defined<ProbabilityLine> FitProbabilityLine(std::span<const double> sorted, double fromPercent, double toPercent);

/// Inner limits (LPL and UVL) of the two straight regions of a plot with the outer limits given.
///
/// This program's procedure, on the pattern of the standard's: a conic is fitted to the plot, resampled evenly along
/// the quantiles between the outer limits and scaled to a square; its asymptotes are the two lines, its centre the
/// transition. The angle between each asymptote and their bisector is halved three times towards the asymptote; where
/// the last half meets the conic the straight region ends. Two exact straight lines have both limits at their corner.
/// Not defined when the conic has no asymptotes or the transition lies outside [fromPercent, toPercent].
Defined<ProbabilityLimits> FindProbabilityLimits(std::span<const double> sorted, const ProbabilityLimits& outer,
                                                 double fromPercent, double toPercent);

/// Both lines with the limits of the settings (`RqFittingMethod` 0) or those found (any other number).
struct ProbabilityFit {
  Defined<ProbabilityLimits> limits;
  Defined<ProbabilityLine> plateau;
  Defined<ProbabilityLine> valley;  ///< not defined also where the profile has too few valleys
  Defined<double> crossingPercent;
};

/// From the heights (um) of a profile in their order and the same from the highest to the lowest.
ProbabilityFit FitProbability(std::span<const double> heights, std::span<const double> sorted,
                              const AnalysisSettings& settings);

/// Once a pass.
const ProbabilityFit& ProbabilityFitOf(const RowInput& row);

// Rows. Each fails without its line; vq and mq also with fewer valleys (CountValleys) below RxqValleyCountHeightUm than
// RxqMinimumValleyCount.
RowResult PlateauDeviation(const RowInput& row);      ///< pq, um: absolute slope of the plateau line
RowResult ValleyDeviation(const RowInput& row);       ///< vq, um: absolute slope of the valley line
RowResult PlateauToValleyRatio(const RowInput& row);  ///< mq, percent: ratio at which the two cross

}  // namespace texturon
