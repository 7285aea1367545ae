#include "parameters/curves.h"

#include <algorithm>

#include "parameters/height_curve.h"
#include "parameters/probability.h"

namespace texturon {

std::vector<BearingPoint> BearingRatioCurve(std::span<const double> sorted) {
  std::vector<BearingPoint> curve(sorted.size());
  for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = {RatioPercent(i, sorted.size()), sorted[i]};
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
  const std::size_t n = sorted.size();
  std::vector<ProbabilityPoint> curve(n);
  for (std::size_t i = 0; i < n; ++i) {
    curve[i] = {(static_cast<double>(i) + 0.5) * 100.0 / static_cast<double>(n), ProbabilityAbscissa(i, n), sorted[i]};
  }
  return curve;
}

}  // namespace texturon
