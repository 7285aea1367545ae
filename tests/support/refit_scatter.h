// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace texturon {

/// Standard deviations of the figures that `refit` makes of heights, for heights of the given variance: every height is
/// moved up and down by `change` and fitted again.
template <typename Refit>
std::vector<double> RefitScatter(std::vector<double> heights, double variance, double change, const Refit& refit) {
  std::vector<double> scatter(refit(heights).size());
  for (double& height : heights) {
    const double before = height;
    height = before + change;
    const std::vector<double> up = refit(heights);
    height = before - change;
    const std::vector<double> down = refit(heights);
    height = before;
    for (std::size_t k = 0; k < scatter.size(); ++k) {
      const double effect = (up[k] - down[k]) / (2.0 * change);
      scatter[k] += effect * effect * variance;
    }
  }
  for (double& value : scatter) value = std::sqrt(value);
  return scatter;
}

/// Variance of what a fit of `terms` numbers leaves at the points that it used: all but the excluded ones.
inline double VarianceLeft(const std::vector<double>& residual, std::size_t firstExcluded, std::size_t lastExcluded,
                           std::size_t terms) {
  double squares = 0.0;
  std::size_t count = 0;
  for (std::size_t i = 0; i < residual.size(); ++i) {
    if (i >= firstExcluded && i <= lastExcluded) continue;
    squares += residual[i] * residual[i];
    ++count;
  }
  return squares / static_cast<double>(count - terms);
}

}  // namespace texturon
