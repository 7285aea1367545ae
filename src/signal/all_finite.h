// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cmath>
#include <limits>
#include <span>

namespace texturon {

/// True when no value is infinite or NaN. Looks at all of them, which a processor does faster than stopping at the
/// first.
inline bool AllFinite(std::span<const double> values) {
  bool finite = true;
  for (const double value : values) finite &= std::abs(value) <= std::numeric_limits<double>::max();
  return finite;
}

}  // namespace texturon
