// SPDX-License-Identifier: Apache-2.0

#include "signal/envelope/tip_trace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace texturon {
namespace {

/// The widest of either sign: 1 for a surface under a ball, -1 for a trace over it.
void Widen(std::span<const double> z, std::span<double> wide, double spacingUM, double radiusUM, double sign) {
  std::copy(z.begin(), z.end(), wide.begin());
  if (z.size() < 2 || !(radiusUM > spacingUM)) return;
  const auto [lowest, highest] = std::minmax_element(z.begin(), z.end());
  const double height = *highest - *lowest;
  for (std::size_t j = 1; j < z.size(); ++j) {
    const double x = static_cast<double>(j) * spacingUM;
    if (!(x < radiusUM)) break;
    // r - sqrt(r^2 - x^2) without the difference of two large numbers.
    const double drop = x * x / (radiusUM + std::sqrt((radiusUM - x) * (radiusUM + x)));
    if (drop >= height) break;
    const double fall = sign * drop;
    for (std::size_t i = j; i < z.size(); ++i) {
      const double fromLeft = z[i - j] - fall;
      const double fromRight = z[i] - fall;
      wide[i] = sign > 0.0 ? std::max(wide[i], fromLeft) : std::min(wide[i], fromLeft);
      wide[i - j] = sign > 0.0 ? std::max(wide[i - j], fromRight) : std::min(wide[i - j], fromRight);
    }
  }
}

}  // namespace

void TraceOfTip(std::span<const double> surface, std::span<double> trace, double spacingUM, double radiusUM) {
  Widen(surface, trace, spacingUM, radiusUM, 1.0);
}

void SurfaceUnderTip(std::span<const double> trace, std::span<double> surface, double spacingUM, double radiusUM) {
  Widen(trace, surface, spacingUM, radiusUM, -1.0);
}

}  // namespace texturon
