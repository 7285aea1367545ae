// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <vector>

// The curves of a profile's heights as points for graphs and exports, from heights (um) sorted from the highest to the
// lowest. No points give no curve.
namespace texturon {

struct BearingPoint {
  double ratioPercent = 0.0;
  double heightUM = 0.0;
};

/// Bearing-ratio (material-ratio) curve: one point for each height, with the ratio i x 100 / n.
std::vector<BearingPoint> BearingRatioCurve(std::span<const double> sorted);

struct AmplitudeClass {
  double scaledCount = 0.0;  ///< 100 for the fullest class
  double heightUM = 0.0;     ///< middle of the class
};

inline constexpr std::size_t kAmplitudeClasses = 100;

/// Amplitude distribution: points in each of 100 classes of equal width between the lowest and the highest height, from
/// below, the fullest scaled to 100. A border belongs to the class above it, the highest point to the last class. A
/// flat profile is one class of 100 at its height.
std::vector<AmplitudeClass> AmplitudeDistribution(std::span<const double> sorted);

struct ProbabilityPoint {
  double ratioPercent = 0.0;  ///< (i + 0.5) x 100 / n
  double deviations = 0.0;    ///< its normal quantile
  double heightUM = 0.0;
};

/// Probability curve: one point for each height.
std::vector<ProbabilityPoint> ProbabilityCurve(std::span<const double> sorted);

// The same for a screen: at most `most` (2 or more) points, evenly spread over a stretch of the abscissa, and one
// beyond each end of it. Heights that only fall have no extremes between two points, so that a curve that is dense
// enough for the screen's columns looks like the whole.
std::vector<BearingPoint> BearingRatioCurve(std::span<const double> sorted, double fromPercent, double toPercent,
                                            std::size_t most);
std::vector<ProbabilityPoint> ProbabilityCurve(std::span<const double> sorted, double fromDeviations,
                                               double toDeviations, std::size_t most);

}  // namespace texturon
