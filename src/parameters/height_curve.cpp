// SPDX-License-Identifier: Apache-2.0

#include "parameters/height_curve.h"

#include <algorithm>

namespace texturon {

double HeightAtRatio(std::span<const double> sorted, double percent) {
  const std::size_t n = sorted.size();
  if (!(percent > 0.0)) return sorted.front();
  if (percent >= RatioPercent(n - 1, n)) return sorted.back();
  std::size_t low = 0;
  std::size_t high = n - 1;
  while (high - low > 1) {
    const std::size_t middle = low + (high - low) / 2;
    (RatioPercent(middle, n) <= percent ? low : high) = middle;
  }
  const bool highIsNearer = RatioPercent(high, n) - percent < percent - RatioPercent(low, n);
  return sorted[highIsNearer ? high : low];
}

std::size_t FirstAtOrBelow(std::span<const double> sorted, double heightUM) {
  const auto first =
      std::partition_point(sorted.begin(), sorted.end(), [heightUM](double height) { return height > heightUM; });
  return static_cast<std::size_t>(first - sorted.begin());
}

double RatioAtHeight(std::span<const double> sorted, double heightUM) {
  return RatioPercent(FirstAtOrBelow(sorted, heightUM), sorted.size());
}

}  // namespace texturon
