// SPDX-License-Identifier: Apache-2.0

#include "parameters/sampling_lengths.h"

#include "base/units.h"

namespace texturon {

std::optional<SamplingLengths> DivideIntoSamplingLengths(std::size_t pointCount, double spacingMM,
                                                         double samplingLengthMM, ShortProfile shortProfile) {
  const double points = WholePartsOfLength(samplingLengthMM, spacingMM);
  if (!(points >= 2.0)) return std::nullopt;
  SamplingLengths lengths;
  if (points > static_cast<double>(pointCount)) {
    if (shortProfile == ShortProfile::kFails || pointCount < 2) return std::nullopt;
    lengths.pointsEach = pointCount;
  } else {
    lengths.pointsEach = static_cast<std::size_t>(points);
  }
  lengths.count = pointCount / lengths.pointsEach;
  return lengths;
}

NoValue WhyNotDividedIntoLengths(std::size_t pointCount, double spacingMM, double samplingLengthMM) {
  constexpr double kFewestPoints = 2.0;
  if (static_cast<double>(pointCount) < kFewestPoints) {
    return {Why::kFewPoints, {kFewestPoints, static_cast<double>(pointCount)}};
  }
  if (!(WholePartsOfLength(samplingLengthMM, spacingMM) >= kFewestPoints)) {
    return {Why::kShortSamplingLength, {samplingLengthMM, spacingMM * kMicrometresPerMillimetre}};
  }
  return {Why::kFewSamplingLengths, {1.0, 0.0}};
}

std::vector<HeightExtremes> ExtremesPerSamplingLength(std::span<const double> heights, const SamplingLengths& lengths) {
  std::vector<HeightExtremes> extremes;
  extremes.reserve(lengths.count);
  for (std::size_t k = 0; k < lengths.count; ++k) {
    extremes.push_back(FindExtremes(heights.subspan(k * lengths.pointsEach, lengths.pointsEach)));
  }
  return extremes;
}

}  // namespace texturon
