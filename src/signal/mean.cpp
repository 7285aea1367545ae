// SPDX-License-Identifier: Apache-2.0

#include "signal/mean.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace texturon {

double Mean(std::span<const double> values) {
  if (values.empty()) return 0.0;
  constexpr std::size_t kLanes = 8;
  constexpr std::size_t kBlock = 64;  // partial sums are folded often enough that none grows large
  double total = 0.0;
  std::size_t i = 0;
  while (i + kLanes <= values.size()) {
    std::array<double, kLanes> lanes{};
    const std::size_t steps = std::min(kBlock, (values.size() - i) / kLanes);
    for (std::size_t s = 0; s < steps; ++s, i += kLanes) {
      for (std::size_t lane = 0; lane < kLanes; ++lane) lanes[lane] += values[i + lane];
    }
    total += ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) + ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
  }
  for (; i < values.size(); ++i) total += values[i];
  return total / static_cast<double>(values.size());
}

}  // namespace texturon
