// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/multiversion.h"

namespace texturon {

/// Several sums over j = 0 .. count - 1 at once: `terms(j)` gives the summands as a std::array. Eight interleaved
/// partial sums each, folded after every 512 elements, as Mean does: fast, and the rounding error of a million terms
/// stays of the order of that of a hundred.
template <typename Terms>
TEXTURON_INLINE auto LaneSums(std::size_t count, const Terms& terms) {
  constexpr std::size_t kLanes = 8;
  constexpr std::size_t kBlock = 512;
  using Sums = decltype(terms(std::size_t{0}));
  constexpr std::size_t kSums = std::tuple_size_v<Sums>;
  Sums total{};
  std::size_t j = 0;
  while (j + kLanes <= count) {
    std::array<std::array<double, kLanes>, kSums> lanes{};
    const std::size_t end = j + std::min(kBlock, (count - j) / kLanes * kLanes);
    for (; j < end; j += kLanes) {
      for (std::size_t lane = 0; lane < kLanes; ++lane) {
        const Sums values = terms(j + lane);
        for (std::size_t s = 0; s < kSums; ++s) lanes[s][lane] += values[s];
      }
    }
    for (std::size_t s = 0; s < kSums; ++s) {
      const auto& lane = lanes[s];
      total[s] += ((lane[0] + lane[1]) + (lane[2] + lane[3])) + ((lane[4] + lane[5]) + (lane[6] + lane[7]));
    }
  }
  for (; j < count; ++j) {
    const Sums values = terms(j);
    for (std::size_t s = 0; s < kSums; ++s) total[s] += values[s];
  }
  return total;
}

}  // namespace texturon
