// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>

namespace texturon {

struct WeightedHeight {
  double place = 0.0;
  double weight = 0.0;  ///< above 0
  double height = 0.0;
};

/// At place 0 the value of the parabola that fits the heights best by weighted least squares; nothing with fewer than
/// three of them. Places differ. The unknowns are its heights at three of the points, those that hold it most firmly,
/// in which the equations are well conditioned however the weights differ: rounding counts for no more than it does in
/// drawing a parabola through the three.
std::optional<double> WeightedParabolaAtZero(std::span<const WeightedHeight> points);

}  // namespace texturon
