// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace texturon {

/// True when no value is infinite or NaN. Looks at all of them, which a processor does faster than stopping at the
/// first: of those alone the product with 0 is not 0, and the sum of the products then neither.
inline bool AllFinite(std::span<const double> values) {
  constexpr std::size_t kLanes = 4;
  std::array<double, kLanes> sums = {};
  std::size_t i = 0;
  for (; i + kLanes <= values.size(); i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) sums[lane] += values[i + lane] * 0.0;
  }
  for (; i < values.size(); ++i) sums[0] += values[i] * 0.0;
  return (sums[0] + sums[1]) + (sums[2] + sums[3]) == 0.0;
}

}  // namespace texturon
