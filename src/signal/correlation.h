// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace texturon {

/// How far one series must be moved to look most like another.
struct BestLag {
  std::ptrdiff_t lag = 0;    ///< point i of the second lies over point i + lag of the first
  double correlation = 0.0;  ///< of the points that then lie over each other, about their means: -1 to 1
};

/// The lag with the largest correlation coefficient of all at which at least `fewestShared` points (2 or more) lie over
/// each other; of equals the one with the smallest move. Empty where no lag has so many, or none a spread in both
/// series. By one product of transforms, n log n in time; coefficients to 1e-9 of those added up one by one.
std::optional<BestLag> FindBestLag(std::span<const double> first, std::span<const double> second,
                                   std::size_t fewestShared);

}  // namespace texturon
