// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_input.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/units.h"
#include "signal/lane_sums.h"

namespace texturon {

FitPoints::FitPoints(const FormInput& input) {
  const std::size_t n = input.heights.size();
  const std::size_t step = static_cast<std::size_t>(std::max(input.step, 1));
  if (step > 1) thinned_.reserve(n / step + 1);
  std::size_t gapFirst = n;
  std::size_t gapEnd = n;
  if (input.exclusion && input.exclusion->last >= std::max(input.exclusion->first, 0)) {
    gapFirst = std::min(n, static_cast<std::size_t>(std::max(input.exclusion->first, 0)));
    gapEnd = std::min(n, static_cast<std::size_t>(input.exclusion->last) + 1);
  }
  Add(input, 0, gapFirst, step);
  Add(input, (gapEnd + step - 1) / step * step, n, step);
}

void FitPoints::Add(const FormInput& input, std::size_t first, std::size_t end, std::size_t step) {
  if (first >= end) return;
  const std::size_t count = (end - first - 1) / step + 1;
  FitRun run{first, step, {}};
  if (step == 1) {
    run.heights = input.heights.subspan(first, count);
  } else {
    const std::size_t start = thinned_.size();  // the reservation above keeps earlier views valid
    for (std::size_t j = 0; j < count; ++j) thinned_.push_back(input.heights[first + j * step]);
    run.heights = std::span<const double>(thinned_).subspan(start, count);
  }
  runs_.push_back(run);
  count_ += count;
}

double MeanPathStep(std::span<const double> heights, double spacingUM) {
  const auto [path] = LaneSums(heights.size() - 1, [&](std::size_t i) {
    const double rise = heights[i + 1] - heights[i];
    return std::array{std::sqrt(spacingUM * spacingUM + rise * rise)};
  });
  return path / static_cast<double>(heights.size() - 1);
}

FitPointsMM::FitPointsMM(const FormInput& input) {
  const FitPoints points(input);
  x.reserve(points.Count());
  z.reserve(points.Count());
  for (const FitRun& run : points.Runs()) {
    for (std::size_t j = 0; j < run.heights.size(); ++j) {
      x.push_back(run.Index(j) * input.spacingUM * kMillimetresPerMicrometre);
      z.push_back(run.heights[j] * kMillimetresPerMicrometre);
    }
  }
}

}  // namespace texturon
