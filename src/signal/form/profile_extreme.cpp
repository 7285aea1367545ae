// SPDX-License-Identifier: Apache-2.0

#include "signal/form/profile_extreme.h"

#include <algorithm>
#include <vector>

#include "base/units.h"
#include "signal/filter/spline_filter.h"

namespace texturon {

std::optional<double> FindExtremeX(const FormInput& input, double cutoffMM, ExtremeKind kind) {
  const std::size_t n = input.heights.size();
  if (n == 0) return std::nullopt;
  std::vector<double> line(n);
  if (!SplineFilter(input.heights, line, input.spacingUM, cutoffMM, kGaussianLikeTension)) return std::nullopt;
  const auto place = kind == ExtremeKind::kPeak ? std::max_element(line.begin(), line.end())
                                                : std::min_element(line.begin(), line.end());
  const auto i = static_cast<std::size_t>(place - line.begin());
  double index = ExactDouble(i);
  if (i > 0 && i + 1 < n) {
    const double bend = line[i - 1] - 2.0 * line[i] + line[i + 1];
    if (bend != 0.0) index += std::clamp(0.5 * (line[i - 1] - line[i + 1]) / bend, -0.5, 0.5);
  }
  return index * input.spacingUM * kMillimetresPerMicrometre;
}

}  // namespace texturon
