// SPDX-License-Identifier: Apache-2.0

#include "parameters/curves.h"

#include <algorithm>
#include <cmath>

#include "parameters/height_curve.h"
#include "parameters/probability.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

/// Indices of n points, ascending, none twice: those next to `most` even steps of an abscissa, one more before and
/// behind. `placeOf` gives the place (0 to n - 1 and fractions) of an abscissa.
template <typename PlaceOf>
std::vector<std::size_t> SpreadIndices(std::size_t n, double from, double to, std::size_t most,
                                       const PlaceOf& placeOf) {
  std::vector<std::size_t> indices;
  if (n == 0 || !(from < to)) return indices;
  const auto last = static_cast<double>(n - 1);
  const auto add = [&](double place) {
    const auto index = static_cast<std::size_t>(std::clamp(place, 0.0, last));
    if (indices.empty() || index > indices.back()) indices.push_back(index);
  };
  add(std::floor(placeOf(from)) - 1.0);
  for (std::size_t k = 0; k < most; ++k) {
    add(std::round(placeOf(from + (to - from) * static_cast<double>(k) / static_cast<double>(most - 1))));
  }
  add(std::ceil(placeOf(to)) + 1.0);
  return indices;
}

BearingPoint BearingPointAt(std::span<const double> sorted, std::size_t i) {
  return {RatioPercent(i, sorted.size()), sorted[i]};
}

ProbabilityPoint ProbabilityPointAt(std::span<const double> sorted, std::size_t i) {
  const std::size_t n = sorted.size();
  return {(static_cast<double>(i) + 0.5) * 100.0 / static_cast<double>(n), ProbabilityAbscissa(i, n), sorted[i]};
}

}  // namespace

std::vector<BearingPoint> BearingRatioCurve(std::span<const double> sorted) {
  std::vector<BearingPoint> curve(sorted.size());
  for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = BearingPointAt(sorted, i);
  return curve;
}

std::vector<AmplitudeClass> AmplitudeDistribution(std::span<const double> sorted) {
  if (sorted.empty()) return {};
  const double lowest = sorted.back();
  // Halves, because the difference of two huge heights is no number any more.
  const double halfRange = 0.5 * sorted.front() - 0.5 * lowest;
  if (!(halfRange > 0.0)) return {{100.0, lowest}};
  std::vector<AmplitudeClass> classes(kAmplitudeClasses);
  constexpr auto kClasses = static_cast<double>(kAmplitudeClasses);
  for (const double height : sorted) {
    const double place = (0.5 * height - 0.5 * lowest) / halfRange * kClasses;
    ++classes[std::min(static_cast<std::size_t>(place), kAmplitudeClasses - 1)].scaledCount;
  }
  const auto fullest =
      std::max_element(classes.begin(), classes.end(),
                       [](const AmplitudeClass& a, const AmplitudeClass& b) { return a.scaledCount < b.scaledCount; });
  const double scale = 100.0 / fullest->scaledCount;
  for (std::size_t k = 0; k < kAmplitudeClasses; ++k) {
    classes[k].scaledCount *= scale;
    classes[k].heightUM = lowest + (static_cast<double>(k) + 0.5) / kClasses * 2.0 * halfRange;
  }
  return classes;
}

std::vector<ProbabilityPoint> ProbabilityCurve(std::span<const double> sorted) {
  std::vector<ProbabilityPoint> curve(sorted.size());
  for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = ProbabilityPointAt(sorted, i);
  return curve;
}

std::vector<BearingPoint> BearingRatioCurve(std::span<const double> sorted, double fromPercent, double toPercent,
                                            std::size_t most) {
  const auto n = static_cast<double>(sorted.size());
  std::vector<BearingPoint> curve;
  for (const std::size_t i : SpreadIndices(sorted.size(), fromPercent, toPercent, most,
                                           [n](double percent) { return percent * n / 100.0; })) {
    curve.push_back(BearingPointAt(sorted, i));
  }
  return curve;
}

std::vector<ProbabilityPoint> ProbabilityCurve(std::span<const double> sorted, double fromDeviations,
                                               double toDeviations, std::size_t most) {
  const auto n = static_cast<double>(sorted.size());
  std::vector<ProbabilityPoint> curve;
  for (const std::size_t i : SpreadIndices(sorted.size(), fromDeviations, toDeviations, most, [n](double deviations) {
         return NormalProbability(deviations) * n - 0.5;
       })) {
    curve.push_back(ProbabilityPointAt(sorted, i));
  }
  return curve;
}

}  // namespace texturon
